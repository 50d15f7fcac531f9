// The dialog that asks how long frames are to be shown.
#pragma once

#include <vector>

#include "editing/timing.h"
#include "platform/windows_api.h"

// What it asks about, and the answer.
struct TimingRequest {
    std::vector<uint32_t> delays;  // of all frames, in hundredths of a second: at least one
    int selectedFrame = -1;        // the number of the one that is selected, or -1
    Retiming how = {Retiming::kDelay, 0};
    std::vector<uint32_t> frames;  // the numbers of those that it is to be done to
};

// Fills the last two fields. False, when the user cancels or gives no number.
bool AskTiming(HWND owner, TimingRequest* request);
