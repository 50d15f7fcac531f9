// The pictures of image blocks as files that other programs read.
#pragma once

#include <string>

#include "platform/memory.h"

// Writes the bitmap as a PNG file when `path` ends in ".png" (in whatever case), otherwise as a BMP file. False, with
// the reason on standard error, when that fails; an existing file then stands.
bool WritePictureFile(const MemoryHandle& image, const std::string& path);
