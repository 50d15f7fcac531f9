// What commands say about files on standard error.
#pragma once

#include <string>

// Prints "zephyr: <path>: <what>".
void Complain(const std::string& path, const std::string& what);

// Why a file could not be opened for reading or be written, as far as that can be told.
std::string WhyNotOpened(const std::string& path);
std::string WhyNotWritten(const std::string& path);

// Why no picture came from a GIF file.
std::string WhyNoPicture(const std::string& path);
