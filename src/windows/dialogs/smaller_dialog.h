// The dialog that asks how a document is to be made smaller.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/windows_api.h"
#include "size/optimise.h"

// What it asks about, and the answer.
struct SmallerRequest {
    uint64_t before = 0;  // the bytes that the document would be saved as now
    OptimiseOptions options;
    std::vector<uint16_t> stripped;  // kinds of blocks to be taken out
};

// Fills all but `before`, of the options those that are asked for. False when the user cancels.
bool AskSmaller(HWND owner, SmallerRequest* request);

// The number with blanks between its thousands: "12 345".
std::wstring GroupedNumber(uint64_t number);
