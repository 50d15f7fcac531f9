// The Make smaller command.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "editing/written_form.h"
#include "gif/gif_writer.h"
#include "gif/logical_screen.h"
#include "size/optimise.h"
#include "size/strip.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/app/block_list_view.h"
#include "windows/app/commands.h"
#include "windows/app/document_commands.h"
#include "windows/app/document_history.h"
#include "windows/app/shell_state.h"
#include "windows/dialogs/document_operations.h"
#include "windows/dialogs/smaller_dialog.h"
#include "windows/services/messages.h"
#include "windows/services/progress_dialog.h"

namespace {

constexpr wchar_t kCaption[] = L"Make smaller";

// A document that is made smaller.
struct Smaller {
    bool savesWhole = false;  // as the document is saved before
    BlockList old;            // as it would be saved: with its screen fitted, where that is done
    SmallerRequest request;
    OptimiseResult result = OptimiseResult::kNoMemory;
    BlockList made;  // the smallest there is
    uint32_t stripped = 0;
    bool textsGone = false;  // plain texts are among what was stripped
    OptimiseNotes notes;
    std::optional<uint64_t> after;
};

// The bytes of the file that is written of the list.
std::optional<uint64_t> SavedBytes(const BlockList& list, bool whole) {
    if (whole) return WrittenBytes(list);
    File file;
    if (!file.CreateMemory() || !WriteGif(list, file, GetUserIdentity()) || file.HasFailed()) return std::nullopt;
    return file.Written().size();
}

class ToldFrames : public OptimiseWatch {
public:
    explicit ToldFrames(const WorkWatch& watch) : watch_(watch) {}
    void OnPlanned(size_t done, size_t count) override { watch_(done, 2 * count); }
    void OnFrame(size_t done, size_t count) override { watch_(count + done, 2 * count); }

private:
    const WorkWatch& watch_;
};

// Pictures that were given names here keep them where there are as many as before.
void KeepNames(const BlockList& old, BlockList* made) {
    auto isImage = [](const Block& block) { return block.kind == kImageBlock; };
    if (std::ranges::count_if(old.All(), isImage) != std::ranges::count_if(made->All(), isImage)) return;
    uint32_t at = 0;
    for (Block& block : made->All()) {
        if (!isImage(block)) continue;
        while (!isImage(old.blocks[at])) ++at;
        if (!block.name) block.name = old.blocks[at].name;
        ++at;
    }
}

// What the search reads is the written form: only that has bytes that a frame may keep, and tells what is damaged.
void Search(Smaller* work, const WorkWatch& watch, const std::atomic<bool>& isToStop) {
    BlockList stripped, whole;
    ReadReport report;
    work->result = OptimiseResult::kNoMemory;
    if (!CopyBlockList(work->old, &stripped)) return;
    work->stripped = StripBlocks(work->request.stripped, &stripped);
    work->textsGone = FindBlock(work->old, kPlainTextBlock) >= 0 && FindBlock(stripped, kPlainTextBlock) < 0;
    if (!ReadWrittenForm(stripped, &whole, &report) || !watch(0, 1)) return;
    ToldFrames told(watch);
    work->request.options.stop = &isToStop;
    work->result = OptimiseWithin(whole, report, work->request.options, &told, &work->made, &work->notes);
    const bool isSmaller = work->result == OptimiseResult::kSmaller;
    if (isSmaller) KeepNames(stripped, &work->made);
    if (!isSmaller) work->made = std::move(stripped);
    work->after = SavedBytes(work->made, isSmaller || work->savesWhole);
}

size_t ImageCount(const BlockList& list) {
    return static_cast<size_t>(std::ranges::count(list.All(), kImageBlock, &Block::kind));
}

std::wstring Counted(size_t count, const wchar_t* what) {
    return std::to_wstring(count) + L" " + what + (count == 1 ? L"" : L"s");
}

std::wstring Fixed(double number, int places) {
    wchar_t text[40];
    swprintf(text, std::size(text), L"%.*f", places, number);
    return text;
}

// Why the pictures were left alone.
std::wstring Reason(const Smaller& work) {
    return std::wstring(work.notes.leftAlone, work.notes.leftAlone + strlen(work.notes.leftAlone));
}

// What it costs beside the time: each a sentence on a line of its own.
std::wstring DescribePrice(const Smaller& work) {
    std::wstring text;
    const size_t before = ImageCount(work.old), after = ImageCount(work.made);
    const bool isSmaller = work.result == OptimiseResult::kSmaller;
    const bool loses = isSmaller && work.notes.loss.largest != 0;
    if (loses)
        text += L"\nColours are up to " + std::to_wstring(work.notes.loss.largest) + L" of 255 off, " +
                Fixed(work.notes.loss.mean, 2) + L" on average.";
    if (isSmaller && !loses)
        text += work.textsGone ? L"\nIts pictures look and play the same." : L"\nIt looks and plays the same.";
    if (before != after) text += L"\n" + Counted(before, L"frame") + L" become " + Counted(after, L"frame") + L".";
    if (work.stripped) text += L"\n" + Counted(work.stripped, L"block") + L" will be gone.";
    if (isSmaller && !work.savesWhole)
        text += L"\nFrom now on it is saved whole, as in careful mode: images are not encoded anew.";
    if (work.result == OptimiseResult::kLeftAlone && before > 0)
        text += L"\nIts pictures are left alone, because " + Reason(work) + L".";
    return text;
}

std::wstring DescribeSizes(const Smaller& work) {
    const double share = 100 * (1 - static_cast<double>(*work.after) / static_cast<double>(work.request.before));
    return GroupedNumber(work.request.before) + L" bytes become " + GroupedNumber(*work.after) + L", " +
           Fixed(share, 1) + L" % less.";
}

void TellNothingGained(HWND window, const Smaller& work) {
    if (ImageCount(work.old) == 0) return MessageBox(window, "There are no frames in this document.");
    if (work.result == OptimiseResult::kLeftAlone)
        return MessageBox(window, L"This document is left alone, because " + Reason(work) + L".");
    MessageBox(window, L"Nothing smaller was found that plays the same. The document stays as it is.");
}

void TakeOver(HWND window, Smaller* work) {
    const int line = std::min(SelectedLine(window), static_cast<int>(work->made.count) - 1);
    RecordedStep step(IDS_STEP_MAKE_SMALLER);
    // A screen that follows the images would leave out what these no longer cover.
    if (work->result == OptimiseResult::kSmaller) work->made.flags = kReadWhole;
    document = std::move(work->made);
    RenumberBlocks(&document);
    ShowChangedDocument(window, line);
}

// False when the user does not want it, or memory runs out, which is told.
bool Measure(HWND window, Smaller* work) {
    std::optional<uint64_t> before;
    if (!CopyBlockList(document, &work->old)) return TellOutOfMemory(window), false;
    work->savesWhole = SavesWhole();
    if (ScreenFollowsImages()) FitLogicalScreen(&work->old);
    const WorkEnd end =
        RunWithProgress(window, kCaption, L"Measuring the document", [&](const auto& watch, const auto&) {
            if (watch(0, 1)) before = SavedBytes(work->old, work->savesWhole);
        });
    if (end == WorkEnd::kStopped) return false;
    if (end == WorkEnd::kNoMemory || !before) return TellOutOfMemory(window), false;
    work->request.before = *before;
    return true;
}

}  // namespace

void OnMakeSmaller(HWND window) {
    if (!FindHeader(document)) return;
    Smaller work;
    if (!Measure(window, &work) || !AskSmaller(window, &work.request)) return;
    const WorkEnd end =
        RunWithProgress(window, kCaption, L"Searching",
                        [&work](const WorkWatch& watch, const std::atomic<bool>& stop) { Search(&work, watch, stop); });
    if (end == WorkEnd::kStopped) return;
    if (end == WorkEnd::kNoMemory || work.result == OptimiseResult::kNoMemory || !work.after)
        return TellOutOfMemory(window);
    if (*work.after >= work.request.before) return TellNothingGained(window, work);
    if (YesnoBox(window, DescribeSizes(work) + DescribePrice(work) + L"\nTake it?") == IDYES) TakeOver(window, &work);
}
