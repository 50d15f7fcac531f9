#include "windows/dialogs/text_field.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/services/careful.h"
#include "windows/services/messages.h"
#include "windows/services/scaled_fonts.h"
#include "windows/services/screen_scale.h"

namespace {

// Of a text with a zero byte only what stands before it is shown; the rest is kept until the text is changed (in
// careful mode also then).
constexpr bool kQuirkTextShownUpToZero = true;

constexpr WPARAM kSelectAllKey = 1;  // the character that Ctrl+A makes

// An edit field of several lines has no key to select everything; this window procedure before its own has. It also
// keeps the field to its font.
LRESULT CALLBACK TextFieldProc(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CHAR && wParam == kSelectAllKey) return SendMessageW(edit, EM_SETSEL, 0, -1);
    if (message == WM_SETFONT)
        wParam = reinterpret_cast<WPARAM>(FixedFontAt(DpiOf(edit)));  // whoever scales the dialog
    auto own = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(edit, GWLP_USERDATA));
    return CallWindowProcW(own, edit, message, wParam, lParam);
}

void TakeOver(HWND edit) {
    SetWindowLongPtrW(edit, GWLP_USERDATA, GetWindowLongPtrW(edit, GWLP_WNDPROC));
    SetWindowLongPtrW(edit, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(TextFieldProc));
}

struct FieldText {
    std::wstring shown;  // the block's bytes as the edit field holds them
    std::string unseen;  // and those from the first NUL on
};

// False when the block's text can't be read.
bool ReadText(const Block& block, FieldText* text) {
    if (!block.data) return true;
    MemoryLock lock(block.data);
    if (!lock) return false;
    size_t bytes = std::min<size_t>(block.dataLength, MemorySize(block.data));
    size_t seen = kQuirkTextShownUpToZero ? strnlen(lock.As<char>(), bytes) : bytes;
    text->shown = WideFrom1252({lock.As<char>(), seen});
    text->unseen.assign(lock.As<char>() + seen, bytes - seen);
    return true;
}

std::wstring TextOf(HWND edit) {
    auto units = static_cast<size_t>(GetWindowTextLengthW(edit));
    std::wstring text(units + 1, L'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(edit, text.data(), static_cast<int>(text.size()))));
    return text;
}

bool StoreText(HWND edit, Block* block) {
    try {
        const std::wstring wide = TextOf(edit);
        FieldText old;
        const bool readable = ReadText(*block, &old);
        if (readable && block->dataLength > 0 && wide == old.shown) return true;
        const bool keepsUnseen = Careful(Care::kUnchangedStaysUnchanged);
        if (!readable && keepsUnseen) return false;
        std::string text = Ansi1252FromWide(wide);
        if (keepsUnseen && !text.empty()) text += old.unseen;
        if (!text.empty()) return SetBlockText(block, text.data(), static_cast<uint32_t>(text.size()));
        block->data = nullptr;
        block->dataLength = 0;
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

}  // namespace

bool ShowBlockText(HWND dialog, int id, const Block& block) {
    HWND edit = GetDlgItem(dialog, id);
    TakeOver(edit);
    SendMessageW(edit, WM_SETFONT, 0, FALSE);
    FieldText text;
    if (!ReadText(block, &text)) return false;
    const size_t kept = Careful(Care::kUnchangedStaysUnchanged) ? text.unseen.size() : 0;
    SendMessageW(edit, EM_LIMITTEXT, std::max<size_t>(kMaxTextBytes - kept, 1), 0);  // 0 would be no limit
    SetWindowTextW(edit, text.shown.c_str());
    // Taking the focus selects everything, and a key pressed by mistake would replace it.
    PostMessageW(edit, EM_SETSEL, 0, 0);
    return static_cast<size_t>(GetWindowTextLengthW(edit)) == text.shown.size();
}

void TakeBlockText(HWND dialog, int id, Block* block) {
    if (!StoreText(GetDlgItem(dialog, id), block)) MessageBox(dialog, LoadStr(IDS_OUT_OF_MEMORY));
}
