#include "windows/services/scaled_fonts.h"

#include <map>

#include "windows/services/screen_scale.h"

namespace {

constexpr int kListHeight = 14, kFixedHeight = 15;  // of a line, in pixels of a usual screen
constexpr wchar_t kListFace[] = L"MS Sans Serif", kSmoothFace[] = L"Microsoft Sans Serif";
constexpr wchar_t kFixedFace[] = L"Courier New";

std::map<int, HFONT> listFonts, fixedFonts;  // by dots per inch

HFONT MakeFont(int height, const wchar_t* face) {
    return CreateFontW(height, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, face);
}

int CALLBACK StopAtFirst(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM) {
    return 0;
}

bool IsInstalled(const wchar_t* face) {
    HDC screen = GetDC(nullptr);
    LOGFONTW wanted = {};
    wanted.lfCharSet = DEFAULT_CHARSET;
    lstrcpynW(wanted.lfFaceName, face, LF_FACESIZE);
    const bool found = EnumFontFamiliesExW(screen, &wanted, StopAtFirst, 0, 0) == 0;
    ReleaseDC(nullptr, screen);
    return found;
}

// The usual font comes in a few sizes only; its successor has outlines.
const wchar_t* ListFaceAt(int dpi) {
    return dpi != kUsualDpi && IsInstalled(kSmoothFace) ? kSmoothFace : kListFace;
}

}  // namespace

HFONT ListFontAt(int dpi) {
    HFONT& font = listFonts[dpi];
    if (!font) font = MakeFont(ScaledTo(dpi, kListHeight), ListFaceAt(dpi));
    return font;
}

HFONT FixedFontAt(int dpi) {
    if (dpi == kUsualDpi) return static_cast<HFONT>(GetStockObject(ANSI_FIXED_FONT));
    HFONT& font = fixedFonts[dpi];
    if (!font) font = MakeFont(ScaledTo(dpi, kFixedHeight), kFixedFace);
    return font;
}

void DeleteScaledFonts() {
    for (auto* fonts : {&listFonts, &fixedFonts}) {
        for (const auto& [dpi, font] : *fonts) DeleteObject(font);
        fonts->clear();
    }
}
