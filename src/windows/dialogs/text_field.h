// The text of a comment or plain-text block in a multi-line edit field.
#pragma once

#include "gif/block.h"
#include "platform/windows_api.h"

// Sets the edit field up (fixed pitch, limit of kMaxTextBytes, Ctrl+A selects all) and shows the block's text up to its
// first NUL. False when it can't be shown whole; taking it back would then lose text.
[[nodiscard]] bool ShowBlockText(HWND dialog, int id, const Block& block);

// Gives the block the text of the edit field in new memory, or, when that is empty, no data; the old memory stays the
// caller's. A text that is still the one shown leaves the block as it is, with what lies behind a NUL; in careful mode
// a changed one keeps that, too. When memory runs out the user is told and the block keeps its text.
void TakeBlockText(HWND dialog, int id, Block* block);
