#include "windows/services/help_system.h"

#include <psapi.h>
#include <shellapi.h>

#include <cwchar>

#include "windows/services/wait_cursor.h"

namespace {

// Windows shows its pages in the first; other viewers show them in the second, which Windows keeps hidden.
bool IsViewerClass(const wchar_t* name) {
    return wcscmp(name, L"MS_WINDOC") == 0 || wcscmp(name, L"MS_WINHELP") == 0;
}

BOOL CALLBACK LookForViewer(HWND window, LPARAM found) {
    wchar_t name[32] = {};
    GetClassNameW(window, name, 32);
    if (!IsWindowVisible(window) || !IsViewerClass(name)) return TRUE;
    *reinterpret_cast<bool*>(found) = true;
    return FALSE;
}

bool IsViewerVisible() {
    bool found = false;
    EnumWindows(LookForViewer, reinterpret_cast<LPARAM>(&found));
    return found;
}

// Lets our windows be painted for `milliseconds` at most. The user's input waits: it may press the same button again.
void PaintMeanwhile(DWORD milliseconds) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, milliseconds, QS_PAINT | QS_SENDMESSAGE);
    MSG message;
    if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_PAINT | PM_QS_SENDMESSAGE)) return;
    if (message.message == WM_QUIT) return PostQuitMessage(static_cast<int>(message.wParam));
    DispatchMessageW(&message);
}

// Wine always has this program for pages. It looks for a browser of the host and ends with an error when there is none;
// having started it says nothing. On the host it may only have found a program that looks on, which nobody can see
// here.
bool IsWinesLauncher(HANDLE process) {
    wchar_t image[MAX_PATH] = L"";
    if (!GetProcessImageFileNameW(process, image, MAX_PATH)) return false;
    const wchar_t* name = wcsrchr(image, L'\\');
    return name && !_wcsicmp(name + 1, L"winebrowser.exe");
}

// Whether Wine's launcher found a browser. One that takes longer has found something.
bool LauncherSucceeds(HANDLE launcher) {
    constexpr DWORD kLongestWait = 3000, kLook = 20;  // milliseconds
    WaitCursor wait;
    DWORD start = GetTickCount(), status = STILL_ACTIVE;
    while (GetExitCodeProcess(launcher, &status) && status == STILL_ACTIVE && GetTickCount() - start < kLongestWait)
        PaintMeanwhile(kLook);
    return status == STILL_ACTIVE || status == 0;
}

// Opens the page, which may be known to be of a class. False when there is nothing to open it with.
bool Execute(SHELLEXECUTEINFOW page) {
    page.fMask |= SEE_MASK_NOCLOSEPROCESS;
    if (!ShellExecuteExW(&page)) return false;
    if (!page.hProcess) return true;
    const bool shown = !IsWinesLauncher(page.hProcess) || LauncherSucceeds(page.hProcess);
    CloseHandle(page.hProcess);
    return shown;
}

}  // namespace

bool CallHelpViewer(HWND owner, const char* file, UINT command, const void* data) {
    return WinHelpA(owner, file, command, reinterpret_cast<ULONG_PTR>(data)) != FALSE;
}

// A viewer may answer that all is well and show nothing. One that works has its window when the call returns; the wait
// is for slow machines.
bool HelpViewerAppears() {
    constexpr DWORD kLongestWait = 1000, kLook = 20;  // milliseconds
    WaitCursor wait;
    DWORD start = GetTickCount();
    while (!IsViewerVisible()) {
        if (GetTickCount() - start >= kLongestWait) return false;
        PaintMeanwhile(kLook);
    }
    return true;
}

// Where the extension of the page has no program, the class of HTML documents may still have one.
bool OpenInBrowser(HWND owner, const wchar_t* path) {
    SHELLEXECUTEINFOW page = {};
    page.cbSize = sizeof page;
    page.fMask = SEE_MASK_FLAG_NO_UI;
    page.hwnd = owner;
    page.lpVerb = L"open";
    page.lpFile = path;
    page.nShow = SW_SHOWNORMAL;
    if (Execute(page)) return true;
    page.fMask |= SEE_MASK_CLASSNAME;
    page.lpClass = L"htmlfile";
    return Execute(page);
}
