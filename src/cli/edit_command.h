// Commands that change documents: the words that all of them take, and the files that they work on.
//
//   zephyr COMMAND [OPTION...] IN OUT OPERAND...
//   zephyr COMMAND --in-place [OPTION...] OPERAND... -- FILE...
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "cli/loaded_file.h"
#include "cli/options.h"
#include "cli/save_warnings.h"
#include "editing/edit_outcome.h"
#include "editing/selection.h"

// What came of a command's work on one document.
struct EditAnswer : EditOutcome {
    EditAnswer() = default;
    EditAnswer(EditOutcome outcome) : EditOutcome(std::move(outcome)) {}

    std::string file = {};    // what the refusal is about, when that is not the document
    bool wrongWords = false;  // no document would take the words
    bool isTold = false;      // refused, and the reason is on standard error already
    TouchedBlocks touched = {};
};

// The work of one command.
class Edit {
public:
    virtual ~Edit() = default;

    // Takes down what the options and operands ask for. Returns what is wrong with them, or an empty text.
    virtual std::string Read(const Options& options, const Words& operands) = 0;

    // Changes the document, or leaves it as it was.
    virtual EditAnswer Change(LoadedFile* file) = 0;

    // Says more once that document was saved as `out`, or would have been. `in` is what messages call the file that it
    // came from.
    virtual void Report(const LoadedFile& file, const std::string& in, const std::string& out);

    // Whether the words make the command read standard input, beside the documents.
    virtual bool ReadsStandardInput() const { return false; }
    // Whether damages of the files are told as all commands do.
    virtual bool TellsDamages() const { return true; }
};

// What the words of a command look like.
struct EditForm {
    const char* command;
    Options::Names flags, values;  // its own options
    size_t leastOperands = 0;      // behind IN and OUT
    size_t mostOperands = SIZE_MAX;
    const char* wants = "";  // what these are, as it is said behind "give IN, OUT": " and the blocks to be moved"
    bool fitsFirst = false;  // "--fit-screen" means the images as they are read: the command makes some smaller
};

// Runs the command on its file or files. Returns the program's exit status.
int RunEdit(const EditForm& form, const Words& words, Edit* edit);

// The words as one selection, `otherwise` when there are none. Returns what is wrong with them, or an empty text.
std::string ReadSelection(std::span<const std::string> words, const char* otherwise, Selection* selection);

// Reads the option "--at" as the block behind which others come: a selection, of which the last block counts. Returns
// what is wrong with it, or an empty text.
std::string ReadPlace(const Options& options, Selection* place);

// The number of that block in `list`. False, with the reason in `why`, when there is none.
bool FindPlace(const Selection& place, const BlockList& list, uint32_t* index, std::string* why);

// What --help prints of all commands that change documents, behind their own text; and of those that take a SELECTION.
extern const char kEditHelp[];
extern const char kSelectionHelp[];
