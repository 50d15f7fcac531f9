#include "app/services/chosen_files.h"

#include <algorithm>
#include <cstring>

std::vector<std::string> ChosenPaths(const char* names, size_t most) {
    std::string folder = names;
    const char* name = names + folder.size() + 1;
    if (!*name) return {folder};
    if (folder.back() != '\\') folder += '\\';
    std::vector<std::string> paths;
    for (; *name && paths.size() < most; name += strlen(name) + 1) paths.push_back(folder + name);
    std::sort(paths.begin(), paths.end());
    return paths;
}
