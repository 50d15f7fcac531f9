// Putting a plain text on a canvas.
#pragma once

#include "animation/paint_image.h"

// Draws the PLAIN TEXT `text` at its place in colours of `palette`, as View does: as many characters of a line as the
// grid is wide, the rest of a line over its beginning, and cells of the size that the font has, whatever the block
// says. The background is not drawn when its index is `transparentIndex` (kNoTransparency: it is). Returns the
// rectangle that was drawn, as much as lies on the canvas; empty also for a text that can't be reached.
Rectangle PaintText(const CanvasView& canvas, const Block& text, const RgbTriple* palette, int transparentIndex);
