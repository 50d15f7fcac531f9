// The editor's palette question about an imported image.
#include "editing/block_queries.h"
#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/document_operations.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/fields.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/ids/insert_ids.h"
#include "windows/services/careful.h"

static_assert(IDC_PALETTE_REMAP == kPaletteRemap && IDC_PALETTE_DITHER == kPaletteDither && IDCANCEL == kPaletteCancel,
              "the dialog ends with the number of the chosen control");

namespace {

// Where the document has no colours, neither choice can be made; the one that is marked counts all the same.
constexpr bool kQuirkUnofferedChoiceCounts = true;

// What the dialog asks about.
struct Question {
    Block image;
    std::string path;  // of its file, or none
};

int lastChoice = kPaletteDither;  // of those that the user could make

bool HasTwoColours(const Block& image) {
    std::optional<ImageInfo> info = GetImageInfo(image.data);
    return info && info->bitCount == 1;
}

// Whether the document has colours that an image could be fitted to.
bool HasTarget(const Block& image) {
    const Block* header = image.owner ? FindHeader(*image.owner) : nullptr;
    return header && HasColours(*header);
}

// An ampersand in a name is none that underlines the next letter.
std::wstring TextAbout(std::wstring file) {
    for (size_t at = 0; (at = file.find(L'&', at)) != std::wstring::npos; at += 2) file.insert(at, 1, L'&');
    std::wstring text = WideFrom1252(LoadStr(IDS_PALETTE_OF_FILE));
    const std::wstring place = L"%s";
    return text.replace(text.find(place), place.size(), file);
}

bool Fits(HWND label, const std::wstring& text) {
    RECT room, needed;
    GetClientRect(label, &room);
    needed = room;
    WindowDc dc(label);
    SelectedObject font(dc.Get(), reinterpret_cast<HFONT>(SendMessageW(label, WM_GETFONT, 0, 0)));
    DrawTextW(dc.Get(), text.c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK);
    return needed.right <= room.right && needed.bottom <= room.bottom;
}

// Shows as much of the file's name as there is room for.
void NameFile(HWND dialog, const std::string& path) {
    constexpr size_t kLeastUnits = 8;
    HWND label = GetDlgItem(dialog, IDC_PALETTE_TEXT);
    size_t units = kNameUnits;
    std::wstring text = TextAbout(ShortFileName(path, units));
    while (units > kLeastUnits && !Fits(label, text)) text = TextAbout(ShortFileName(path, units -= 2));
    SetWindowTextW(label, text.c_str());
}

// Whether there is more than one answer for the user to give.
bool CanChoose(const Block& image) {
    return HasTarget(image) && !HasTwoColours(image);
}

bool ShowChoices(HWND dialog) {
    const auto* question = Edited<const Question>(dialog);
    const Block& image = question->image;
    const bool careful = Careful(Care::kPaletteQuestionRemembers);
    if (careful && !question->path.empty()) NameFile(dialog, question->path);
    bool target = HasTarget(image);
    bool twoColours = HasTwoColours(image);  // nothing to dither
    EnableControl(dialog, IDC_PALETTE_REMAP, target);
    EnableControl(dialog, IDC_PALETTE_DITHER, target && !twoColours);
    int usual = CanChoose(image) && careful ? lastChoice : kPaletteDither;
    CheckRadioButton(dialog, IDC_PALETTE_REMAP, IDC_PALETTE_DITHER, twoColours ? IDC_PALETTE_REMAP : usual);
    ShowCheck(dialog, IDC_PALETTE_SUBSEQUENT, true);
    return true;
}

int TakeChoice(HWND dialog) {
    const Block& image = Edited<const Question>(dialog)->image;
    if (!kQuirkUnofferedChoiceCounts && !HasTarget(image)) return kPaletteCancel;
    int choice = TakeCheck(dialog, IDC_PALETTE_REMAP) ? kPaletteRemap : kPaletteDither;
    if (CanChoose(image)) lastChoice = choice;
    paletteChoiceForInsert = TakeCheck(dialog, IDC_PALETTE_SUBSEQUENT) ? choice : kAskForPalette;
    return choice;
}

constexpr DialogKind kPaletteBox = {
    .templateName = L"PaletteNoMatchBox",
    .helpKeyword = "KLMInsert",
    .show = ShowChoices,
    .take = TakeChoice,
    .cancelResult = kPaletteCancel,
};

}  // namespace

int RunPaletteDialog(HWND owner, const Block& image, const std::string& path) {
    Question subject = {image, path};
    int choice = RunEditingDialog(owner, kPaletteBox, &subject);
    return choice ? choice : kPaletteCancel;  // a dialog that can't be shown agrees to nothing
}
