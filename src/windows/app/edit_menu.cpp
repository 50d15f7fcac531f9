#include "windows/app/edit_menu.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "windows/app/block_list_view.h"
#include "windows/app/commands.h"
#include "windows/app/document_history.h"
#include "windows/dialogs/fields.h"
#include "windows/ids/command_ids.h"
#include "windows/services/front_procedure.h"

namespace {

constexpr UINT kBehindFile = 1;  // the menu's place in the bar

// Where a command stands.
constexpr unsigned kInMenu = 1;       // in the Edit menu
constexpr unsigned kOnLine = 2;       // in the menu of a line
constexpr unsigned kStartsGroup = 4;  // behind a separator

// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): in the order in which rows are read
struct EditCommand {
    int id;
    unsigned place;
    unsigned text;       // of the item, with its key; a printf format with a place for the step's name where it has one
    WPARAM key;          // a virtual key, with
    unsigned modifiers;  // these: FCONTROL, FSHIFT, FALT
    const std::string* (*step)();  // what the item names: the step that would be taken; null for an item without one
    bool (*canRun)(HWND window);
    void (*run)(HWND window);
};

bool CanUndo(HWND) {
    return UndoName() != nullptr;
}

bool CanRedo(HWND) {
    return RedoName() != nullptr;
}

bool HasSelection(HWND window) {
    return SelectedBlock(window) != kNoLine;
}

constexpr EditCommand kCommands[] = {
    {IDM_UNDO, kInMenu, IDS_MENU_UNDO, 'Z', FCONTROL, UndoName, CanUndo, OnUndo},
    {IDM_REDO, kInMenu, IDS_MENU_REDO, 'Y', FCONTROL, RedoName, CanRedo, OnRedo},
    {IDM_CUT, kInMenu | kOnLine | kStartsGroup, IDS_MENU_CUT, 'X', FCONTROL, nullptr, CanCopy, OnCut},
    {IDM_COPY, kInMenu | kOnLine, IDS_MENU_COPY, 'C', FCONTROL, nullptr, CanCopy, OnCopy},
    {IDM_PASTE, kInMenu | kOnLine, IDS_MENU_PASTE, 'V', FCONTROL, nullptr, CanPaste, OnPaste},
    {IDM_DUPLICATE, kInMenu | kOnLine, IDS_MENU_DUPLICATE, 'D', FCONTROL, nullptr, CanDuplicate, OnDuplicate},
    {IDM_MOVE_UP, kInMenu | kOnLine | kStartsGroup, IDS_MENU_MOVE_UP, VK_UP, FALT, nullptr, CanMoveUp, OnMoveUp},
    {IDM_MOVE_DOWN, kInMenu | kOnLine, IDS_MENU_MOVE_DOWN, VK_DOWN, FALT, nullptr, CanMoveDown, OnMoveDown},
    {IDM_EDIT, kInMenu | kOnLine | kStartsGroup, IDS_MENU_EDIT_BLOCK, VK_RETURN, 0, nullptr, HasSelection, OnEdit},
    {IDM_DELETE, kOnLine, IDS_MENU_DELETE, VK_DELETE, 0, nullptr, HasSelection, OnDelete},
    {IDM_REVERSE, kInMenu | kStartsGroup, IDS_MENU_REVERSE, 0, 0, nullptr, CanReverse, OnReverse},
    {IDM_TIMING, kInMenu, IDS_MENU_TIMING, 0, 0, nullptr, CanTime, OnTiming},
};

// Keys of items that stand in other menus, and show none there.
struct MenuKey {
    WPARAM key;
    unsigned modifiers;
    int id;
};
constexpr MenuKey kMenuKeys[] = {
    {'N', FCONTROL, IDM_NEW},  {'O', FCONTROL, IDM_OPEN},
    {'S', FCONTROL, IDM_SAVE}, {'S', FCONTROL | FSHIFT, IDM_SAVE_AS},
    {VK_F5, 0, IDM_VIEW},      {VK_F1, 0, IDM_HELP},
};

std::wstring TextOf(const EditCommand& command) {
    const std::string* step = command.step ? command.step() : nullptr;
    return WideFrom1252(FormatStr(command.text, step ? (" " + *step).c_str() : ""));
}

UINT StateOf(HWND window, const EditCommand& command) {
    return command.canRun(window) ? UINT{MF_ENABLED} : UINT{MF_GRAYED};
}

// Adds the commands of that place, greyed where they can't be done now.
void AppendCommands(HWND window, HMENU menu, unsigned place) {
    for (const EditCommand& command : kCommands) {
        if (!(command.place & place)) continue;
        const bool isFirst = GetMenuItemCount(menu) == 0;
        if (command.place & kStartsGroup && !isFirst) AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
        AppendMenuW(menu, MF_STRING | StateOf(window, command), static_cast<UINT_PTR>(command.id),
                    TextOf(command).c_str());
    }
}

unsigned ModifiersDown() {
    auto isDown = [](int key) { return GetKeyState(key) < 0; };
    return (isDown(VK_CONTROL) ? FCONTROL : 0u) | (isDown(VK_SHIFT) ? FSHIFT : 0u) | (isDown(VK_MENU) ? FALT : 0u);
}

constexpr int kNoCommand = 0;

int CommandOfKey(WPARAM key, unsigned modifiers) {
    auto isMeant = [=](const auto& row) { return row.key == key && row.modifiers == modifiers; };
    if (const auto* row = std::ranges::find_if(kCommands, isMeant); row != std::end(kCommands)) return row->id;
    if (const auto* row = std::ranges::find_if(kMenuKeys, isMeant); row != std::end(kMenuKeys)) return row->id;
    return kNoCommand;
}

// Whether the command can be chosen now; those of other menus are greyed there.
bool CanChoose(HWND window, int id) {
    const auto* command = std::ranges::find(kCommands, id, &EditCommand::id);
    if (command != std::end(kCommands)) return command->canRun(window);
    return (GetMenuState(GetMenu(window), static_cast<UINT>(id), MF_BYCOMMAND) & MF_GRAYED) == 0;
}

LRESULT CALLBACK KeysProc(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_KEYDOWN && PressEditKey(GetParent(control), wParam)) return 0;
    // The system has to see what is pressed with Alt, or it opens the menu bar when that is let go.
    if (message == WM_SYSKEYDOWN) PressEditKey(GetParent(control), wParam);
    return CallBehind(KeysProc, control, message, wParam, lParam);
}

}  // namespace

