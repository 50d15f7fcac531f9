// The colour conversions in their plainest form, pixel by pixel and search by search: what the fast ones must equal.
#pragma once

#include <vector>

#include "imaging/image_bitmap.h"

int LiteralNearest(int red, int green, int blue, const RgbTriple* palette, int count);
std::vector<uint8_t> LiteralInverseTable(const RgbTriple* palette);

// `table` is the LiteralInverseTable of `palette`.
MemoryHandle LiteralRemap(const MemoryHandle& source, const RgbTriple* palette, int depth,
                          const std::vector<uint8_t>& table);
MemoryHandle LiteralDither(const MemoryHandle& source, const RgbTriple* palette, int depth,
                           const std::vector<uint8_t>& table);
MemoryHandle LiteralExpand(const MemoryHandle& source);

// The images have 24 bits. Returns the number of colours made; `palette` has 256 entries.
int LiteralSharedPalette(int wanted, RgbTriple* palette, const std::vector<MemoryHandle>& images);
