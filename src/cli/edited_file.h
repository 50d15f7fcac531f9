// The file that a command changes by one operation: IN, what is chosen of it, and OUT.
#pragma once

#include <string>
#include <vector>

#include "cli/loaded_file.h"
#include "cli/options.h"
#include "cli/save_warnings.h"
#include "editing/edit_outcome.h"
#include "editing/selection.h"

// The words of the operands from number `first` on as one selection, `otherwise` when there are none. Returns what is
// wrong with them, or an empty text.
std::string ReadSelection(const Options& options, size_t first, const char* otherwise, Selection* selection);

// Reads the option "--at" as the block behind which others come: a selection, of which the last block counts. Returns
// what is wrong with it, or an empty text.
std::string ReadPlace(const Options& options, Selection* place);

class EditedFile {
public:
    // IN and OUT are the first two operands.
    explicit EditedFile(const Options& options) : options_(options) {}

    // Each reports a failure on standard error.
    bool Open() { return file_.Open(In(), options_); }
    bool Find(const Selection& selection, std::vector<uint32_t>* blocks) const;
    bool FindFrameNumbers(const Selection& selection, std::vector<uint32_t>* frames) const;
    bool FindPlace(const Selection& place, uint32_t* index) const;

    BlockList* List() { return &file_.list; }

    // Tells what came of the operation and writes the document to OUT when it was done. Returns the program's exit
    // status.
    int Finish(const EditOutcome& outcome, const TouchedBlocks& touched = {});

private:
    const std::string& In() const { return options_.Operands()[0]; }

    const Options& options_;
    LoadedFile file_;
};
