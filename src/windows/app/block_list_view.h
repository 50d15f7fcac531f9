// The main window's list box: one owner-drawn line per block of the document.
#pragma once

#include "gif/block_list.h"
#include "platform/windows_api.h"

constexpr int kNoLine = -1;

// Posted to the window when lines or the selection were changed while there are panes that show them, too.
constexpr UINT UM_SHOW_PANES = WM_USER + 47;
void ShowPanesSoon(HWND window);

// Creates the list box in the client area of `window`, and fits it there again after the window's size has changed.
void CreateBlockListView(HWND window);
void FitBlockListView(HWND window);

// Makes the lines as high as the screen of `window` wants them.
void ScaleBlockListView(HWND window);

// Replaces all lines by those of `list` (none: the list stays empty). Selects nothing; the place that the list is
// scrolled to stays.
void FillBlockListView(HWND window, const BlockList* list);

// Replaces the first line by the one of `header`, keeping the selection and the place.
void ReplaceHeaderLine(HWND window, const Block& header);

int SelectedLine(HWND window);           // kNoLine when none is
void SelectLine(HWND window, int line);  // and scrolls no further than to show it

void ChooseLine(HWND window, int line);  // the same as a person does it: with the notification of a new selection

// The line at that place of the screen; kNoLine where there is none.
int LineAt(HWND window, POINT place);

// Where the line's lower left corner is on the screen.
POINT PlaceUnderLine(HWND window, int line);

// Scrolls the list no further than to show the whole line.
void RevealLine(HWND window, int line);

// Paints one line: the kind name, then the details faintly behind it.
void DrawBlockLine(const DRAWITEMSTRUCT& item);
