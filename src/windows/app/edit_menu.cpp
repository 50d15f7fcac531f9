#include "windows/app/edit_menu.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "windows/app/document_history.h"
#include "windows/dialogs/fields.h"
#include "windows/ids/command_ids.h"

namespace {

constexpr UINT kBehindFile = 1;  // the menu's place in the bar

struct EditCommand {
    int id;
    unsigned text;       // of the item, with its key; a printf format with a place for the step's name where it has one
    WPARAM key;          // a virtual key, with
    unsigned modifiers;  // these: FCONTROL, FSHIFT, FALT
    const std::string* (*step)();  // what the item names: the step that would be taken; null for an item without one
    bool (*canRun)();
    void (*run)(HWND window);  // cppcheck-suppress unusedStructMember ; it is, by RunEditCommand
};

bool CanUndo() {
    return UndoName() != nullptr;
}

bool CanRedo() {
    return RedoName() != nullptr;
}

constexpr EditCommand kCommands[] = {
    {IDM_UNDO, IDS_MENU_UNDO, 'Z', FCONTROL, UndoName, CanUndo, OnUndo},
    {IDM_REDO, IDS_MENU_REDO, 'Y', FCONTROL, RedoName, CanRedo, OnRedo},
};

std::wstring TextOf(const EditCommand& command) {
    const std::string* step = command.step ? command.step() : nullptr;
    return WideFrom1252(FormatStr(command.text, step ? (" " + *step).c_str() : ""));
}

unsigned ModifiersDown() {
    auto isDown = [](int key) { return GetKeyState(key) < 0; };
    return (isDown(VK_CONTROL) ? FCONTROL : 0u) | (isDown(VK_SHIFT) ? FSHIFT : 0u) | (isDown(VK_MENU) ? FALT : 0u);
}

LRESULT CALLBACK KeysProc(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    const bool isKey = message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
    if (isKey && PressEditKey(GetParent(control), wParam)) return 0;
    auto own = reinterpret_cast<WNDPROC>(GetClassLongPtrW(control, GCLP_WNDPROC));
    return CallWindowProcW(own, control, message, wParam, lParam);
}

}  // namespace

void AddEditMenu(HWND window) {
    HMENU menu = CreatePopupMenu();
    for (const EditCommand& command : kCommands)
        AppendMenuW(menu, MF_STRING, static_cast<UINT_PTR>(command.id), TextOf(command).c_str());
    const std::wstring title = WideFrom1252(LoadStr(IDS_MENU_EDIT));
    InsertMenuW(GetMenu(window), kBehindFile, MF_BYPOSITION | MF_POPUP, reinterpret_cast<UINT_PTR>(menu),
                title.c_str());
    UpdateEditMenu(window);
}

void UpdateEditMenu(HWND window) {
    for (const EditCommand& command : kCommands) {
        const auto id = static_cast<UINT>(command.id);
        const UINT state = command.canRun() ? UINT{MF_ENABLED} : UINT{MF_GRAYED};
        ModifyMenuW(GetMenu(window), id, MF_BYCOMMAND | MF_STRING | state, id, TextOf(command).c_str());
    }
}

bool RunEditCommand(HWND window, int command) {
    const auto* found = std::ranges::find(kCommands, command, &EditCommand::id);
    if (found == std::end(kCommands)) return false;
    if (found->canRun()) found->run(window);
    return true;
}

bool PressEditKey(HWND window, WPARAM key) {
    const unsigned modifiers = ModifiersDown();
    const auto* found = std::ranges::find_if(
        kCommands, [=](const EditCommand& command) { return command.key == key && command.modifiers == modifiers; });
    if (found == std::end(kCommands)) return false;
    SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(found->id), 0);
    return true;
}

void PassEditKeys(HWND control) {
    SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(KeysProc));
}
