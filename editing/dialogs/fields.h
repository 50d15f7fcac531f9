// Numbers and check boxes in dialogs.
#pragma once

#include <cstdint>

#include "platform/windows_api.h"

void ShowNumber(HWND dialog, int id, unsigned number);

// The number in an edit field, cut to 16 bits; 0 for a text that is no number and for a field that doesn't exist.
uint16_t TakeNumber(HWND dialog, int id);

void ShowCheck(HWND dialog, int id, bool checked);
bool TakeCheck(HWND dialog, int id);

// `packed` with the bits of `mask` set or cleared as the check box is.
uint8_t TakeFlag(HWND dialog, int id, uint8_t packed, uint8_t mask);

// Shows the string "%u colours" for the size code in a header's or an image's packed byte.
void ShowColourCount(HWND dialog, int id, uint8_t packed);
