// Text between the encodings that meet on Windows: UTF-8 (paths), Windows-1252 (document bytes, resources), the
// code pages of narrow calls and old files, and the system's UTF-16. Windows only.
#pragma once

#include <string>
#include <string_view>

std::wstring WideFromUtf8(std::string_view text);  // bytes that are no UTF-8 become U+FFFD
std::string Utf8FromWide(std::wstring_view text);
std::wstring WideFrom1252(std::string_view text);
std::string Ansi1252FromWide(std::wstring_view text);  // characters without a place become "?"
// What the system's narrow calls take in this process: UTF-8 on newer systems, by the program's manifest.
std::wstring WideFromAnsi(std::string_view text);
std::string AnsiFromWide(std::wstring_view text);  // characters without a place become similar ones or "?"
// The ANSI code page of the system itself, in which other programs write their files.
std::wstring WideFromSystemAnsi(std::string_view text);
