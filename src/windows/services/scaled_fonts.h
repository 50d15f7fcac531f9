// The program's fonts, as large as the screen is dense. They are made when they are first asked for.
#pragma once

#include "platform/windows_api.h"

// The font of the main window's children.
HFONT ListFontAt(int dpi);

// The font of texts that are edited, all of whose letters are equally wide.
HFONT FixedFontAt(int dpi);

// Deletes them all. No window may use one any more.
void DeleteScaledFonts();
