// The command whose window is still to come.
#pragma once

#include "gif/block_list.h"
#include "platform/windows_api.h"

int ChooseInsertKind(HWND mainWindow, BlockList* document);
