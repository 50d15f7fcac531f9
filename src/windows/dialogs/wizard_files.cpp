#include "windows/dialogs/wizard_files.h"

#include <algorithm>

#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/wizard_pages.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/ids/wizard_ids.h"
#include "windows/services/careful.h"
#include "windows/services/chosen_files.h"
#include "windows/services/dropped_files.h"
#include "windows/services/file_dialogs.h"
#include "windows/services/line_tips.h"
#include "windows/services/messages.h"
#include "windows/services/screen_scale.h"
#include "windows/services/short_path.h"

namespace {

constexpr int kMargin = 6;  // pixels of the list beside a text

LRESULT ToList(HWND dialog, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendDlgItemMessageW(dialog, IDC_WIZARD_FILES, message, wParam, lParam);
}

std::wstring LineAt(HWND dialog, WPARAM line) {
    LRESULT length = ToList(dialog, LB_GETTEXTLEN, line);
    if (length < 0) return {};
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    ToList(dialog, LB_GETTEXT, line, reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<size_t>(length));
    return text;
}

// The path of a line that shows a name only; null for one that shows its path.
const std::wstring* HiddenPath(HWND list, WPARAM line) {
    const LRESULT data = SendMessageW(list, LB_GETITEMDATA, line, 0);
    return data == LB_ERR ? nullptr : reinterpret_cast<const std::wstring*>(data);
}

std::wstring PathAt(HWND dialog, WPARAM line) {
    if (const std::wstring* hidden = HiddenPath(GetDlgItem(dialog, IDC_WIZARD_FILES), line)) return *hidden;
    return LineAt(dialog, line);
}

std::vector<std::wstring> Paths(HWND dialog) {
    std::vector<std::wstring> paths(static_cast<size_t>(std::max<LRESULT>(ToList(dialog, LB_GETCOUNT), 0)));
    for (size_t i = 0; i < paths.size(); ++i) paths[i] = PathAt(dialog, i);
    return paths;
}

LONG TextWidth(HWND list, const std::wstring& text) {
    WindowDc dc(list);
    SelectedObject font(dc.Get(), reinterpret_cast<HFONT>(SendMessageW(list, WM_GETFONT, 0, 0)));
    SIZE size = {};
    GetTextExtentPoint32W(dc.Get(), text.c_str(), static_cast<int>(text.size()), &size);
    return size.cx;
}

// Lets the list scroll sideways as far as its longest line reaches.
void FitListToLines(HWND dialog) {
    HWND list = GetDlgItem(dialog, IDC_WIZARD_FILES);
    LONG widest = 0;
    for (LRESULT line = 0; line < ToList(dialog, LB_GETCOUNT); ++line)
        widest = std::max(widest, TextWidth(list, LineAt(dialog, static_cast<WPARAM>(line))));
    ToList(dialog, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(widest) + kMargin);
}

// Whether the list has room for it, also when it scrolls.
bool Fits(HWND list, const std::wstring& path) {
    RECT place = {};
    GetWindowRect(list, &place);
    const int beside = 2 * GetSystemMetrics(SM_CXEDGE) + SystemMetricAt(SM_CXVSCROLL, DpiOf(list));
    return TextWidth(list, path) + kMargin <= place.right - place.left - beside;
}

bool AddPath(HWND dialog, const std::wstring& path) {
    const bool showsName = Careful(Care::kWizardListsNames) && !Fits(GetDlgItem(dialog, IDC_WIZARD_FILES), path);
    const std::wstring shown = showsName ? NameOfPath(path) : path;
    const LRESULT line = ToList(dialog, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(shown.c_str()));
    if (line < 0 || !showsName) return line >= 0;
    std::list<std::wstring>& paths = Edited<Wizard>(dialog)->paths;
    paths.push_back(path);
    ToList(dialog, LB_SETITEMDATA, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(&paths.back()));
    return true;
}

void SelectLine(HWND dialog, LRESULT line) {
    ToList(dialog, LB_SETCURSEL, static_cast<WPARAM>(line));
    FitListToLines(dialog);
    EnableWizardButtons(dialog);
}

bool AddFiles(HWND dialog, const std::vector<std::string>& paths) {
    bool added = std::all_of(paths.begin(), paths.end(),
                             [&](const std::string& path) { return AddPath(dialog, WideFromUtf8(path)); });
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

void GiveWizardTips(HWND dialog) {
    if (!Careful(Care::kWizardListsNames)) return;
    GiveLineTips(GetDlgItem(dialog, IDC_WIZARD_FILES), [](HWND list, int line) {
        const std::wstring* hidden = HiddenPath(list, static_cast<WPARAM>(line));
        return hidden ? *hidden : std::wstring();
    });
}

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
