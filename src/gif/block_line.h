// The line that stands for a block in lists.
#pragma once

#include <string>

#include "gif/block.h"

constexpr char kBlockLineSeparator = '\xFE';  // the first one of a line: between the kind name and the details

// The line of a block, in Windows-1252: the kind name, for most kinds the separator and details.
std::string FormatBlockLine(const Block& block);

// The kind name alone.
std::string FormatKindName(uint16_t kind);
