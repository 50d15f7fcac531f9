// The Check command.
#include <utility>

#include "editing/findings.h"
#include "editing/written_form.h"
#include "windows/app/block_list_view.h"
#include "windows/app/commands.h"
#include "windows/app/shell_state.h"
#include "windows/dialogs/document_operations.h"
#include "windows/dialogs/findings_dialog.h"
#include "windows/services/messages.h"
#include "windows/services/progress_dialog.h"

namespace {

// A document that is looked at.
struct Checked {
    BlockList blocks;  // shares its pixels with the document
    Animation animation;
    std::vector<Finding> findings;
    bool isDone = false;  // there was memory for it
};

std::string LineWords(uint32_t index) {
    return "line " + std::to_string(index + 1);
}

// What is damaged in the document as it is now. The classic manner keeps nothing that is.
bool FindDamages(const BlockList& blocks, ReadReport* report) {
    BlockList back;
    if (!(blocks.flags & kReadWhole)) return true;
    if (!ReadWrittenForm(blocks, &back, report)) return false;
    if (back.count != blocks.count)
        for (Damage& damage : report->damages) damage.block = kWholeFile;
    return true;
}

void Look(Checked* checked, const WorkWatch& watch) {
    ReadReport report = {};
    checked->isDone = checked->animation.Open(checked->blocks, Texts::kDrawn) &&
                      FindDamages(checked->blocks, &report) && watch(0, 1) &&
                      FindSurprises(checked->animation, report, LineWords, watch, &checked->findings);
}

void Tell(HWND window, const std::vector<Finding>& findings) {
    if (findings.empty()) return MessageBox(window, "Nothing was found that may surprise in players.");
    FindingsRequest request;
    for (const Finding& finding : findings)
        request.places.push_back({static_cast<int>(finding.block), finding.what + "."});
    request.choose = [window](int line) { ChooseLine(window, line); };
    ShowFindings(window, &request);
}

}  // namespace

void OnCheck(HWND window) {
    if (document.count == 0) return;
    Checked checked;
    if (!CopyBlockList(document, &checked.blocks)) return TellOutOfMemory(window);
    const WorkEnd end = RunWithProgress(window, L"Check", L"Looking at the frames",
                                        [&checked](const WorkWatch& watch, const auto&) { Look(&checked, watch); });
    if (end == WorkEnd::kStopped) return;
    if (end == WorkEnd::kNoMemory || !checked.isDone) return TellOutOfMemory(window);
    Tell(window, checked.findings);
}
