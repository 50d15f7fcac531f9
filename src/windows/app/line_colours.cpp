#include "windows/app/line_colours.h"

#include <algorithm>
#include <cmath>

#include "windows/services/settings.h"

namespace {

constexpr int kQuirkDetailsColour = COLOR_BTNFACE;  // so that they are read faintly beside the kind

constexpr COLORREF kWhite = RGB(255, 255, 255);

// The grey of older systems, #D4D0C8, has 1.5 on white and was meant so; #F0F0F0 has 1.1.
constexpr double kFaint = 1.3;

// Grey text is meant to stand back, and common schemes have 2.6; a scheme whose grey text has less than this gets its
// plain text instead.
constexpr double kReadable = 2;

double Linear(int channel) {
    const double part = channel / 255.0;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double Lightness(COLORREF colour) {
    return 0.2126 * Linear(GetRValue(colour)) + 0.7152 * Linear(GetGValue(colour)) + 0.0722 * Linear(GetBValue(colour));
}

LineColours ClassicColours(bool isSelected) {
    const COLORREF details = GetSysColor(kQuirkDetailsColour);
    if (isSelected) return {GetSysColorBrush(COLOR_HIGHLIGHT), kWhite, details};
    return {static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)), RGB(0, 0, 0), details};
}

// Grey text is made for the window's background; on that of a selection nothing but the selection's text is sure.
LineColours ReadableColours(bool isSelected) {
    const COLORREF selected = GetSysColor(COLOR_HIGHLIGHTTEXT);
    if (isSelected) return {GetSysColorBrush(COLOR_HIGHLIGHT), selected, selected};
    const COLORREF text = GetSysColor(COLOR_WINDOWTEXT), grey = GetSysColor(COLOR_GRAYTEXT);
    const bool isGreyReadable = ContrastOf(grey, GetSysColor(COLOR_WINDOW)) >= kReadable;
    return {GetSysColorBrush(COLOR_WINDOW), text, isGreyReadable ? grey : text};
}

}  // namespace

LineColours ColoursOfLine(bool isSelected) {
    return settings.readableDetails ? ReadableColours(isSelected) : ClassicColours(isSelected);
}

double ContrastOf(COLORREF a, COLORREF b) {
    constexpr double kGlare = 0.05;  // of light that falls on every screen
    const auto [darker, lighter] = std::minmax({Lightness(a), Lightness(b)});
    return (lighter + kGlare) / (darker + kGlare);
}

bool AreDetailsFaint() {
    return ContrastOf(GetSysColor(kQuirkDetailsColour), kWhite) < kFaint;
}
