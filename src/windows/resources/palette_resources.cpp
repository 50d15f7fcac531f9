#include "imaging/palette_resources.h"

#include "platform/wide_text_win32.h"
#include "platform/windows_api.h"

const uint8_t* FindPaletteResource(const char* name) {
    HMODULE program = GetModuleHandleW(nullptr);
    HRSRC place = FindResourceW(program, WideFrom1252(name).c_str(), RT_RCDATA);
    if (!place || SizeofResource(program, place) < kPaletteResourceBytes) return nullptr;
    return static_cast<const uint8_t*>(LockResource(LoadResource(program, place)));
}
