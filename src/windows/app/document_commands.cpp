#include "windows/app/document_commands.h"

#include <string>
#include <utility>

#include "gif/default_blocks.h"
#include "gif/gif_reader.h"
#include "gif/gif_writer.h"
#include "gif/logical_screen.h"
#include "platform/file.h"
#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/app/block_list_view.h"
#include "windows/app/document_face.h"
#include "windows/app/document_history.h"
#include "windows/app/load_notice.h"
#include "windows/app/main_window.h"
#include "windows/app/notice_strip.h"
#include "windows/app/recent_files.h"
#include "windows/app/shell_state.h"
#include "windows/dialogs/document_operations.h"
#include "windows/dialogs/scoped_value.h"
#include "windows/dialogs/wizard.h"
#include "windows/ids/command_ids.h"
#include "windows/services/careful.h"
#include "windows/services/file_dialogs.h"
#include "windows/services/file_presence.h"
#include "windows/services/messages.h"
#include "windows/services/wait_cursor.h"

namespace {

// A file without a GIF signature opens as a document without blocks.
constexpr bool kQuirkNoSignatureStillOpens = true;

// The lines of a closed document stay on the screen until the list is filled the next time.
constexpr bool kQuirkCloseKeepsLines = true;

// A save after New or the wizard writes over the file last opened or saved.
constexpr bool kQuirkNameOutlivesDocument = true;

std::string noticedFile;  // UTF-8; the one that the notice strip is about

constexpr char kRestIsLost[] = "The rest of this file was not read and would be lost. Save it all the same?";

void RunCommand(HWND window, int id) {
    SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(id), 0);
}

// Closes the old document before another one takes its place, without a second question.
void CloseUnasked(HWND window) {
    documentChanged = false;
    RunCommand(window, IDM_CLOSE);
}

// The window's state with a document just made or loaded; the title is the caller's.
void ShowDocument(HWND window) {
    EnableDocumentCommands(window, true);
    FillBlockListView(window, &document);
    SelectLine(window, 0);
    selectedLine = kNoSelectedLine;
}

void ShowLoadFailure(HWND window, const char* message) {
    MessageBox(window, message);
    FillBlockListView(window, nullptr);
    DestroyBlockList(&document);
    SetTitleText(window, IDS_NO_FILE);
    EnableDocumentCommands(window, false);
}

void ShowLoadedFile(HWND window, std::string name) {
    currentFileName = std::move(name);  // before all else: from now on a save would write this document
    documentIsNamed = true;
    AddRecentFile(window, currentFileName);
    SetTitle(window, currentFileName.c_str());
    ShowDocument(window);
    documentChanged = false;
}

ReadResult ReadDocument(const std::string& name, Manner manner, ReadReport* report) {
    WaitCursor wait;
    ReadResult result = ReadGifFile(&document, name.c_str(), report, manner);
    if (manner == Manner::kWhole && result == kReadDone) document.flags |= kReadWhole;
    return result;
}

// Opens the file as the document, in place of the one before, and says what is missing of it.
void OpenDocument(HWND window, std::string name, Manner manner) {
    HideNotice(window);
    documentIsNamed = false;
    partlyReadFile.clear();
    StartHistory(true);
    DestroyBlockList(&document);  // those who send a name have closed the document; this is for those who forgot
    if (!CreateBlockList(&document)) return TellOutOfMemory(window);
    FillBlockListView(window, nullptr);
    ReadReport report;
    const ReadResult result = ReadDocument(name, manner, &report);
    const LoadNotice notice = DescribeLoad(document, result, report, manner);
    noticedFile = name;
    if (result == kReadDone || (kQuirkNoSignatureStillOpens && result == kReadNotGif)) {
        if (notice.offersWhole) partlyReadFile = name;
        ShowLoadedFile(window, std::move(name));
    } else {
        ShowLoadFailure(window, LoadStr(IDS_OPEN_FAILED));
    }
    if (!notice.text.empty()) ShowNotice(window, notice.text, notice.offersWhole);
}

// Whether the names are of one file, as far as names can tell.
bool IsSameName(const std::string& a, const std::string& b) {
    return lstrcmpiW(WideFromUtf8(a).c_str(), WideFromUtf8(b).c_str()) == 0;
}

bool restIsWanted;  // the file is about to be opened whole

// A file that was not read to its end loses the rest when the document is written over it. Classic always did so.
bool MayWriteOver(HWND window, const std::string& name) {
    if (!Careful(Care::kWholeDocuments) && !restIsWanted) return true;
    if (partlyReadFile.empty() || !IsSameName(name, partlyReadFile)) return true;
    return YesnoBox(window, kRestIsLost) == IDYES;
}

void FitScreen(HWND window) {
    RecordedStep step(IDS_STEP_FIT_SCREEN);
    if (FitLogicalScreen(&document)) ReplaceHeaderLine(window, document.blocks[0]);
}

// Writes the document in its manner, with the screen fitted before where that is done. False, with the system's reason
// if there is one, when it can't be written.
bool WriteInManner(HWND window, const std::string& name, std::string* reason) {
    WaitCursor wait;
    if (ScreenFollowsImages()) FitScreen(window);
    return SavesWhole() ? WriteWholeGifFile(document, name.c_str(), reason) : WriteGifFile(document, name.c_str());
}

void TellWriteFailure(HWND window, const std::string& reason) {
    std::wstring text = WideFrom1252(LoadStr(IDS_WRITE_FAILED));
    if (!reason.empty()) text += L"\n" + WideFromUtf8(reason);
    MessageBox(window, text);
}

// A file that was written over holds no more than the document: the strip that offers the rest would not tell the
// truth.
void HideNoticeOfRest(HWND window, const std::string& written) {
    if (NoticeOffersWhole(window) && IsSameName(written, noticedFile)) HideNotice(window);
}

