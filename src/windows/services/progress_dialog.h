// Long work behind a dialog that shows how far it is and can stop it.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

#include "platform/windows_api.h"
#include "platform/work_watch.h"

enum class WorkEnd : uint8_t {
    kDone,
    kStopped,   // the user does not want it any more, though it may have come to its end just then
    kNoMemory,  // for the work (std::bad_alloc), its thread or the dialog
};

// It tells the watch how far it is and returns soon after an answer of false, or when `isToStop` becomes true. It
// touches no window, and nothing that one may change.
using LongWork = std::function<void(const WorkWatch& watch, const std::atomic<bool>& isToStop)>;

// Does `work` in a thread of its own and returns when it has ended; the window is disabled meanwhile, and lives on.
// Work that lasts longer than a moment shows a dialog with that caption and line over `owner`.
[[nodiscard]] WorkEnd RunWithProgress(HWND owner, const wchar_t* caption, const wchar_t* line, const LongWork& work);

// Tests set it to stop work in its midst: it then waits for that as soon as it says how far it is.
extern bool workWaitsForStop;
