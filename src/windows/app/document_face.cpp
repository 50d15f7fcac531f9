#include "windows/app/document_face.h"

#include <string>

#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/ids/command_ids.h"

namespace {

// The title has a place for a second name and a blank before it. The name is gone, the blank stays.
constexpr wchar_t kQuirkSecondName[] = L"";

constexpr UINT kDocumentCommands[] = {IDM_CLOSE,           IDM_SAVE,          IDM_SAVE_AS, IDM_VIEW,  IDM_INSERT,
                                      IDM_INSERT_PICTURES, IDM_EXPORT_FRAMES, IDM_DELETE,  IDM_CHECK, IDM_MAKE_SMALLER};

void ShowTitle(HWND window, const std::wstring& name) {
    constexpr wchar_t kPlaceholder[] = L"%s";
    constexpr size_t kPlaceholderUnits = 2;
    std::wstring title = WideFrom1252(LoadStr(IDS_TITLE));
    // The second placeholder comes first, so that a name may hold "%s" itself.
    size_t second = title.rfind(kPlaceholder);
    if (second != std::wstring::npos) title.replace(second, kPlaceholderUnits, kQuirkSecondName);
    size_t first = title.find(kPlaceholder);
    if (first != std::wstring::npos) title.replace(first, kPlaceholderUnits, name);
    SetWindowTextW(window, title.c_str());
}

}  // namespace

void SetTitle(HWND window, const char* name) {
    ShowTitle(window, WideFromUtf8(name));
}

void SetTitleText(HWND window, unsigned id) {
    ShowTitle(window, WideFrom1252(LoadStr(id)));
}

void EnableDocumentCommands(HWND window, bool enabled) {
    HMENU menu = GetMenu(window);
    for (UINT id : kDocumentCommands)
        EnableMenuItem(menu, id, MF_BYCOMMAND | (enabled ? UINT{MF_ENABLED} : UINT{MF_GRAYED}));
}
