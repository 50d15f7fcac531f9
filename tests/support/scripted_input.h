// The test's own mouse: takes the place of the platform's message queue in the program that links this file.
#pragma once

struct ScriptedInput {
    static constexpr long kNever = -1;
    long polls = 0;             // how often the core has looked for a press
    long pressAtPoll = kNever;  // the poll, counted from 0, that finds a press
    int beeps = 0;
};
extern ScriptedInput input;
