// The system's clipboard.
#pragma once

#include <span>
#include <vector>

#include "platform/memory.h"
#include "platform/windows_api.h"

// One thing in one of its formats (CF_..., or a registered one).
struct ClipboardPart {
    UINT format;
    std::span<const uint8_t> bytes;
};

// Puts one thing, in the formats given, the best one first, in place of what was there. False when another program
// holds the clipboard, or memory runs out: the first part decides, of the others those come that can.
bool PutOnClipboard(HWND owner, std::span<const ClipboardPart> parts);

// The formats that are there: those that were put there, in that order, then those that the system makes of them. None
// when another program holds the clipboard.
std::vector<UINT> FormatsOnClipboard(HWND owner);

// The bytes that are there in that format; `*bytes` becomes how many: at least as many as were put there, as the
// system may round up. None when there are none, or they can't be had.
[[nodiscard]] MemoryHandle TakeFromClipboard(HWND owner, UINT format, size_t* bytes);
