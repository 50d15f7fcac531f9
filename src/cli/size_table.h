// What the blocks of a file cost, in print.
#pragma once

#include <cstdint>
#include <string>

#include "cli/loaded_file.h"
#include "size/block_sizes.h"

// A number with commas between its thousands: "5,802".
std::string WithThousands(uint64_t number);

// Prints a line for each block with its bytes, its share of the file and what the bytes are for, then what belongs to
// no block, and the sums.
void PrintSizeTable(const LoadedFile& file, const DocumentSizes& sizes);

// The same as members of JSON objects, with a comma in front: of a block, and of the document.
std::string JsonSizes(const BlockSizes& block);
std::string JsonSizes(const LoadedFile& file, const DocumentSizes& sizes);
