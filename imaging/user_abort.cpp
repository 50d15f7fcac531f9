#include "imaging/user_abort.h"

#include "platform/input.h"

uint16_t abortStatus = 0;

bool UserAbortRequested() {
    if (!TakeMousePress()) return false;
    abortStatus = kAbortedByUser;
    SoundBeep();
    return true;
}
