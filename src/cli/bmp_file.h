// Image bitmaps as BMP files.
#pragma once

#include <string>

#include "platform/memory.h"

// Writes a BMP file header and then the bitmap as it is in memory. False, with the reason on standard
// error, when that fails; an existing file then stands.
bool WriteBmpFile(const MemoryHandle& image, const std::string& path);
