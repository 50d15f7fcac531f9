// The colours that the list's lines are painted in.
#pragma once

#include "platform/windows_api.h"

struct LineColours {
    HBRUSH back;  // the system's own, not to be deleted
    COLORREF kind, details;
};

// Those of a line: as they always were, or with settings.readableDetails the system's own for text.
LineColours ColoursOfLine(bool isSelected);

// How far two colours differ in lightness, from 1 for equal ones to 21 for black and white: the contrast ratio of the
// Web Content Accessibility Guidelines.
double ContrastOf(COLORREF a, COLORREF b);

// Whether the details are hardly to be seen without readable details, in the system's colours as they are.
bool AreDetailsFaint();
