// Writing the blocks of a GIF file one by one.
#pragma once

#include "gif/block.h"
#include "gif/manner.h"
#include "platform/file.h"

// Each writes one block of its kind, encoded anew, and returns whether that succeeded. A text kind without data writes
// nothing, or an empty text in the whole manner.
bool WriteImageBlock(File& file, const Block& block, Manner manner = Manner::kClassic);
bool WriteControlBlock(File& file, const Block& block);
bool WritePlainTextBlock(File& file, const Block& block, Manner manner = Manner::kClassic);
bool WriteApplicationBlock(File& file, const Block& block, Manner manner = Manner::kClassic);
bool WriteCommentBlock(File& file, const Block& block, Manner manner = Manner::kClassic);
bool WriteLoopBlock(File& file, const Block& block);
bool WriteUnknownBlock(File& file, const Block& block,
                       Manner manner = Manner::kClassic);  // its label stands in descriptor byte 0

// Writes the colour table of a header or image, as large as its packed byte says; nothing when that says none.
bool WritePalette(File& file, const Block& block, uint8_t packed);
