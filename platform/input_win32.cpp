#include "platform/input.h"

#include "platform/windows_api.h"

bool TakeMousePress() {
    MSG message;
    if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_NOYIELD)) return false;
    return message.message == WM_LBUTTONDOWN || message.message == WM_RBUTTONDOWN;
}

void SoundBeep() {
    MessageBeep(0);
}
