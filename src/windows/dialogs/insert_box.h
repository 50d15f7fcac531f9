// The first question of the Insert command.
#pragma once

#include "gif/block_list.h"
#include "platform/windows_api.h"

// Lets the user choose what to insert into `document`. Returns the BlockKind (IMAGE, CONTROL, COMMENT, PLAIN TEXT or
// LOOP), or 0 on Cancel.
int ChooseInsertKind(HWND mainWindow, BlockList* document);
