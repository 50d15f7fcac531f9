#include "windows/services/user_abort.h"

#include "platform/windows_api.h"

bool UserAbortRequested() {
    MSG message;
    if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_NOYIELD)) return false;
    if (message.message != WM_LBUTTONDOWN && message.message != WM_RBUTTONDOWN) return false;
    MessageBeep(0);
    return true;
}
