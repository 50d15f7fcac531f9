// Playing a document as an animation.
#pragma once

#include "gif/block_list.h"
#include "platform/windows_api.h"

// Plays `list` in a full-screen window of its own; returns when the user has closed it. The owner is not disabled and
// gets its messages meanwhile. Without a header the user is told, and nothing is shown.
void RunViewer(HWND owner, BlockList* list);
