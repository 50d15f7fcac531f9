#include "windows/app/commands.h"

#include "windows/app/about_box.h"
#include "windows/app/block_list_view.h"
#include "windows/app/document_commands.h"
#include "windows/app/edit_menu.h"
#include "windows/app/information_panel.h"
#include "windows/app/notice_strip.h"
#include "windows/app/options.h"
#include "windows/app/panes.h"
#include "windows/app/shell_state.h"
#include "windows/ids/command_ids.h"
#include "windows/ids/pane_ids.h"
#include "windows/services/help.h"

namespace {

constexpr char kHelpKeyword[] = "KLMZephyr";

void OnSelectionChange(HWND window) {
    int line = SelectedLine(window);
    if (line != kNoLine) selectedLine = static_cast<uint32_t>(line);
    ShowPanes(window);
}

void OnInformation(HWND window) {
    ShowInformationPanel(window);
    ApplyOptions(window);  // its boxes are options
}

void OnListNotification(HWND window, int notification) {
    if (notification == LBN_SELCHANGE) OnSelectionChange(window);
    if (notification == LBN_DBLCLK) PostMessageW(window, WM_COMMAND, IDM_EDIT, 0);
}

}  // namespace

LRESULT OnCommand(HWND window, int id, int notification) {
    switch (id) {
        case IDM_OPEN: OnOpen(window); break;
        case IDM_CLOSE: OnClose(window); break;
        case IDM_SAVE_AS: OnSaveAs(window); break;
        case IDM_VIEW: OnView(window); break;
        case IDM_INSERT: OnInsert(window); break;
        case IDM_INSERT_PICTURES: OnInsertPictures(window); break;
        case IDM_EXPORT_FRAMES: OnExportFrames(window); break;
        case IDM_CHECK: OnCheck(window); break;
        case IDM_MAKE_SMALLER: OnMakeSmaller(window); break;
        case IDM_WIZARD: OnWizard(window); break;
        case IDM_SAVE: OnSave(window); break;
        case IDM_NEW: OnNew(window); break;
        case IDM_DELETE: OnDelete(window); break;
        case IDM_EXIT: OnExit(window); break;
        case IDM_OPEN_WHOLE: OnOpenWhole(window); break;
        case IDM_CLOSE_NOTICE: HideNotice(window); break;
        case IDM_EDIT: OnEdit(window); break;
        case IDM_INFORMATION: OnInformation(window); break;
        case IDM_HELP: ShowHelp(window, kHelpKeyword); break;
        case IDM_ABOUT: ShowAboutBox(window); break;
        case IDC_FILMSTRIP: OnFilmstripNotification(window, notification); break;
        case IDC_BLOCK_LIST: OnListNotification(window, notification); break;
        default:
            if (RunEditCommand(window, id)) break;
            if (SwitchOption(window, id)) return ApplyOptions(window), 0;
            if (id >= IDM_RECENT_FIRST) OnRecentFile(window, id);
    }
    return 0;
}
