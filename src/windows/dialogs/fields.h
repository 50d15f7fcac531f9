// Numbers, check boxes and texts in dialogs.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "platform/windows_api.h"
#include "texts/strings.h"

void EnableControl(HWND dialog, int id, bool enable);

void ShowNumber(HWND dialog, int id, unsigned number);

constexpr uint16_t kMostInField = UINT16_MAX;

// Whether the edit field holds a number from 0 to kMostInField.
bool HoldsNumber(HWND dialog, int id);

// The number in an edit field, cut to 16 bits; 0 for a text that is no number and for a field that doesn't exist.
uint16_t TakeNumber(HWND dialog, int id);

void ShowCheck(HWND dialog, int id, bool checked);
bool TakeCheck(HWND dialog, int id);

// `packed` with the bits of `mask` set or cleared as the check box is.
uint8_t TakeFlag(HWND dialog, int id, uint8_t packed, uint8_t mask);

// The string number `id`, a printf format, with `values` in it, at most 259 bytes. (The string table's texts and the
// arguments here are fixed together, which the compiler can't see.)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
template <typename... Values>
std::string FormatStr(unsigned id, Values... values) {
    char text[260];
    snprintf(text, sizeof text, LoadStr(id), values...);
    return text;
}
#pragma GCC diagnostic pop

// Shows the string "%u colours" for the size code in a header's or an image's packed byte.
void ShowColourCount(HWND dialog, int id, uint8_t packed);
