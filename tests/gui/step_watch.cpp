#include "tests/gui/step_watch.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/faults.h"
#include "platform/windows_api.h"
#include "tests/support/test_blocks.h"
#include "windows/app/document_history.h"
#include "windows/app/shell_state.h"
#include "windows/ids/command_ids.h"

namespace {

// The faults that a test has ordered are not for its watches.
class NoFaults {
public:
    NoFaults() : ordered_(std::exchange(faults, {})) {}
    ~NoFaults() { faults = ordered_; }
    NoFaults(const NoFaults&) = delete;
    NoFaults& operator=(const NoFaults&) = delete;

private:
    Faults ordered_;
};

bool BringsAnotherDocument(int command) {
    constexpr int kCommands[] = {IDM_NEW, IDM_OPEN, IDM_CLOSE, IDM_WIZARD, IDM_EXIT, IDM_OPEN_WHOLE};
    return command >= IDM_RECENT_FIRST || std::ranges::find(kCommands, command) != std::end(kCommands);
}

BlockList CopyOf(const BlockList& list) {
    BlockList copy;
    EXPECT_TRUE(CopyBlockList(list, &copy));
    return copy;
}

}  // namespace

std::string StateOf(const BlockList& list) {
    std::string state;
    for (const Block& block : list.All())
        state += std::to_string(block.kind) + DescriptorOf(block) + TextOf(block) + NameOf(block) + "\n";
    File file;
    EXPECT_TRUE(file.CreateMemory());
    if (!WriteWholeGif(list, file, nullptr)) return state + "can't be saved";
    return state.append(file.Written().begin(), file.Written().end());
}

StepWatch::StepWatch(int command) : command_(LOWORD(command)) {
    NoFaults none;
    before_ = StateOf(document);
    steps_ = DocumentHistory().Steps();
}

StepWatch::~StepWatch() {
    NoFaults none;
    const std::string after = StateOf(document);
    if (BringsAnotherDocument(command_) && DocumentHistory().Steps() == 0) return;
    if (after == before_) {
        EXPECT_LE(DocumentHistory().Steps(), steps_) << "command " << command_ << ": a step without a change";
        return;
    }
    History back = DocumentHistory(), forth = back;
    BlockList undone = CopyOf(document), redone = CopyOf(document);
    if (back.Undo(&undone) && StateOf(undone) == before_) {
        EXPECT_TRUE(back.Redo(&undone));
        EXPECT_TRUE(StateOf(undone) == after) << "command " << command_ << ": the step leads elsewhere";
    } else {
        EXPECT_TRUE(forth.Redo(&redone)) << "command " << command_ << ": a change without a step";
        EXPECT_TRUE(StateOf(redone) == before_) << "command " << command_ << ": the step does not lead back";
    }
}
