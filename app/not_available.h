// Commands whose windows are still to come.
#pragma once

#include "gif/block_list.h"
#include "platform/windows_api.h"

int RunAnimationWizard(HWND mainWindow, BlockList* document);
