// Writing the blocks of a GIF file one by one.
#pragma once

#include "gif/block.h"
#include "platform/file.h"

// Each writes one block of its kind and returns whether that succeeded. A text kind without data writes nothing.
bool WriteImageBlock(File& file, const Block& block);
bool WriteControlBlock(File& file, const Block& block);
bool WritePlainTextBlock(File& file, const Block& block);
bool WriteApplicationBlock(File& file, const Block& block);
bool WriteCommentBlock(File& file, const Block& block);
bool WriteLoopBlock(File& file, const Block& block);
bool WriteUnknownBlock(File& file, const Block& block);  // its label stands in descriptor byte 0

// Writes the colour table of a header or image, as large as its packed byte says; nothing when that says none.
bool WritePalette(File& file, const Block& block, uint8_t packed);
