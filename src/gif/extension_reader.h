// Reading the extension blocks of GIF files.
#pragma once

#include "gif/block.h"
#include "platform/file.h"

// Reads the extension whose introducer has just been read into `block`, which comes in zeroed. False when the label is
// unknown, the fixed part is cut short or memory runs out; what `block` then holds is the caller's to release.
//
// Application blocks of others, of the standard size 11, are read up to their data and no further: the data stays in
// the file, where its first length byte usually ends the document.
bool ReadExtension(Block* block, File& file);

// Moves behind the extension whose introducer has just been read, known or not.
void SkipExtension(File& file);
