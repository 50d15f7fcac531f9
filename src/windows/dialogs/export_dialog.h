// The dialog that asks which frames are to be exported, and into what.
#pragma once

#include <cstdint>

#include "platform/windows_api.h"

enum class ExportForm : uint8_t { kFiles, kSheet, kAnimation };

// What it asks about, and the answer.
struct ExportRequest {
    uint32_t count = 0;            // of frames that there are: at least one
    uint32_t first = 0, last = 0;  // the numbers of those that are wanted, from 0
    ExportForm form = ExportForm::kFiles;
};

// Fills all but `count`. False when the user cancels.
bool AskExport(HWND owner, ExportRequest* request);
