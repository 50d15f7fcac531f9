// Images that reach beyond the document's screen, where the screen is not fitted to them.
#pragma once

#include "gif/block_list.h"
#include "platform/windows_api.h"

// Whether `block` is an image with pixels right of or below the screen of `list`.
bool ReachesBeyondScreen(const BlockList& list, const Block& block);

// Says so of an image of the document.
void TellBeyondScreen(HWND window, const BlockList& list);
