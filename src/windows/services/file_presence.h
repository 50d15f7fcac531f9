// Whether something stands at a place in the file system.
#pragma once

#include <string>

#include "platform/wide_text_win32.h"
#include "platform/windows_api.h"

// A file or folder of that name is there, as far as the system lets us see.
inline bool IsThere(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// The same for a name in UTF-8.
inline bool IsThere(const std::string& path) {
    return IsThere(WideFromUtf8(path));
}
