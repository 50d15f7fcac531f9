#include "app/services/file_dialogs.h"

#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "app/services/messages.h"
#include "app/services/shell_objects.h"
#include "platform/prompts.h"
#include "platform/wide_text.h"
#include "resources/string_ids.h"

namespace {

constexpr DWORD kTitleUnits = 261;
constexpr DWORD kSaveTitleUnits = 260;
constexpr wchar_t kFilters[] = L"GIF files\0*.GIF\0All files\0*.GIF\0";  // both list GIF files alone

DWORD lastFilterIndex;  // of the open dialogs

constexpr char kNameTooLong[] =
    "This file name is too long. Please use a shorter name or move the file to a folder with a shorter path.";
constexpr char kTooManyFiles[] = "Too many files were selected. Please insert them in several steps.";

OPENFILENAMEW GifDialog(HWND owner, wchar_t* file, DWORD units) {
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.hInstance = hInstance;
    dialog.lpstrFilter = kFilters;
    dialog.lpstrFile = file;
    dialog.nMaxFile = units;
    dialog.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    return dialog;
}

std::wstring FolderOf(const char* path) {
    std::string folder = path;
    folder.resize(folder.find_last_of("\\/:") + 1);  // nothing found: npos + 1 is 0
    if (!folder.empty() && folder.back() != '\\') folder += '\\';
    return WideFromUtf8(folder);
}

// Whether the user confirmed; a choice that overran the buffer is told and counts as Cancel.
bool Finish(HWND owner, BOOL confirmed, const char* overrun) {
    if (owner) UpdateWindow(owner);
    if (confirmed) return true;
    if (CommDlgExtendedError() == FNERR_BUFFERTOOSMALL) MessageBox(owner, overrun);
    return false;
}

bool RunOpenDialog(HWND owner, OPENFILENAMEW* dialog, const char* overrun) {
    wchar_t title[kTitleUnits] = L"";
    dialog->lpstrFileTitle = title;
    dialog->nMaxFileTitle = kTitleUnits;
    dialog->nFilterIndex = lastFilterIndex;
    dialog->Flags |= OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST;
    dialog->lpTemplateName = L"FileOpen";  // recorded, not enabled: the standard dialog appears
    bool confirmed = Finish(owner, GetOpenFileNameW(dialog), overrun);
    if (confirmed) lastFilterIndex = dialog->nFilterIndex;
    return confirmed;
}

bool TakeName(HWND owner, const wchar_t* chosen, char* name) {
    std::string path = Utf8FromWide(chosen);
    if (path.size() >= kPathBytes) {
        MessageBox(owner, kNameTooLong);
        return false;
    }
    strcpy(name, path.c_str());
    return true;
}

// Copies the list of NUL-terminated texts ended by an empty one. False when it does not fit.
bool TakeNames(const wchar_t* chosen, char* names) {
    size_t used = 0;
    for (; *chosen; chosen += wcslen(chosen) + 1) {
        std::string text = Utf8FromWide(chosen);
        if (used + text.size() + 2 > kImagesBufferBytes) return false;
        memcpy(names + used, text.c_str(), text.size() + 1);
        used += text.size() + 1;
    }
    names[used] = 0;
    return true;
}

}  // namespace

bool OpenGifDialog(HWND owner, char* name) {
    wchar_t file[kPathBytes] = L"";
    std::wstring folder = FolderOf(name);
    OPENFILENAMEW dialog = GifDialog(owner, file, kPathBytes);
    dialog.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
    dialog.lpstrDefExt = L"GIF";
    return RunOpenDialog(owner, &dialog, kNameTooLong) && TakeName(owner, file, name);
}

bool OpenImagesDialog(HWND owner, char* names) {
    std::unique_ptr<wchar_t[]> files(new (std::nothrow) wchar_t[kImagesBufferBytes]());
    if (!files) {
        MessageBox(owner, LoadStr(IDS_OUT_OF_MEMORY));
        return false;
    }
    OPENFILENAMEW dialog = GifDialog(owner, files.get(), kImagesBufferBytes - 1);
    dialog.Flags |= OFN_ALLOWMULTISELECT;
    if (!RunOpenDialog(owner, &dialog, kTooManyFiles)) return false;
    if (TakeNames(files.get(), names)) return true;
    MessageBox(owner, kTooManyFiles);
    return false;
}

bool SaveGifDialog(HWND owner, char* name) {
    wchar_t file[kPathBytes] = L"";
    wchar_t title[kSaveTitleUnits] = L"";
    std::wstring proposed = WideFromUtf8(name);
    if (proposed.size() < kPathBytes) wcscpy(file, proposed.c_str());
    OPENFILENAMEW dialog = GifDialog(owner, file, kPathBytes);
    dialog.lpstrFileTitle = title;
    dialog.nMaxFileTitle = kSaveTitleUnits;
    dialog.nFilterIndex = 1;
    dialog.lpstrDefExt = L"GIF";
    dialog.Flags |= OFN_OVERWRITEPROMPT;
    return Finish(owner, GetSaveFileNameW(&dialog), kNameTooLong) && TakeName(owner, file, name);
}
