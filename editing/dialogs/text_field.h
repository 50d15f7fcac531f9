// The text of a comment or plain-text block in a multi-line edit field.
#pragma once

#include "gif/block.h"
#include "platform/windows_api.h"

// Sets the edit field up (fixed pitch, limit of kMaxTextBytes) and shows the block's text up to its first NUL.
// False when it can't be shown whole; taking it back would then lose text.
[[nodiscard]] bool ShowBlockText(HWND dialog, int id, const Block& block);

// Replaces the block's text by that of the edit field; an empty one leaves the block without data. When memory runs out
// the user is told and the block keeps its text.
void TakeBlockText(HWND dialog, int id, Block* block);
