#include "platform/interrupts.h"
#include "platform/windows_api.h"

namespace {

constexpr DWORD kPatience = 10000;  // milliseconds; the system itself waits for less when a console closes

HANDLE workIsDone;
volatile LONG interrupted;

// Runs in a thread of the system's. What ends the process comes after it.
BOOL WINAPI OnConsoleEvent(DWORD) {
    InterlockedExchange(&interrupted, 1);
    if (workIsDone) WaitForSingleObject(workIsDone, kPatience);
    return FALSE;
}

}  // namespace

HoldInterrupts::HoldInterrupts() {
    interrupted = 0;
    workIsDone = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

HoldInterrupts::~HoldInterrupts() {
    SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
    if (workIsDone) SetEvent(workIsDone);
    if (Pending()) Sleep(kPatience);  // the other thread ends the process meanwhile
    if (workIsDone) CloseHandle(workIsDone);
    workIsDone = nullptr;
}

bool HoldInterrupts::Pending() {
    return InterlockedCompareExchange(&interrupted, 0, 0) != 0;
}
