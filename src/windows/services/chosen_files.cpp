#include "windows/services/chosen_files.h"

#include <algorithm>
#include <cstring>

std::vector<std::string> ChosenPaths(const std::string& names, size_t most) {
    std::string folder = names.substr(0, names.find('\0'));
    const char* name = names.c_str() + std::min(folder.size() + 1, names.size());
    if (!*name) return {folder};
    if (folder.back() != '\\') folder += '\\';
    std::vector<std::string> paths;
    for (; *name && paths.size() < most; name += strlen(name) + 1) paths.push_back(folder + name);
    std::sort(paths.begin(), paths.end());
    return paths;
}
