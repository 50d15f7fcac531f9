// Files that commands take in as they are.
#pragma once

#include <string>

#include "gif/application_data.h"

// Reads the whole file at `path` (UTF-8; "-" is standard input), of at most kMostBlockData bytes. False, with what is
// wrong in `why`, when that fails.
[[nodiscard]] bool ReadInputFile(const std::string& path, BlockData* content, std::string* why);
