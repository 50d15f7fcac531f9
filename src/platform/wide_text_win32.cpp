#include "platform/wide_text_win32.h"

#include "platform/windows_api.h"

namespace {

std::wstring Widen(UINT codePage, std::string_view text) {
    int bytes = static_cast<int>(text.size());
    int units = MultiByteToWideChar(codePage, 0, text.data(), bytes, nullptr, 0);
    std::wstring wide(static_cast<size_t>(units), L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), bytes, wide.data(), units);
    return wide;
}

std::string Narrow(UINT codePage, std::wstring_view text) {
    int units = static_cast<int>(text.size());
    int bytes = WideCharToMultiByte(codePage, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<size_t>(bytes), '\0');
    WideCharToMultiByte(codePage, 0, text.data(), units, narrow.data(), bytes, nullptr, nullptr);
    return narrow;
}

UINT SystemAnsiCodePage() {
    DWORD codePage = CP_ACP;
    GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                   reinterpret_cast<wchar_t*>(&codePage), sizeof codePage / sizeof(wchar_t));
    return codePage;
}

}  // namespace

std::wstring WideFromUtf8(std::string_view text) {
    return Widen(CP_UTF8, text);
}

std::string Utf8FromWide(std::wstring_view text) {
    return Narrow(CP_UTF8, text);
}

std::wstring WideFrom1252(std::string_view text) {
    return Widen(1252, text);
}

std::string Ansi1252FromWide(std::wstring_view text) {
    return Narrow(1252, text);
}

std::wstring WideFromAnsi(std::string_view text) {
    return Widen(CP_ACP, text);
}

std::string AnsiFromWide(std::wstring_view text) {
    return Narrow(CP_ACP, text);
}

std::wstring WideFromSystemAnsi(std::string_view text) {
    return Widen(SystemAnsiCodePage(), text);
}
