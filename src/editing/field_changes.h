// Which fields of two blocks differ, and by how much.
#pragma once

#include <vector>

#include "editing/diff.h"

// What differs between two blocks of the same kind. Nothing where both say the same, in whatever bytes. Throws
// std::bad_alloc when memory runs out.
std::vector<FieldChange> CompareFields(const Block& old, const Block& fresh);

// Adds a change of that name when the bytes differ. Throws std::bad_alloc when memory runs out.
void CompareFileBytes(const char* name, const FileBytes& old, const FileBytes& fresh,
                      std::vector<FieldChange>* changes);

// How many bytes of its file a block has of its own; 0 for one that has none.
uint32_t BytesOf(const Block& block);

// Whether both have the same bytes of a file. True when one of them has none: there is nothing to compare then.
bool SameSourceBytes(const Block& old, const Block& fresh);
