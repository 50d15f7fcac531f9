// What differs between two documents, on standard output.
#pragma once

#include "editing/diff.h"

// Prints lines for each block that differs, nothing when none does. `differences` are those of `old` and `fresh`.
void PrintLines(const DocumentDifferences& differences, const BlockList& old, const BlockList& fresh);

// Prints one JSON object.
void PrintJson(const DocumentDifferences& differences, const BlockList& old, const BlockList& fresh);
