// Images and palettes for comparing two forms of the same conversion.
#pragma once

#include <array>
#include <random>
#include <vector>

#include "imaging/image_bitmap.h"

using Colours = std::array<RgbTriple, kPaletteEntries>;
using Random = std::mt19937;

// Palettes of very different character, the standard ones, crowded, grey, repeated and sparsely used ones among them.
std::vector<Colours> TestPalettes(Random& random);

// An image of 1, 4, 8 or 24 bits with a random colour table: noise, or one of few colours (taken from `palette` about
// half of the time), or a gradient, as the generator decides. Padding stays zero.
MemoryHandle RandomImage(Random& random, int width, int height, int bitCount, const Colours& palette);

// Whether both are bitmaps of the same bytes: header, colour table, pixels and padding. None is only like none.
bool SameBitmap(const MemoryHandle& a, const MemoryHandle& b);
