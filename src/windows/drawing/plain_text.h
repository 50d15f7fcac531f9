// Drawing the text of plain-text blocks.
#pragma once

#include "gif/block_list.h"
#include "platform/windows_api.h"

// Draws the PLAIN TEXT block, whose owner is the document, on `dc` in the document's colours, so that the middle of the
// logical screen comes to the middle of a frame: `frame`, with a small Courier, or, when null, the client area of
// `window`, with the system's fixed font. The text's background stays unpainted where its index equals
// `transparentIndex`. Nothing is drawn for other blocks, documents without a header and unreadable text.
void DrawPlainText(HDC dc, HWND window, const Block& block, const RECT* frame, uint32_t transparentIndex);
