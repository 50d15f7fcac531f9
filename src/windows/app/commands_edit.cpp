// The commands of the Edit menu on the selected block, and those on all frames.
#include <algorithm>
#include <cctype>
#include <numeric>
#include <string>

#include "editing/block_operations.h"
#include "editing/frame_operations.h"
#include "editing/selection.h"
#include "editing/timing.h"
#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "windows/app/block_list_view.h"
#include "windows/app/commands.h"
#include "windows/app/document_history.h"
#include "windows/app/shell_state.h"
#include "windows/dialogs/document_operations.h"
#include "windows/dialogs/timing_dialog.h"
#include "windows/services/messages.h"
#include "windows/services/wait_cursor.h"

namespace {

constexpr int kHeaderLine = 0;

// Shows what became of the document, or says why it is as it was.
void ShowOutcome(HWND window, const EditOutcome& outcome, int line) {
    if (!outcome) return TellOutcome(window, outcome);
    ShowChangedDocument(window, line);
    if (line != kNoLine) RevealLine(window, line);
    TellOutcome(window, outcome);
}

// The blocks of a document whose header is its first one; without such a header nothing is put anywhere.
bool HasHeaderLine() {
    return document.count > 0 && document.blocks[kHeaderLine].kind == kHeaderBlock;
}

bool IsOrdinaryBlock(int line) {
    return line > kHeaderLine && HasHeaderLine() && document.blocks[static_cast<uint32_t>(line)].kind != kHeaderBlock;
}

size_t ImageCount() {
    return static_cast<size_t>(std::ranges::count(document.All(), kImageBlock, &Block::kind));
}

// The number of the frame that the block is of, or -1.
int FrameOfBlock(int line) {
    const std::vector<FrameBlocks> frames = FindFrames(document);
    const auto found = std::ranges::find_if(frames, [=](const FrameBlocks& frame) {
        return std::ranges::find(frame.blocks, static_cast<uint32_t>(line)) != frame.blocks.end();
    });
    return found == frames.end() ? -1 : static_cast<int>(found - frames.begin());
}

}  // namespace

void TellOutcome(HWND window, const EditOutcome& outcome) {
    std::string text = outcome.refusal;
    for (const std::string& note : outcome.notes) text += (text.empty() ? "" : "\n") + note;
    if (text.empty()) return;
    text[0] = static_cast<char>(toupper(static_cast<unsigned char>(text[0])));
    if (text.back() != '.') text += '.';
    MessageBox(window, text.c_str());
}

void MoveLine(HWND window, int line, int behind) {
    RecordedStep step(IDS_STEP_MOVE);
    step.Concerns(line, 1);
    const auto block = static_cast<uint32_t>(line);
    const EditOutcome outcome = MoveBlocks({&block, 1}, static_cast<uint32_t>(behind), Looks::kLeft, &document);
    ShowOutcome(window, outcome, behind < line ? behind + 1 : behind);
}

bool CanMoveLine(int line, int behind) {
    const bool isThere = behind >= kHeaderLine && static_cast<uint32_t>(behind) < document.count;
    return IsOrdinaryBlock(line) && isThere && behind != line && behind != line - 1;
}

bool CanDuplicate(HWND window) {
    const int line = SelectedBlock(window);
    return IsOrdinaryBlock(line) && document.blocks[static_cast<uint32_t>(line)].kind != kLoopBlock;
}

bool CanMoveUp(HWND window) {
    const int line = SelectedBlock(window);
    return CanMoveLine(line, line - 2);
}

bool CanMoveDown(HWND window) {
    const int line = SelectedBlock(window);
    return CanMoveLine(line, line + 1);
}

bool CanReverse(HWND) {
    return ImageCount() > 1;
}

bool CanTime(HWND) {
    return ImageCount() > 0;
}

void OnDuplicate(HWND window) {
    const int line = SelectedBlock(window);
    RecordedStep step(IDS_STEP_DUPLICATE);
    step.Concerns(line, 1);
    const auto block = static_cast<uint32_t>(line);
    ShowOutcome(window, DuplicateBlocks({&block, 1}, block, Looks::kLeft, &document), line + 1);
}

void OnMoveUp(HWND window) {
    const int line = SelectedBlock(window);
    MoveLine(window, line, line - 2);
}

void OnMoveDown(HWND window) {
    const int line = SelectedBlock(window);
    MoveLine(window, line, line + 1);
}

void OnReverse(HWND window) {
    RecordedStep step(IDS_STEP_REVERSE);
    std::vector<uint32_t> frames(ImageCount());
    std::iota(frames.begin(), frames.end(), 0u);
    const int line = SelectedLine(window);
    WaitCursor wait;
    ShowOutcome(window, ReverseFrames(frames, &document), line);
}

void OnTiming(HWND window) {
    RecordedStep step(IDS_STEP_TIMING);
    TimingRequest request;
    const int line = SelectedLine(window);
    request.delays = DelaysOf(document);
    request.selectedFrame = FrameOfBlock(line);
    if (!AskTiming(window, &request)) return;
    const uint32_t count = document.count;
    const EditOutcome outcome = Retime(request.frames, request.how, &document);
    // Controls that frames got may stand before the line that is selected.
    const bool isSame = document.count == count;
    ShowOutcome(window, outcome, isSame ? line : std::min(line, static_cast<int>(document.count) - 1));
}
