// The string table as the editor has it: in the program's resources.
#include <cstring>

#include "platform/windows_api.h"
#include "texts/strings.h"

namespace {

constexpr int kStringBytes = 256;
constexpr UINT kWindows1252 = 1252;
char stringBuffer[kStringBytes];

}  // namespace

// Takes no memory: this is where the texts come from that tell of none.
const char* LoadStr(unsigned id) {
    wchar_t wide[kStringBytes];
    int units = LoadStringW(GetModuleHandleW(nullptr), id, wide, kStringBytes);
    if (units <= 0) return strcpy(stringBuffer, "String table error - this application may be damaged");
    int bytes = WideCharToMultiByte(kWindows1252, 0, wide, units, stringBuffer, kStringBytes - 1, nullptr, nullptr);
    stringBuffer[bytes] = 0;
    return stringBuffer;
}
