#include "windows/dialogs/wizard_files.h"

#include <algorithm>

#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/dialogs/wizard_pages.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/ids/wizard_ids.h"
#include "windows/services/chosen_files.h"
#include "windows/services/dropped_files.h"
#include "windows/services/file_dialogs.h"
#include "windows/services/messages.h"

namespace {

LRESULT ToList(HWND dialog, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendDlgItemMessageW(dialog, IDC_WIZARD_FILES, message, wParam, lParam);
}

std::wstring PathAt(HWND dialog, WPARAM line) {
    LRESULT length = ToList(dialog, LB_GETTEXTLEN, line);
    if (length < 0) return {};
    std::wstring path(static_cast<size_t>(length) + 1, L'\0');
    ToList(dialog, LB_GETTEXT, line, reinterpret_cast<LPARAM>(path.data()));
    path.resize(static_cast<size_t>(length));
    return path;
}

std::vector<std::wstring> Paths(HWND dialog) {
    std::vector<std::wstring> paths(static_cast<size_t>(std::max<LRESULT>(ToList(dialog, LB_GETCOUNT), 0)));
    for (size_t i = 0; i < paths.size(); ++i) paths[i] = PathAt(dialog, i);
    return paths;
}

// Lets the list scroll sideways as far as its longest path reaches.
void FitListToPaths(HWND dialog) {
    HWND list = GetDlgItem(dialog, IDC_WIZARD_FILES);
    WindowDc dc(list);
    SelectedObject font(dc.Get(), reinterpret_cast<HFONT>(SendMessageW(list, WM_GETFONT, 0, 0)));
    LONG widest = 0;
    for (const std::wstring& path : Paths(dialog)) {
        SIZE size = {};
        GetTextExtentPoint32W(dc.Get(), path.c_str(), static_cast<int>(path.size()), &size);
        widest = std::max(widest, size.cx);
    }
    constexpr int kMargin = 6;
    ToList(dialog, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(widest) + kMargin);
}

void SelectLine(HWND dialog, LRESULT line) {
    ToList(dialog, LB_SETCURSEL, static_cast<WPARAM>(line));
    FitListToPaths(dialog);
    EnableWizardButtons(dialog);
}

bool AddFiles(HWND dialog, const std::vector<std::string>& paths) {
    bool added = std::all_of(paths.begin(), paths.end(), [&](const std::string& path) {
        return ToList(dialog, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(WideFromUtf8(path).c_str())) >= 0;
    });
    SelectLine(dialog, ToList(dialog, LB_GETCOUNT) - 1);
    return added;
}

// One run of the file dialog. Returns whether there is to be another one.
bool SelectSomeFiles(HWND dialog) {
    std::string names;
    if (!OpenImagesDialog(dialog, ListedKinds::kUsual, &names)) return false;
    if (AddFiles(dialog, ChosenPaths(names))) return true;
    MessageBox(dialog, LoadStr(IDS_OUT_OF_MEMORY));
    return false;
}

}  // namespace

void SelectWizardFiles(HWND dialog) {
    while (SelectSomeFiles(dialog)) {
    }
}

void DropWizardFiles(HWND dialog, HDROP drop) {
    POINT place;
    std::vector<std::string> paths = TakeDroppedFiles(dialog, drop, &place);
    HWND list = GetDlgItem(dialog, IDC_WIZARD_FILES);
    RECT area = {};
    GetWindowRect(list, &area);
    if (paths.empty() || !IsWindowVisible(list) || !IsWindowEnabled(dialog) || !PtInRect(&area, place)) return;
    std::ranges::sort(paths);
    if (!AddFiles(dialog, paths)) MessageBox(dialog, LoadStr(IDS_OUT_OF_MEMORY));
}

void DeleteWizardFile(HWND dialog) {
    const LRESULT line = ToList(dialog, LB_GETCURSEL);
    if (line < 0) return;
    ToList(dialog, LB_DELETESTRING, static_cast<WPARAM>(line));
    SelectLine(dialog, std::min(line, ToList(dialog, LB_GETCOUNT) - 1));
}

std::vector<std::string> WizardFiles(HWND dialog) {
    std::vector<std::wstring> paths = Paths(dialog);
    std::vector<std::string> files(paths.size());
    std::transform(paths.begin(), paths.end(), files.begin(), Utf8FromWide);
    return files;
}
