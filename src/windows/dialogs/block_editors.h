// The editor of each kind of block.
#pragma once

#include "gif/block.h"
#include "platform/windows_api.h"

// Each lets the user edit `block`, a copy whose `owner` and `position` tell its place in the document, and returns
// whether to keep what is in the copy then (0: no).
int EditHeader(HWND parent, Block* block);  // may give images of the document the global palette, whatever it returns
                                            // (in careful mode only when that is not 0)
int EditImage(HWND parent, Block* block);
int EditControl(HWND parent, Block* block);  // refused, with a message, when there are no colours to choose from
int EditComment(HWND parent, Block* block);
int EditPlainText(HWND parent, Block* block);
int EditLoop(HWND parent, Block* block);
