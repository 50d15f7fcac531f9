#include "platform/identity.h"
#include "platform/wide_text_win32.h"
#include "platform/windows_api.h"

namespace {

constexpr size_t kNameUnits = 260;  // with its terminating NUL

std::string ReadName(HKEY key, const wchar_t* value) {
    wchar_t text[kNameUnits] = {};
    DWORD bytes = sizeof text - sizeof text[0];
    DWORD type = 0;
    LSTATUS status = RegQueryValueExW(key, value, nullptr, &type, reinterpret_cast<BYTE*>(text), &bytes);
    if (status != ERROR_SUCCESS || type != REG_SZ) return {};
    return Ansi1252FromWide(text).substr(0, kNameUnits - 1);
}

}  // namespace

Identity GetUserIdentity() {
    Identity identity;
    HKEY key;
    const wchar_t* path = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key) != ERROR_SUCCESS) return identity;
    identity.owner = ReadName(key, L"RegisteredOwner");
    identity.organisation = ReadName(key, L"RegisteredOrganization");
    RegCloseKey(key);
    return identity;
}
