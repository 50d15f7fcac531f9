#include "windows/services/file_dialogs.h"

#include <cwchar>

#include "platform/memory.h"
#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/services/careful.h"
#include "windows/services/messages.h"
#include "windows/services/shell_objects.h"

namespace {

constexpr DWORD kImagesBufferUnits = 32767;
constexpr DWORD kTitleUnits = 261;
constexpr DWORD kSaveTitleUnits = 260;
// Both list GIF files alone: no others can be opened, and whoever wants a picture of another kind types its name.
constexpr wchar_t kQuirkFilters[] = L"GIF files\0*.GIF\0All files\0*.GIF\0";
constexpr wchar_t kPngFilters[] = L"PNG files\0*.PNG\0";
constexpr wchar_t kPictureFilters[] =
    L"Pictures\0*.GIF;*.PNG;*.JPG;*.JPEG;*.JPE;*.BMP;*.DIB\0GIF files\0*.GIF\0All files\0*.*\0";

DWORD lastFilterIndex;         // of the open dialogs
DWORD lastPictureFilterIndex;  // of those that list pictures of all kinds

constexpr char kNameTooLong[] =
    "This file name is too long. Please use a shorter name or move the file to a folder with a shorter path.";
constexpr char kTooManyFiles[] = "Too many files were selected. Please insert them in several steps.";

OPENFILENAMEW GifDialog(HWND owner, wchar_t* file, DWORD units) {
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.hInstance = hInstance;
    dialog.lpstrFilter = kQuirkFilters;
    dialog.lpstrFile = file;
    dialog.nMaxFile = units;
    dialog.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    return dialog;
}

std::wstring FolderOf(std::string folder) {
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

bool RunOpenDialog(HWND owner, OPENFILENAMEW* dialog, const char* overrun, DWORD* filterIndex = &lastFilterIndex) {
    wchar_t title[kTitleUnits] = L"";
    dialog->lpstrFileTitle = title;
    dialog->nMaxFileTitle = kTitleUnits;
    dialog->nFilterIndex = *filterIndex;
    dialog->Flags |= OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST;
    dialog->lpTemplateName = L"FileOpen";  // recorded, not enabled: the standard dialog appears
    bool confirmed = Finish(owner, GetOpenFileNameW(dialog), overrun);
    if (confirmed) *filterIndex = dialog->nFilterIndex;
    return confirmed;
}

// The list of NUL-terminated texts ended by an empty one, without that.
std::wstring_view ListedTexts(const wchar_t* list) {
    const wchar_t* end = list;
    while (*end) end += wcslen(end) + 1;
    return {list, static_cast<size_t>(end - list)};
}

}  // namespace

bool OpenGifDialog(HWND owner, std::string* name) {
    wchar_t file[MAX_PATH] = L"";
    std::wstring folder = FolderOf(*name);
    OPENFILENAMEW dialog = GifDialog(owner, file, MAX_PATH);
    dialog.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
    dialog.lpstrDefExt = L"GIF";
    if (!RunOpenDialog(owner, &dialog, kNameTooLong)) return false;
    *name = Utf8FromWide(file);
    return true;
}

bool OpenImagesDialog(HWND owner, ListedKinds kinds, std::string* names) {
    auto files = AllocateScratchArray<wchar_t>(kImagesBufferUnits);
    if (!files) {
        MessageBox(owner, LoadStr(IDS_OUT_OF_MEMORY));
        return false;
    }
    OPENFILENAMEW dialog = GifDialog(owner, files.get(), kImagesBufferUnits - 1);
    dialog.Flags |= OFN_ALLOWMULTISELECT;
    const bool listsAll = kinds == ListedKinds::kPictures || Careful(Care::kListsAllPictures);
    if (listsAll) dialog.lpstrFilter = kPictureFilters;
    DWORD* filterIndex = listsAll ? &lastPictureFilterIndex : &lastFilterIndex;
    if (!RunOpenDialog(owner, &dialog, kTooManyFiles, filterIndex)) return false;
    *names = Utf8FromWide(ListedTexts(files.get()));
    return true;
}

namespace {

// Asks for the name of a file to be written, with `filters` and what `extension` a name without any gets.
bool RunSaveDialog(HWND owner, const wchar_t* filters, const wchar_t* extension, DWORD flags, std::string* name) {
    wchar_t file[MAX_PATH] = L"";
    wchar_t title[kSaveTitleUnits] = L"";
    std::wstring proposed = WideFromUtf8(*name);
    if (proposed.size() < MAX_PATH) wcscpy(file, proposed.c_str());
    OPENFILENAMEW dialog = GifDialog(owner, file, MAX_PATH);
    dialog.lpstrFilter = filters;
    dialog.lpstrFileTitle = title;
    dialog.nMaxFileTitle = kSaveTitleUnits;
    dialog.nFilterIndex = 1;
    dialog.lpstrDefExt = extension;
    dialog.Flags |= flags;
    if (!Finish(owner, GetSaveFileNameW(&dialog), kNameTooLong)) return false;
    *name = Utf8FromWide(file);
    return true;
}

}  // namespace

bool SaveGifDialog(HWND owner, std::string* name) {
    return RunSaveDialog(owner, kQuirkFilters, L"GIF", OFN_OVERWRITEPROMPT, name);
}

bool SavePngDialog(HWND owner, bool asksToReplace, std::string* name) {
    const DWORD flags = OFN_PATHMUSTEXIST | (asksToReplace ? OFN_OVERWRITEPROMPT : 0);
    return RunSaveDialog(owner, kPngFilters, L"png", flags, name);
}
