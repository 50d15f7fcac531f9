#include "tests/support/scripted_input.h"

#include "platform/input.h"

ScriptedInput input;

bool TakeMousePress() {
    return input.polls++ == input.pressAtPoll;
}

void SoundBeep() {
    ++input.beeps;
}
