#include <cstring>
#include <string>

#include "platform/system_identity.h"
#include "platform/wide_text.h"
#include "platform/windows_api.h"

namespace {

void ReadName(HKEY key, const wchar_t* value, char* to) {
    wchar_t text[kIdentityBytes] = {};
    DWORD bytes = sizeof text - sizeof text[0];
    DWORD type = 0;
    LSTATUS status = RegQueryValueExW(key, value, nullptr, &type, reinterpret_cast<BYTE*>(text), &bytes);
    if (status != ERROR_SUCCESS || type != REG_SZ) return;
    std::string name = Ansi1252FromWide(text);
    memcpy(to, name.c_str(), name.size() < kIdentityBytes ? name.size() + 1 : kIdentityBytes - 1);
}

}  // namespace

void ReadSystemIdentity(Identity* identity) {
    HKEY key;
    const wchar_t* path = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key) != ERROR_SUCCESS) return;
    ReadName(key, L"RegisteredOwner", identity->owner);
    ReadName(key, L"RegisteredOrganization", identity->organisation);
    RegCloseKey(key);
}
