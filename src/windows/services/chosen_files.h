// The files that OpenImagesDialog (windows/services/file_dialogs.h) lets the user choose.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

constexpr size_t kAllFiles = static_cast<size_t>(-1);

// The paths that the dialog's `names` stand for: one path as it is; or of a folder and names, the first `most`, sorted
// by their plain bytes (upper case before lower case).
std::vector<std::string> ChosenPaths(const std::string& names, size_t most = kAllFiles);
