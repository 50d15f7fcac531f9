// An imported image whose colours are not the document's: keep, remap or dither? (MatchImportedPalette itself is
// declared in gif/image_import.h, for the floor that makes the blocks.)
#pragma once

#include "gif/block.h"
#include "platform/window_handle.h"

// Answers of the palette dialog.
constexpr int kPaletteCancel = 2;
constexpr int kPaletteRemap = 102;
constexpr int kPaletteDither = 103;
// What the Animation Wizard remembers to keep an image as it is, as any number but these does.
constexpr int kPaletteKeep = 108;
// What the command line remembers to keep an image's colours, as its local palette where they are not the global ones.
constexpr int kPaletteKeepAsLocal = 208;

constexpr int kAskForPalette = -1;

// The answer remembered for further images, or kAskForPalette. An Insert command resets it before its first image;
// the palette dialog sets it.
extern int paletteChoiceForInsert;

// The remembered answer, or else what the user chooses in the palette dialog.
int AskPaletteChoice(WindowHandle owner, const Block& image);

// The palette dialog for `image`, whose bitmap and owning document decide which answers are open. Each face links its
// own. Returns kPaletteRemap, kPaletteDither or kPaletteCancel and, unless cancelled, sets `paletteChoiceForInsert`.
int RunPaletteDialog(WindowHandle owner, const Block& image);
