// Which files a command makes its pictures of.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "cli/commands.h"

// Fills `files` with the words, in their order. A word such as "frame-%03d.png" that is not itself the name of a file
// stands for a series: from number `start`, or else from 0 or 1, until a number is missing; when only that one seems to
// be missing, a note on standard error says so. Returns what is wrong, such as a series without a file, or an empty
// text.
std::string FindPictures(const Words& words, std::optional<uint32_t> start, Words* files);
