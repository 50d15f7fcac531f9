// What dialogs edit.
#pragma once

#include "platform/windows_api.h"

// What the innermost dialog edits: a Block for the block editors, a parameter record for others. Null while no dialog
// runs; dialogs nest. A dialog's own messages go by SubjectOf, as they also come while another one runs on top of it.
extern void* editedBlock;

// What `dialog`, which RunEditingDialog (windows/dialogs/dialog_frame.h) runs, edits.
void* SubjectOf(HWND dialog);

// The same, seen as a T.
template <typename T>
T* Edited(HWND dialog) {
    return static_cast<T*>(SubjectOf(dialog));
}
