// The dialog that lists what was found in a document.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/windows_api.h"

struct FoundPlace {
    int line = 0;  // of the main window's list; negative for the whole document
    std::string text;
};

struct FindingsRequest {
    std::vector<FoundPlace> places;        // at least one
    std::function<void(int line)> choose;  // called with the line of the place that was selected, if it has one
};

// Shows them until the user closes the dialog.
void ShowFindings(HWND owner, FindingsRequest* request);
