// GIF files of one picture.
#pragma once

#include <string>
#include <vector>

#include "imaging/image_bitmap.h"

// Writes the bitmap (1, 4 or 8 bits) as the only image of a GIF file. `depth` is that of its palette, at most its bits.
void WritePicture(const std::string& path, const MemoryHandle& image, int depth);

// The same as a PNG file of colours by number.
void WriteNumberedPng(const std::string& path, const MemoryHandle& image, int depth);

// Writes a PNG file whose pixels are red, green, blue and opacity as bytes in memory.
void WriteColouredPng(const std::string& path, int width, const std::vector<uint32_t>& pixels);
