// A document as it comes back from the file that it is written to.
#pragma once

#include "gif/gif_reader.h"

// Writes `list` in the whole manner and makes `back`, which must be new, what is read whole of that. `*report` then
// tells what is damaged in it as it is now, edits included. False when memory runs out, or it has no header.
[[nodiscard]] bool ReadWrittenForm(const BlockList& list, BlockList* back, ReadReport* report);