// Saves the document. False when it was not written, which the user has been told or has decided.
bool WriteDocument(HWND window, const std::string& name) {
    if (!MayWriteOver(window, name)) return false;
    std::string reason;
    if (!WriteInManner(window, name, &reason)) {
        TellWriteFailure(window, reason);
        return false;
    }
    partlyReadFile.clear();  // what it held more is gone, or stays in a file that is the document's no longer
    HideNoticeOfRest(window, name);
    documentIsNamed = true;
    SetTitle(window, name.c_str());
    documentChanged = false;
    MarkDocumentSaved();
    return true;
}

// Whether Save knows where to without asking.
bool HasFileToSaveTo() {
    if (currentFileName.empty() || currentFileName == LoadStr(IDS_UNTITLED)) return false;
    return documentIsNamed || (kQuirkNameOutlivesDocument && !Careful(Care::kNewDocumentAsksForName));
}

// What was read of a file that can't be read again may be all that there is of it: the document stays.
void TellFileIsGone(HWND window, const std::string& name) {
    MessageBox(window, WideFromUtf8(name) + L"\n\nThis file can't be opened any more.");
}

// Of a recent file that is gone there is nothing to open: it leaves the list instead.
void DropRecentFile(HWND window, int id, const std::string& name) {
    RemoveRecentFile(window, id);
    MessageBox(window,
               WideFromUtf8(name) + L"\n\nThis file is not there any more. It leaves the list of recent files.");
}

}  // namespace

bool AskToSave(HWND window) {
    if (!documentChanged) return true;
    int answer = YesNoCancelBox(window, LoadStr(IDS_SAVE_QUESTION));
    if (answer != IDYES) return answer != IDCANCEL;
    RunCommand(window, IDM_SAVE);
    // Classic: a save that fails or is cancelled does not hold up the command, as the user has been asked once.
    return !documentChanged || !(restIsWanted || Careful(Care::kFailedSaveStops));
}

bool LeaveDocument(HWND window) {
    if (!AskToSave(window)) return false;
    CloseUnasked(window);
    return true;
}

// A document that was read whole is saved whole, also when careful mode was never on or is off again: it was opened so
// for what a classic save would drop.
bool SavesWhole() {
    return Careful(Care::kWholeDocuments) || (document.flags & kReadWhole) != 0;
}

bool ScreenFollowsImages() {
    return !SavesWhole() || (document.flags & kMadeHere) != 0;
}

void OnNew(HWND window) {
    if (!LeaveDocument(window)) return;
    if (!NewDocument(&document)) {
        TellOutOfMemory(window);
        FillBlockListView(window, nullptr);
        DestroyBlockList(&document);
        return;
    }
    document.flags |= kMadeHere;
    SetTitleText(window, IDS_UNTITLED);
    ShowDocument(window);
}

void OnOpen(HWND window) {
    std::string name;
    if (!OpenGifDialog(window, &name)) return;
    RunCommand(window, IDM_CLOSE);
    if (documentChanged) return;  // only Cancel at the save question leaves it set
    SendMessageW(window, UM_OPENFILE, 0, reinterpret_cast<LPARAM>(name.c_str()));
}

void OnOpenFile(HWND window, const char* name) {
    if (!name || !*name) return;
    OpenDocument(window, name, Careful(Care::kWholeDocuments) ? Manner::kWhole : Manner::kClassic);
}

void OnOpenWhole(HWND window) {
    if (!NoticeOffersWhole(window)) return;
    const std::string name = noticedFile;
    if (!File().OpenForReading(name.c_str())) return TellFileIsGone(window, name);
    ScopedValue wanted(&restIsWanted, true);
    if (LeaveDocument(window)) OpenDocument(window, name, Manner::kWhole);
}

void OnClose(HWND window) {
    if (!AskToSave(window)) return;
    documentChanged = false;
    HideNotice(window);
    documentIsNamed = false;
    partlyReadFile.clear();
    StartHistory(true);
    DestroyBlockList(&document);
    SetTitleText(window, IDS_NO_FILE);
    EnableDocumentCommands(window, false);
    if (!kQuirkCloseKeepsLines) FillBlockListView(window, nullptr);
    ShowPanesSoon(window);
}

void OnSaveAs(HWND window) {
    const bool hasName = documentIsNamed && Careful(Care::kSaveAsProposesName);
    std::string name = hasName ? currentFileName : LoadStr(IDS_UNTITLED);
    if (SaveGifDialog(window, &name) && WriteDocument(window, name)) currentFileName = std::move(name);
}

void OnSave(HWND window) {
    if (HasFileToSaveTo())
        WriteDocument(window, currentFileName);
    else
        RunCommand(window, IDM_SAVE_AS);
}

void OnWizard(HWND window) {
    if (!LeaveDocument(window)) return;
    if (!RunAnimationWizard(window, &document)) return;
    documentChanged = true;
    StartHistory(false);
    document.flags |= kMadeHere;
    SetTitleText(window, IDS_UNTITLED);
    ShowDocument(window);
}

void OnRecentFile(HWND window, int id) {
    std::string name = GetRecentFile(window, id);
    if (name.empty()) return;
    if (Careful(Care::kMissingRecentFileLeaves) && !IsThere(name)) return DropRecentFile(window, id, name);
    if (!LeaveDocument(window)) return;
    SendMessageW(window, UM_OPENFILE, 0, reinterpret_cast<LPARAM>(name.c_str()));
}

void OnExit(HWND window) {
    if (LeaveDocument(window)) SendMessageW(window, WM_CLOSE, 0, 0);
}
