#include "windows/dialogs/text_field.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/services/messages.h"

namespace {

// Of a text with a zero byte only what stands before it is shown; the rest is kept until the text is changed.
constexpr bool kQuirkTextShownUpToZero = true;

constexpr WPARAM kSelectAllKey = 1;  // the character that Ctrl+A makes

// An edit field of several lines has no key to select everything; this window procedure before its own has.
LRESULT CALLBACK SelectAllProc(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CHAR && wParam == kSelectAllKey) return SendMessageW(edit, EM_SETSEL, 0, -1);
    auto own = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(edit, GWLP_USERDATA));
    return CallWindowProcW(own, edit, message, wParam, lParam);
}

void LetCtrlASelectAll(HWND edit) {
    SetWindowLongPtrW(edit, GWLP_USERDATA, GetWindowLongPtrW(edit, GWLP_WNDPROC));
    SetWindowLongPtrW(edit, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(SelectAllProc));
}

// The block's bytes as the edit field holds them. False when they can't be read.
bool ReadText(const Block& block, std::wstring* text) {
    if (!block.data) return true;
    MemoryLock lock(block.data);
    if (!lock) return false;
    size_t bytes = std::min<size_t>(block.dataLength, MemorySize(block.data));
    if (kQuirkTextShownUpToZero) bytes = strnlen(lock.As<char>(), bytes);
    *text = WideFrom1252({lock.As<char>(), bytes});
    return true;
}

std::wstring TextOf(HWND edit) {
    auto units = static_cast<size_t>(GetWindowTextLengthW(edit));
    std::wstring text(units + 1, L'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(edit, text.data(), static_cast<int>(text.size()))));
    return text;
}

// Whether the field still holds what was shown. The block may have more than that: what lies behind a NUL.
bool IsUnchanged(const std::wstring& text, const Block& block) {
    std::wstring shown;
    return block.dataLength > 0 && ReadText(block, &shown) && text == shown;
}

bool StoreText(HWND edit, Block* block) {
    try {
        const std::wstring wide = TextOf(edit);
        if (IsUnchanged(wide, *block)) return true;
        const std::string text = Ansi1252FromWide(wide);
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
    SendMessageW(edit, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(ANSI_FIXED_FONT)), FALSE);
    SendMessageW(edit, EM_LIMITTEXT, kMaxTextBytes, 0);
    LetCtrlASelectAll(edit);
    std::wstring text;
    if (!ReadText(block, &text)) return false;
    SetWindowTextW(edit, text.c_str());
    // Taking the focus selects everything, and a key pressed by mistake would replace it.
    PostMessageW(edit, EM_SETSEL, 0, 0);
    return static_cast<size_t>(GetWindowTextLengthW(edit)) == text.size();
}

void TakeBlockText(HWND dialog, int id, Block* block) {
    if (!StoreText(GetDlgItem(dialog, id), block)) MessageBox(dialog, LoadStr(IDS_OUT_OF_MEMORY));
}
