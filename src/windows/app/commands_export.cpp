// The Export frames command.
#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "animation/animated_png.h"
#include "animation/contact_sheet.h"
#include "animation/encoded_frames.h"
#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/app/commands.h"
#include "windows/app/shell_state.h"
#include "windows/dialogs/document_operations.h"
#include "windows/dialogs/export_dialog.h"
#include "windows/services/file_batch.h"
#include "windows/services/file_dialogs.h"
#include "windows/services/file_presence.h"
#include "windows/services/messages.h"
#include "windows/services/progress_dialog.h"

namespace {

constexpr wchar_t kCaption[] = L"Export frames";
constexpr char kEnding[] = ".png";

// A file that is to become, and what becomes of it.
struct Export {
    BlockList blocks;  // shares its pixels with the document
    Animation animation;
    std::vector<uint32_t> frames;
    ExportForm form = ExportForm::kFiles;
    std::string name;  // that was chosen

    FrameResult result = FrameResult::kDone;
    FileBatch files;   // of kFiles
    ByteBuffer sheet;  // of kSheet
    File file;         // of the others, replaced when it is closed
};

std::wstring NameAlone(const std::string& path) {
    return WideFromUtf8(path.substr(path.find_last_of("\\/:") + 1));
}

// "kite" of "kite.PNG"; a name with another ending keeps it.
std::string WithoutEnding(const std::string& path, const char* ending) {
    const size_t bytes = std::min(path.size(), std::char_traits<char>::length(ending));
    const std::wstring end = WideFromUtf8(path.substr(path.size() - bytes));
    return lstrcmpiW(end.c_str(), WideFromUtf8(ending).c_str()) == 0 ? path.substr(0, path.size() - bytes) : path;
}

// "kite-003.png" for frame 2 of "kite.png": counted as the panes do, with the places that the last frame needs.
std::string NumberedPath(const Export& work, uint32_t frame) {
    constexpr size_t kFewestPlaces = 3;
    const size_t places = std::max(std::to_string(work.animation.Frames().size()).size(), kFewestPlaces);
    std::string digits = std::to_string(frame + 1);
    digits.insert(0, places - digits.size(), '0');
    return WithoutEnding(work.name, kEnding) + "-" + digits + kEnding;
}

// About numbered files, of whose names the file dialog knows nothing.
bool MayReplaceFiles(HWND window, const Export& work) {
    std::vector<std::string> there;
    for (uint32_t frame : work.frames)
        if (const std::string path = NumberedPath(work, frame); IsThere(path)) there.push_back(path);
    if (there.empty()) return true;
    std::wstring text = NameAlone(there.front());
    if (there.size() > 1) text += L" and " + std::to_wstring(there.size() - 1) + L" more of these files";
    return YesnoBox(window, text + (there.size() > 1 ? L" are" : L" is") + L" there already. Replace?") == IDYES;
}

void WriteFiles(Export* work, const WorkWatch& watch) {
    FrameWork frameWork;
    frameWork.watch = watch;
    frameWork.encode = [](const CanvasView& canvas, const struct Rectangle& area, ByteBuffer* png) {
        return EncodeCanvas(canvas, area, {}, png);
    };
    frameWork.deliver = [&](uint32_t frame, const struct Rectangle&, std::span<const uint8_t> png) {
        return work->files.Add(NumberedPath(*work, frame), png);
    };
    work->result = EncodeFrames(work->animation, work->frames, frameWork);
}

void WriteSheet(Export* work, const WorkWatch& watch) {
    const SheetLayout layout = LayOutSheet(work->animation, work->frames.size(), 0);
    work->result = EncodeSheet(work->animation, work->frames, layout, {}, watch, &work->sheet);
}

void WriteAnimation(Export* work, const WorkWatch& watch) {
    work->result = work->file.CreateReplacement(work->name.c_str())
                       ? WriteAnimatedPng(work->animation, work->frames, {}, watch, work->file)
                       : FrameResult::kNotDelivered;
}

void MakeFiles(Export* work, const WorkWatch& watch) {
    switch (work->form) {
        case ExportForm::kFiles: return WriteFiles(work, watch);
        case ExportForm::kSheet: return WriteSheet(work, watch);
        case ExportForm::kAnimation: return WriteAnimation(work, watch);
    }
}

void TellNotWritten(HWND window, const std::string& path, const std::string& reason) {
    std::wstring text = NameAlone(path) + L"\n\nThis file can't be written.";
    if (!reason.empty()) text += L"\n" + WideFromUtf8(reason);
    MessageBox(window, text);
}

void TellFailure(HWND window, const Export& work) {
    const File& file = work.file;
    if (work.form == ExportForm::kFiles && !work.files.FailedPath().empty())
        return TellNotWritten(window, work.files.FailedPath(), work.files.Reason());
    if (file.HasFailed()) return TellNotWritten(window, work.name, file.Reason());
    TellOutOfMemory(window);
}

// Until here nothing stands where the files are to be.
void PutFiles(HWND window, Export* work) {
    File& file = work->file;
    bool done = false;
    if (work->form == ExportForm::kFiles) {
        done = work->files.Commit();
    } else if (work->form == ExportForm::kAnimation) {
        done = file.Close();
    } else {
        const std::span<const uint8_t> png = work->sheet.Content();
        done = file.CreateReplacement(work->name.c_str()) && file.Write(png.data(), png.size()) && file.Close();
    }
    if (!done) TellFailure(window, *work);
}

// Whether there is something to export; tells the user otherwise.
bool CanExport(HWND window, const Animation& animation) {
    if (animation.Frames().empty()) return MessageBox(window, "There are no frames in this document."), false;
    if (animation.Screen().IsEmpty()) return MessageBox(window, "The screen of this document has no pixels."), false;
    if (FitsCanvas(animation)) return true;
    return MessageBox(window, "The screen of this document is too large to be exported."), false;
}

bool SheetFits(HWND window, const Export& work) {
    if (work.form != ExportForm::kSheet || LayOutSheet(work.animation, work.frames.size(), 0).Fits()) return true;
    return MessageBox(window, "A sheet of these frames would be too large. Export fewer of them."), false;
}

// What is wanted, and where. False when the user does not want it after all, or can't have it.
bool AskWhatAndWhere(HWND window, Export* work) {
    ExportRequest request;
    request.count = static_cast<uint32_t>(work->animation.Frames().size());
    if (!AskExport(window, &request)) return false;
    work->form = request.form;
    work->frames.resize(request.last - request.first + 1);
    std::iota(work->frames.begin(), work->frames.end(), request.first);
    if (!SheetFits(window, *work)) return false;
    work->name = documentIsNamed ? WithoutEnding(currentFileName, ".gif") + kEnding : "frames.png";
    const bool isOne = work->form != ExportForm::kFiles;
    return SavePngDialog(window, isOne, &work->name) && (isOne || MayReplaceFiles(window, *work));
}

}  // namespace

void OnExportFrames(HWND window) {
    if (document.count == 0) return;
    Export work;
    if (!CopyBlockList(document, &work.blocks) || !work.animation.Open(work.blocks, Texts::kDrawn))
        return TellOutOfMemory(window);
    if (!CanExport(window, work.animation) || !AskWhatAndWhere(window, &work)) return;
    const WorkEnd end = RunWithProgress(window, kCaption, L"Composing frames",
                                        [&work](const WorkWatch& watch, const auto&) { MakeFiles(&work, watch); });
    if (end == WorkEnd::kStopped) return;
    if (end == WorkEnd::kNoMemory || work.result == FrameResult::kNoMemory) return TellOutOfMemory(window);
    work.result == FrameResult::kDone ? PutFiles(window, &work) : TellFailure(window, work);
}
