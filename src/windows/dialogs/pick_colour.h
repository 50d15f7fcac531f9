// The eyedropper: a colour taken from an image that fills the screen.
#pragma once

#include <cstdint>

#include "gif/block.h"
#include "platform/windows_api.h"

// Shows the image at the top left of a window as large as the screen (what does not fit stays unseen) and waits for a
// click on it. Returns whether a pixel was picked; `*index` is then its value. After a cancel (right button, Enter,
// Escape) `*index` is kNoPixel; when the window can't be made, or the image has no pixels, it is unchanged.
bool PickColourFromImage(HWND parent, const Block& image, uint32_t* index);
