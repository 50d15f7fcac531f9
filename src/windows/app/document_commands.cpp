#include "windows/app/document_commands.h"

#include <string>
#include <utility>

#include "gif/default_blocks.h"
#include "gif/gif_reader.h"
#include "gif/gif_writer.h"
#include "gif/logical_screen.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/app/block_list_view.h"
#include "windows/app/document_face.h"
#include "windows/app/main_window.h"
#include "windows/app/recent_files.h"
#include "windows/app/shell_state.h"
#include "windows/dialogs/document_operations.h"
#include "windows/dialogs/wizard.h"
#include "windows/ids/command_ids.h"
#include "windows/services/file_dialogs.h"
#include "windows/services/messages.h"
#include "windows/services/wait_cursor.h"

namespace {

// A file without a GIF signature opens as a document without blocks.
constexpr bool kQuirkNoSignatureStillOpens = true;

// The lines of a closed document stay on the screen until the list is filled the next time.
constexpr bool kQuirkCloseKeepsLines = true;

// A save after New or the wizard writes over the file last opened or saved.
constexpr bool kQuirkNameOutlivesDocument = true;

void RunCommand(HWND window, int id) {
    SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(id), 0);
}

// Asks whether a changed document is to be saved, and saves it on Yes. False when the user cancels the command.
bool AskToSave(HWND window) {
    if (!documentChanged) return true;
    int answer = YesNoCancelBox(window, LoadStr(IDS_SAVE_QUESTION));
    // A save that fails or is cancelled does not hold up the command: the user has been asked once.
    if (answer == IDYES) RunCommand(window, IDM_SAVE);
    return answer != IDCANCEL;
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
    AddRecentFile(window, currentFileName);
    SetTitle(window, currentFileName.c_str());
    ShowDocument(window);
    documentChanged = false;
}

bool ReadDocument(const std::string& name) {
    WaitCursor wait;
    ReadResult result = ReadGifFile(&document, name.c_str());
    return result == kReadDone || (kQuirkNoSignatureStillOpens && result == kReadNotGif);
}

// Fits the screen to the images and writes the document. False, with the failure told, when it can't be written.
bool WriteDocument(HWND window, const std::string& name) {
    bool written;
    {
        WaitCursor wait;
        if (FitLogicalScreen(&document)) ReplaceHeaderLine(window, document.blocks[0]);
        written = WriteGifFile(document, name.c_str());
    }
    if (!written) {
        MessageBox(window, LoadStr(IDS_WRITE_FAILED));
        return false;
    }
    SetTitle(window, name.c_str());
    documentChanged = false;
    return true;
}

}  // namespace

void OnNew(HWND window) {
    if (!AskToSave(window)) return;
    CloseUnasked(window);
    if (!NewDocument(&document)) {
        TellOutOfMemory(window);
        FillBlockListView(window, nullptr);
        DestroyBlockList(&document);
        return;
    }
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
    std::string path = name;
    DestroyBlockList(&document);  // those who send a name have closed the document; this is for those who forgot
    if (!CreateBlockList(&document)) return TellOutOfMemory(window);
    FillBlockListView(window, nullptr);
    if (ReadDocument(path))
        ShowLoadedFile(window, std::move(path));
    else
        ShowLoadFailure(window, LoadStr(IDS_OPEN_FAILED));
}

void OnClose(HWND window) {
    if (!AskToSave(window)) return;
    documentChanged = false;
    DestroyBlockList(&document);
    SetTitleText(window, IDS_NO_FILE);
    EnableDocumentCommands(window, false);
    if (!kQuirkCloseKeepsLines) FillBlockListView(window, nullptr);
    if (!kQuirkNameOutlivesDocument) currentFileName.clear();
}

void OnSaveAs(HWND window) {
    std::string name = LoadStr(IDS_UNTITLED);
    if (SaveGifDialog(window, &name) && WriteDocument(window, name)) currentFileName = std::move(name);
}

void OnSave(HWND window) {
    if (!currentFileName.empty() && currentFileName != LoadStr(IDS_UNTITLED))
        WriteDocument(window, currentFileName);
    else
        RunCommand(window, IDM_SAVE_AS);
}

void OnWizard(HWND window) {
    if (!AskToSave(window)) return;
    CloseUnasked(window);
    if (!RunAnimationWizard(window, &document)) return;
    documentChanged = true;
    SetTitleText(window, IDS_UNTITLED);
    ShowDocument(window);
}

void OnRecentFile(HWND window, int id) {
    std::string name = GetRecentFile(window, id);
    if (name.empty()) return;
    if (!AskToSave(window)) return;
    CloseUnasked(window);
    SendMessageW(window, UM_OPENFILE, 0, reinterpret_cast<LPARAM>(name.c_str()));
}

void OnExit(HWND window) {
    if (!AskToSave(window)) return;
    CloseUnasked(window);
    SendMessageW(window, WM_CLOSE, 0, 0);
}
