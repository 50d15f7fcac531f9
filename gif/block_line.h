// The one-line description of a block, as the editor's list and the command line show it.
#pragma once

#include "gif/block.h"

constexpr int kBlockLineBytes = 400;
constexpr char kBlockLineSeparator = '\xFE';  // between the kind name and the details

// Writes the block's line (Windows-1252, NUL-terminated, at most kBlockLineBytes) into `line`.
void FormatBlockLine(char* line, const Block& block);

// The name of a kind as lines begin with it: "HEADER", "PLAIN TEXT"; `name` has kBlockLineBytes bytes.
void FormatKindName(char* name, uint16_t kind);
