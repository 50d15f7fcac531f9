#include "windows/dialogs/dialog_frame.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>

#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/fields.h"
#include "windows/dialogs/palette_buttons.h"
#include "windows/dialogs/scoped_value.h"
#include "windows/ids/editor_ids.h"
#include "windows/services/careful.h"
#include "windows/services/dialogs.h"
#include "windows/services/help.h"
#include "windows/services/messages.h"
#include "windows/services/scaled_fonts.h"
#include "windows/services/screen_reader.h"
#include "windows/services/screen_scale.h"
#include "windows/services/shell_objects.h"

namespace {

constexpr int kNotGiven = -1;
constexpr int kUpDownTextUnits = 64;

// An up-down control is configured by its own text in the template: "minimum,maximum,start".
void ConfigureUpDown(HWND upDown) {
    wchar_t text[kUpDownTextUnits];
    GetWindowTextW(upDown, text, kUpDownTextUnits);
    int minimum = kNotGiven, maximum = kNotGiven, start = kNotGiven;
    swscanf(text, L"%d,%d,%d", &minimum, &maximum, &start);
    if (minimum != kNotGiven && maximum != kNotGiven)
        SendMessageW(upDown, UDM_SETRANGE, 0, MAKELPARAM(maximum, minimum));
    if (start != kNotGiven) SendMessageW(upDown, UDM_SETPOS, 0, MAKELPARAM(start, 0));
}

// An up-down's text is no name that one could read aloud; that of its field is.
std::wstring ReadUpDown(HWND upDown) {
    return LabelBefore(reinterpret_cast<HWND>(SendMessageW(upDown, UDM_GETBUDDY, 0, 0)));
}

constexpr ReadWindow kReadUpDown = {ReadUpDown};

void ConfigureUpDowns(HWND dialog) {
    HWND upDown = nullptr;
    while ((upDown = FindWindowExW(dialog, upDown, UPDOWN_CLASSW, nullptr)) != nullptr) {
        ConfigureUpDown(upDown);
        TellReaders(upDown, kReadUpDown);
    }
}

// The first field of a number, which is one with an up-down, that holds none which a block has room for; null when all
// are good.
HWND FindWrongNumber(HWND dialog) {
    HWND upDown = nullptr;
    while ((upDown = FindWindowExW(dialog, upDown, UPDOWN_CLASSW, nullptr)) != nullptr) {
        auto* field = reinterpret_cast<HWND>(SendMessageW(upDown, UDM_GETBUDDY, 0, 0));
        if (field && !HoldsNumber(dialog, GetDlgCtrlID(field))) return field;
    }
    return nullptr;
}

// Says what the field takes, by the name before it, and leads there.
void RefuseNumber(HWND dialog, HWND field) {
    wchar_t name[kUpDownTextUnits] = L"";
    GetWindowTextW(GetWindow(field, GW_HWNDPREV), name, kUpDownTextUnits);
    std::string label = Ansi1252FromWide(name);
    label.resize(std::min(label.find(':'), label.size()));
    MessageBox(dialog, FormatStr(IDS_NUMBER_RANGE, label.c_str(), unsigned{kMostInField}).c_str());
    SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(field), TRUE);  // which selects its text
}

// A running dialog; lives as long as it is shown.
struct Run {
    const DialogKind* kind;
    void* subject;
};

const Run* RunOf(HWND dialog) {
    return reinterpret_cast<const Run*>(GetWindowLongPtrW(dialog, DWLP_USER));
}

bool Show(HWND dialog, const DialogKind& kind) {
    try {
        return !kind.show || kind.show(dialog);
    } catch (const std::exception&) {
        return false;
    }
}

// On usual screens controls have the main window's font. On others they keep the one that the dialog was laid out with.
void GiveFonts(HWND dialog) {
    const int dpi = DpiOf(dialog);
    auto* const own = reinterpret_cast<HFONT>(SendMessageW(dialog, WM_GETFONT, 0, 0));
    SetChildFonts(dialog, dpi == kUsualDpi || !own ? ListFontAt(dpi) : own, false);
}

