#include "platform/input.h"

bool TakeMousePress() {
    return false;
}

void SoundBeep() {}
