// Editing one block of the document.
#pragma once

#include "gif/block_list.h"
#include "platform/windows_api.h"

enum EditResult { kBlockEdited = 0, kBlockInaccessible = 1, kBlockUnchanged = 2 };

// Lets the user edit block `index` in the dialog of its kind. Returns kBlockEdited when the document is to count as
// changed, kBlockInaccessible when the block can't be read or written back, kBlockUnchanged otherwise. Kinds without an
// editor: application and unknown blocks are explained and stay unchanged; EMPTY (explained) and BLOCK NAMES (silent)
// count as edited. A block whose content did change is encoded from then on (source_bytes.h). In careful mode an edit
// that changes nothing counts as none, and a text of which the block has only a part is not edited.
int EditBlock(HWND mainWindow, BlockList* document, int index);
