// Texts in the data sub-blocks of extensions, as blocks keep them.
#pragma once

#include "gif/block.h"
#include "platform/file.h"

// Read the sub-blocks at which `file` stands into the text of `block`, up to kMaxTextBytes; what lies beyond is read
// and dropped. False when memory runs out.
bool ReadText(File& file, Block* block);     // every byte as it is
bool ReadComment(File& file, Block* block);  // line ends made carriage return, line feed; other control bytes dropped
