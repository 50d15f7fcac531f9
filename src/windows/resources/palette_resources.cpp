#include "imaging/palette_resources.h"

#include "windows/services/shell_objects.h"
#include "platform/wide_text_win32.h"

const uint8_t* FindPaletteResource(const char* name) {
    HRSRC place = FindResourceW(hInstance, WideFrom1252(name).c_str(), RT_RCDATA);
    if (!place || SizeofResource(hInstance, place) < kPaletteResourceBytes) return nullptr;
    return static_cast<const uint8_t*>(LockResource(LoadResource(hInstance, place)));
}
