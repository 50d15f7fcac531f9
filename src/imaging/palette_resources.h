// The palettes that are files of the program: "PALETTE216" and "PALETTE256G".
#pragma once

#include <cstddef>
#include <cstdint>

constexpr size_t kPaletteResourceBytes = 853;
constexpr size_t kPaletteResourceColours = 85;  // offset of the 768 colour bytes: red, green, blue

// The resource `name`, kPaletteResourceBytes long and valid for the life of the program, or null when it is missing.
// The Windows program finds it among its resources, the command line has the same file's bytes built in.
const uint8_t* FindPaletteResource(const char* name);
