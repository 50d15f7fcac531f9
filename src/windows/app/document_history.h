// The way back of the open document: its one history, and the two commands on it.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "editing/history.h"
#include "gif/block_list.h"
#include "platform/windows_api.h"

// Whoever changes the document has one of these around the change, from before the first question about it to after the
// last one: what the document has become in between is one step.
class RecordedStep {
public:
    // `verb` is what is done, IDS_STEP_..., a printf format with a place for a text.
    explicit RecordedStep(unsigned verb);
    ~RecordedStep();
    RecordedStep(const RecordedStep&) = delete;
    RecordedStep& operator=(const RecordedStep&) = delete;

    // Says which blocks it is done to, for the step's name: `count` blocks of the document as it is now, from `first`
    // on. What is not there does not count.
    void Concerns(int first, uint32_t count);

private:
    unsigned verb_;
    std::string name_;
    BlockList before_;
    bool isOutermost_;  // within another one's scope there is no step of its own
    bool isReady_;      // there was memory to know what the document was
    unsigned document_;
};

// Another document takes the place of the one before, or none. `isSaved`: it is as its file has it, or not worth one.
void StartHistory(bool isSaved);

// The document is now as its file has it.
void MarkDocumentSaved();

// What Undo and Redo would do, by name; null when there is nothing.
const std::string* UndoName();
const std::string* RedoName();

void OnUndo(HWND window);
void OnRedo(HWND window);

// The history itself, to look at.
const History& DocumentHistory();
