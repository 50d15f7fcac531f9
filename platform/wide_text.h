// Text between the encodings that meet on Windows: UTF-8 (paths), Windows-1252 (document bytes, resources), the
// system's ANSI code page (old programs) and the system's UTF-16. Windows only.
#pragma once

#include <string>
#include <string_view>

std::wstring WideFromUtf8(std::string_view text);  // bytes that are no UTF-8 become U+FFFD
std::string Utf8FromWide(std::wstring_view text);
std::wstring WideFrom1252(std::string_view text);
std::string Ansi1252FromWide(std::wstring_view text);  // characters without a place become "?"
std::wstring WideFromAnsi(std::string_view text);
std::string AnsiFromWide(std::wstring_view text);  // characters without a place become similar ones or "?"
