// Work behind the progress dialog that does not end by itself.
#pragma once

#include "windows/services/progress_dialog.h"

// Work waits to be stopped for as long as this lives.
struct StoppedWork {
    StoppedWork() { workWaitsForStop = true; }
    ~StoppedWork() { workWaitsForStop = false; }
    StoppedWork(const StoppedWork&) = delete;
    StoppedWork& operator=(const StoppedWork&) = delete;
};