INT_PTR OnInitDialog(HWND dialog, const DialogKind& kind) {
    GiveProgramIcon(dialog);
    if (hListFont) GiveFonts(dialog);
    ConfigureUpDowns(dialog);
    if (kind.buttons) NamePaletteButtons(dialog, *kind.buttons);
    if (!Show(dialog, kind)) {
        MessageBox(dialog, LoadStr(IDS_OUT_OF_MEMORY));
        EndDialog(dialog, 0);
        return FALSE;
    }
    kind.place ? kind.place(dialog) : CentreWindow(dialog);
    return TRUE;
}

INT_PTR OnOk(HWND dialog, const DialogKind& kind) {
    HWND wrong = Careful(Care::kNumbersRefused) ? FindWrongNumber(dialog) : nullptr;
    if (!wrong) return EndDialog(dialog, kind.take(dialog));
    RefuseNumber(dialog, wrong);
    return TRUE;
}

INT_PTR OnCommand(HWND dialog, const DialogKind& kind, int id, int notification) {
    if (id == IDOK && kind.take) return OnOk(dialog, kind);
    if (id == IDCANCEL) return EndDialog(dialog, kind.cancelResult);
    if (id == IDC_HELP_BUTTON && kind.helpKeyword) {
        ShowHelp(dialog, kind.helpKeyword);
        return TRUE;
    }
    if (notification != BN_CLICKED) return FALSE;
    if (kind.buttons && OnPaletteButton(dialog, *kind.buttons, id)) return TRUE;
    return kind.onClick && kind.onClick(dialog, id);
}

// The system scales the dialog and its controls when this has returned.
INT_PTR OnDpiChanged(HWND dialog, int dpi) {
    NoteDpi(dialog, dpi);
    PostMessageW(dialog, UM_RESCALED, 0, 0);
    return FALSE;
}

// The focus stays where it is.
void OnRescaled(HWND dialog) {
    HWND focus = GetFocus();
    if (hListFont) GiveFonts(dialog);
    if (focus && IsChild(dialog, focus)) SetFocus(focus);
    InvalidateRect(dialog, nullptr, TRUE);
}

INT_PTR OnMessage(HWND dialog, const DialogKind& kind, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case kDpiChanged: return OnDpiChanged(dialog, LOWORD(wParam));
        case UM_RESCALED: OnRescaled(dialog); break;
        case WM_DESTROY: ForgetDpi(dialog); break;
        case WM_COMMAND:
            if (INT_PTR handled = OnCommand(dialog, kind, LOWORD(wParam), HIWORD(wParam))) return handled;
            break;
        case WM_DRAWITEM:
            if (!kind.buttons) break;
            return DrawPaletteButton(dialog, *kind.buttons, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
    }
    if (INT_PTR brush = AnswerControlColour(message, wParam, lParam)) return brush;
    return kind.onMessage ? kind.onMessage(dialog, message, wParam, lParam) : FALSE;
}

// No exception may cross the system's code. What a command could not do for want of memory, the user may do again.
INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    const Run* run = RunOf(dialog);
    if (!run) return FALSE;
    try {
        if (message == WM_INITDIALOG) return OnInitDialog(dialog, *run->kind);
        return OnMessage(dialog, *run->kind, message, wParam, lParam);
    } catch (const std::exception&) {
        if (message == WM_COMMAND) MessageBox(dialog, LoadStr(IDS_OUT_OF_MEMORY));
        return FALSE;
    }
}

}  // namespace

void* editedBlock = nullptr;

void* SubjectOf(HWND dialog) {
    return RunOf(dialog)->subject;
}

int RunEditingDialog(HWND parent, const DialogKind& kind, void* edited) {
    INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_UPDOWN_CLASS};
    InitCommonControlsEx(&classes);
    ScopedValue<void*> subject(&editedBlock, edited);
    Run run = {&kind, edited};
    return static_cast<int>(RunDialog(parent, kind.templateName, DialogProc, &run));
}
