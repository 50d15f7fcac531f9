// Paths that are too long for their place.
#pragma once

#include <string>

// The name behind the last separator, or all of it.
std::wstring NameOfPath(const std::wstring& path);

// `text` without its middle when it has more than `units` UTF-16 units: as many as possible of both ends, with three
// dots more between them. No character is cut in two.
std::wstring WithoutMiddle(const std::wstring& text, size_t units);

// `path` in at most `units` units: drive and first folder, if that is not too long, three dots, and as many of the last
// folders as there is room for before the name. A name that is too long itself loses its middle; 8 units of it stay in
// any case.
std::wstring ShortPath(const std::wstring& path, size_t units);
