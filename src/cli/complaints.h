// What commands say about files on standard error.
#pragma once

#include <string>

#include "platform/result.h"

// Prints "zephyr: <path>: <what>".
void Complain(const std::string& path, const std::string& what);

// What messages call the file that a command reads or writes: "-" are the standard streams.
std::string NameOfInput(const std::string& path);
std::string NameOfOutput(const std::string& path);

// Why a file could not be opened for reading, read or written, in plain words where we have any, otherwise with the
// system's `reason`.
std::string WhyNotOpened(const std::string& path, const std::string& reason);
std::string WhyNotRead(const std::string& reason);
std::string WhyNotWritten(const std::string& path, const std::string& reason);

// Why no picture came from a file.
std::string WhyNoPicture(const std::string& path, Failure why, const std::string& reason);

// Whether that is because of what the file holds, so that others of its kind may do without it.
bool IsFaultOfPicture(Failure why);
