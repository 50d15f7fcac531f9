// The Animation Wizard: builds a document from a series of picture files that the user chooses.
#pragma once

#include "gif/block_list.h"
#include "platform/windows_api.h"

// Runs the wizard. `document` comes empty, without memory of its own. Returns 1 when a new animation was put into it,
// 0 with nothing changed when the user cancelled or the build failed, which the user has been told.
int RunAnimationWizard(HWND owner, BlockList* document);