void AddEditMenu(HWND window) {
    HMENU menu = CreatePopupMenu();
    AppendCommands(window, menu, kInMenu);
    const std::wstring title = WideFrom1252(LoadStr(IDS_MENU_EDIT));
    InsertMenuW(GetMenu(window), kBehindFile, MF_BYPOSITION | MF_POPUP, reinterpret_cast<UINT_PTR>(menu),
                title.c_str());
}

void UpdateEditMenu(HWND window) {
    for (const EditCommand& command : kCommands) {
        if (!(command.place & kInMenu)) continue;
        const auto id = static_cast<UINT>(command.id);
        ModifyMenuW(GetMenu(window), id, MF_BYCOMMAND | MF_STRING | StateOf(window, command), id,
                    TextOf(command).c_str());
    }
}

bool RunEditCommand(HWND window, int command) {
    const auto* found = std::ranges::find(kCommands, command, &EditCommand::id);
    if (found == std::end(kCommands)) return false;
    if (found->canRun(window)) found->run(window);
    return true;
}

bool PressEditKey(HWND window, WPARAM key) {
    const int id = CommandOfKey(key, ModifiersDown());
    if (id == kNoCommand) return false;
    if (CanChoose(window, id)) SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(id), 0);
    return true;
}

bool ShowLineMenu(HWND window, POINT place) {
    HMENU menu = CreatePopupMenu();
    if (!menu) return false;
    AppendCommands(window, menu, kOnLine);
    const BOOL shown = TrackPopupMenu(menu, TPM_RIGHTBUTTON, place.x, place.y, 0, window, nullptr);
    DestroyMenu(menu);
    return shown != FALSE;
}

void PassEditKeys(HWND control) {
    PutInFront(control, KeysProc);
}
