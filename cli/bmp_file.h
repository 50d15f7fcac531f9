// Image bitmaps as BMP files.
#pragma once

#include <string>

#include "platform/memory.h"

// Writes a BMP file header and then the bitmap as it is in memory. An existing file is replaced only once the new one
// is complete. False, with the reason on standard error, when that fails.
bool WriteBmpFile(MemoryHandle image, const std::string& path);
