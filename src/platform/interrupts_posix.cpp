#include <csignal>

#include "platform/interrupts.h"

namespace {

sigset_t previouslyHeld;
struct sigaction previousFileSizeAction;

// Those that do not end a process, and those that must arrive where the fault happened, and one that is
// ignored instead.
constexpr int kNotHeld[] = {SIGCHLD, SIGCONT, SIGURG, SIGWINCH, SIGSTOP, SIGTSTP, SIGTTIN, SIGTTOU,
                            SIGSEGV, SIGBUS,  SIGFPE, SIGILL,   SIGTRAP, SIGSYS,  SIGXFSZ};

sigset_t HeldSignals() {
    sigset_t held;
    sigfillset(&held);
    for (int signal : kNotHeld) sigdelset(&held, signal);
    return held;
}

bool IsIgnored(int signal) {
    struct sigaction action;
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

HoldInterrupts::HoldInterrupts() {
    sigset_t held = HeldSignals();
    sigprocmask(SIG_BLOCK, &held, &previouslyHeld);
    // A file that grows beyond what the user may write is to fail the write, which says so in words.
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGXFSZ, &ignore, &previousFileSizeAction);
}

HoldInterrupts::~HoldInterrupts() {
    sigaction(SIGXFSZ, &previousFileSizeAction, nullptr);
    sigprocmask(SIG_SETMASK, &previouslyHeld, nullptr);
}

bool HoldInterrupts::Pending() {
    sigset_t pending;
    if (sigpending(&pending) != 0) return false;
    // One that our parent holds back or ignores is none of ours, but waits all the same.
    for (int signal = 1; signal < NSIG; ++signal)
        if (sigismember(&pending, signal) == 1 && sigismember(&previouslyHeld, signal) == 0 && !IsIgnored(signal))
            return true;
    return false;
}
