// What the innermost dialog edits.
#pragma once

// Points at the running dialog's subject: a Block for the block editors, a parameter record for others.
// Null while no dialog runs; dialogs nest.
extern void* editedBlock;

// The subject, seen as a T.
template <typename T>
T* Edited() {
    return static_cast<T*>(editedBlock);
}
