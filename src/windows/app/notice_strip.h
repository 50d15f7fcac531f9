// A strip over the lower edge of the block list that says in a sentence what is missing or damaged. The list keeps its
// place, its size and its lines; where the strip hides some, its close button and the Escape key uncover them.
#pragma once

#include <string>

#include "platform/windows_api.h"

// Shows the strip with `text` (Windows-1252) over the list of `window`, in place of another one. With `offersWhole` it
// has a button for IDM_OPEN_WHOLE; its close button is IDM_CLOSE_NOTICE, and so is Escape in the list and on a button.
void ShowNotice(HWND window, const std::string& text, bool offersWhole);

// Takes it away; the list gets the focus if the strip has it.
void HideNotice(HWND window);

// Puts it over the list again after the window's size has changed.
void FitNotice(HWND window);

// Whether there is one with the button.
bool NoticeOffersWhole(HWND window);
