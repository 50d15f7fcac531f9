// Putting off the end of the process while something is half done.
#pragma once

// While one exists, a signal that would end the process waits (Ctrl-C, the end of the session, SIGTERM and the like);
// it arrives at the end of the scope. Only one may exist at a time. What can't be put off: SIGKILL and its like, and
// the signals by which a program learns of its own faults.
class HoldInterrupts {
public:
    HoldInterrupts();
    ~HoldInterrupts();
    HoldInterrupts(const HoldInterrupts&) = delete;
    HoldInterrupts& operator=(const HoldInterrupts&) = delete;

    // Whether a signal is waiting for the end of the scope, so that the work had better be undone.
    static bool Pending();
};
