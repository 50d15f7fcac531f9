#include "windows/dialogs/wizard.h"

#include <initializer_list>
#include <iterator>
#include <new>

#include "editing/animation_build.h"
#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/document_operations.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/fields.h"
#include "windows/dialogs/wizard_files.h"
#include "windows/dialogs/wizard_pages.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/ids/wizard_ids.h"
#include "windows/services/dialogs.h"
#include "windows/services/messages.h"
#include "windows/services/screen_scale.h"
#include "windows/services/shell_objects.h"
#include "windows/services/wait_cursor.h"

namespace {

constexpr int kDelays[] = {1,   5,   10,  20,   50,   75,   100,  200,  // hundredths of a second
                           250, 500, 750, 1000, 1500, 2000, 3000, 5000};
constexpr WPARAM kUsualDelay = 6;  // its index
// Pixels of a usual screen.
constexpr int kPictureLeft = 8, kPictureTop = 8, kPictureWidth = 96, kPictureHeight = 232;

void FillDelays(HWND dialog) {
    for (int delay : kDelays) {
        const std::string text = FormatStr(IDS_DELAY_ITEM, static_cast<unsigned>(delay));
        SendDlgItemMessageW(dialog, IDC_WIZARD_DELAYS, LB_ADDSTRING, 0,
                            reinterpret_cast<LPARAM>(WideFrom1252(text).c_str()));
    }
    SendDlgItemMessageW(dialog, IDC_WIZARD_DELAYS, LB_SETCURSEL, kUsualDelay, 0);
}

bool ShowWizard(HWND dialog) {
    for (int id : {IDC_WIZARD_WEB, IDC_WIZARD_LOOP, IDC_WIZARD_SUPER_PALETTE}) ShowCheck(dialog, id, true);
    FillDelays(dialog);
    ShowWizardPage(dialog);
    DragAcceptFiles(dialog, TRUE);
    GiveWizardTips(dialog);
    return true;
}

int ChosenDelay(HWND dialog) {
    LRESULT line = SendDlgItemMessageW(dialog, IDC_WIZARD_DELAYS, LB_GETCURSEL, 0, 0);
    return line >= 0 && line < static_cast<LRESULT>(std::size(kDelays)) ? kDelays[line] : kDelayOfNewBlocks;
}

PaletteMatching ChosenMatching(HWND dialog) {
    if (TakeCheck(dialog, IDC_WIZARD_SIXTEEN)) return PaletteMatching::kSixteenColours;
    if (TakeCheck(dialog, IDC_WIZARD_FIRST_PALETTE)) return PaletteMatching::kFirstPalette;
    if (TakeCheck(dialog, IDC_WIZARD_PHOTOREALISTIC)) return PaletteMatching::kPhotorealistic;
    if (TakeCheck(dialog, IDC_WIZARD_DRAWN)) return PaletteMatching::kDrawn;
    return PaletteMatching::kSuperPalette;
}

AnimationSettings TakeSettings(HWND dialog) {
    return {TakeCheck(dialog, IDC_WIZARD_WEB), TakeCheck(dialog, IDC_WIZARD_LOOP), ChosenMatching(dialog),
            ChosenDelay(dialog)};
}

BuildOutcome Build(HWND dialog) {
    WaitCursor wait;
    try {
        AnimationSettings settings = TakeSettings(dialog);
        if (settings.matching == PaletteMatching::kSuperPalette) paletteChoiceForInsert = kPaletteKeep;
        UserAnswers answers(dialog);
        return BuildAnimation(settings, WizardFiles(dialog), Edited<Wizard>(dialog)->document, answers).outcome;
    } catch (const std::bad_alloc&) {
        return BuildOutcome::kOutOfMemory;
    }
}

// A user who ended the build knows that it ended.
void TellFailure(HWND dialog, BuildOutcome outcome) {
    switch (outcome) {
        case BuildOutcome::kOutOfMemory: return MessageBox(dialog, LoadStr(IDS_OUT_OF_MEMORY));
        case BuildOutcome::kListFailed: return MessageBox(dialog, LoadStr(kQuirkMissingString));
        case BuildOutcome::kFirstFileUnreadable: return MessageBox(dialog, LoadStr(IDS_OPEN_FAILED));
        case BuildOutcome::kDone:
        case BuildOutcome::kFileRefused:
        case BuildOutcome::kStoppedByUser: return;
    }
}

void OnDone(HWND dialog) {
    BuildOutcome outcome = Build(dialog);
    TellFailure(dialog, outcome);
    EndDialog(dialog, outcome == BuildOutcome::kDone);
}

void OnBack(HWND dialog) {
    int& page = Edited<Wizard>(dialog)->page;
    if (page > 0) --page;
    ShowWizardPage(dialog);
}

void OnNext(HWND dialog) {
    int& page = Edited<Wizard>(dialog)->page;
    if (page == kWizardLastPage) return OnDone(dialog);
    ++page;
    ShowWizardPage(dialog);
}

bool OnWizardClick(HWND dialog, int id) {
    switch (id) {
        case IDC_WIZARD_BACK: OnBack(dialog); break;
        case IDC_WIZARD_NEXT: OnNext(dialog); break;
        case IDC_WIZARD_SELECT: SelectWizardFiles(dialog); break;
        case IDC_WIZARD_DELETE: DeleteWizardFile(dialog); break;
        default: return false;
    }
    return true;
}

// Draws the bitmap resource onto `dc` at the picture's place; nothing when it can't be loaded.
void DrawPicture(HDC dc, const OwnedGdiObject& bitmap, DWORD operation) {
    BITMAP size;
    MemoryDc source(dc);
    if (!GetObjectW(bitmap.Get(), sizeof size, &size) || !source.Get()) return;
    SelectedObject selected(source.Get(), bitmap.Get());
    BitBlt(dc, kPictureLeft, kPictureTop, size.bmWidth, size.bmHeight, source.Get(), 0, 0, operation);
}

// Where the mask is white, the dialog shows through: the mask keeps it there and the picture, black there, changes
// nothing.
void DrawMasked(HDC dc, const wchar_t* pictureName, const wchar_t* maskName) {
    OwnedGdiObject picture(LoadBitmapW(hInstance, pictureName));
    OwnedGdiObject mask(LoadBitmapW(hInstance, maskName));
    if (!picture.Get()) return;
    DrawPicture(dc, mask, SRCAND);
    DrawPicture(dc, picture, SRCINVERT);
}

// The large picture, on the dialog's colour, and shrunk or enlarged to the dialog's size.
void DrawScaled(HDC dc, int percent) {
    constexpr int kLarger = 2, kWidth = kLarger * kPictureWidth, kHeight = kLarger * kPictureHeight;
    MemoryDc memory(dc);
    OwnedGdiObject bitmap(CreateCompatibleBitmap(dc, kPictureLeft + kWidth, kPictureTop + kHeight));
    if (!memory || !bitmap) return;
    SelectedObject selected(memory.Get(), bitmap.Get());
    const RECT all = {0, 0, kPictureLeft + kWidth, kPictureTop + kHeight};
    FillRect(memory.Get(), &all, hFaceBrush);
    DrawMasked(memory.Get(), L"WizardLarge", L"WizardLargeMask");
    SavedDc saved(dc);
    SetStretchBltMode(dc, HALFTONE);
    SetBrushOrgEx(dc, 0, 0, nullptr);  // as this mode asks for
    auto scaled = [percent](int pixels) { return MulDiv(pixels, percent, 100); };
    StretchBlt(dc, scaled(kPictureLeft), scaled(kPictureTop), scaled(kPictureWidth), scaled(kPictureHeight),
               memory.Get(), kPictureLeft, kPictureTop, kWidth, kHeight, SRCCOPY);
}

void OnPaint(HWND dialog) {
    WindowPaint paint(dialog);
    if (DpiOf(dialog) == kUsualDpi) return DrawMasked(paint.Dc(), L"Wizard", L"WizardMask");
    DrawScaled(paint.Dc(), PercentOfUsual(dialog));
}

INT_PTR OnWizardMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
        case WM_PAINT: OnPaint(dialog); return TRUE;
        case WM_DROPFILES: DropWizardFiles(dialog, reinterpret_cast<HDROP>(wParam)); return TRUE;
        default: return FALSE;
    }
}

constexpr DialogKind kWizardKind = {
    .templateName = L"AnimationWizardBox",
    .helpKeyword = "KLMAnimationWizard",
    .show = ShowWizard,
    .onClick = OnWizardClick,
    .onMessage = OnWizardMessage,
};

}  // namespace

int RunAnimationWizard(HWND owner, BlockList* document) {
    Wizard wizard = {.document = document, .page = 0};
    return RunEditingDialog(owner, kWizardKind, &wizard);
}
