// The string table as the editor has it: in the program's resources.
#include <algorithm>
#include <cstring>
#include <string>

#include "app/services/shell_objects.h"
#include "platform/prompts.h"
#include "platform/wide_text.h"

namespace {

constexpr int kStringBytes = 256;
char stringBuffer[kStringBytes];

}  // namespace

const char* LoadStr(unsigned id) {
    wchar_t wide[kStringBytes];
    int length = LoadStringW(hInstance, id, wide, kStringBytes);
    std::string text = length > 0 ? Ansi1252FromWide({wide, static_cast<size_t>(length)})
                                  : "String table error - this application may be damaged";
    size_t bytes = std::min<size_t>(text.size(), kStringBytes - 1);
    memcpy(stringBuffer, text.data(), bytes);
    stringBuffer[bytes] = 0;
    return stringBuffer;
}
