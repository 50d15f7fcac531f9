// How libpng gives up here, reading and writing: without a message, by a jump to where it was called.
#pragma once

#include <png.h>

inline void IgnorePngWarning(png_structp, png_const_charp) {}

// Without it libpng prints the message.
[[noreturn]] inline void LeavePng(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}
