// What the innermost dialog edits.
#pragma once

// Points at the running dialog's subject: a Block for the block editors, a parameter record for others.
// Null while no dialog runs.
extern void* editedBlock;

// Makes `edited` the subject for the length of a scope, so that dialogs nest.
class EditedBlock {
public:
    explicit EditedBlock(void* edited) : previous_(editedBlock) { editedBlock = edited; }
    ~EditedBlock() { editedBlock = previous_; }
    EditedBlock(const EditedBlock&) = delete;
    EditedBlock& operator=(const EditedBlock&) = delete;

private:
    void* previous_;
};

// The subject, seen as a T.
template <typename T>
T* Edited() {
    return static_cast<T*>(editedBlock);
}
