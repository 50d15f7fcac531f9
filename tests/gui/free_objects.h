// How many objects a process may still take from the system: counted by taking them, as not every system tells how many
// it has. What is lost shows as fewer.
#pragma once

#include <cstddef>
#include <vector>

#include "platform/windows_api.h"

namespace free_objects {
template <typename Create, typename Destroy>
size_t Count(Create create, Destroy destroy) {
    std::vector<decltype(create())> taken;
    while (auto object = create()) taken.push_back(object);
    for (auto object : taken) destroy(object);
    return taken.size();
}
}  // namespace free_objects

// Pens, brushes, bitmaps, fonts and device contexts.
inline size_t FreeGdiObjects() {
    return free_objects::Count([] { return CreateSolidBrush(0); }, DeleteObject);
}

// Windows and menus.
inline size_t FreeUserObjects() {
    return free_objects::Count(CreatePopupMenu, DestroyMenu);
}
