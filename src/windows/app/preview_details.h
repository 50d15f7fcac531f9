// What the preview says in words about the selected line.
#pragma once

#include <string>

#include "windows/app/played_document.h"

constexpr uint64_t kBytesNotCounted = UINT64_MAX;

// The rectangle on the canvas that the block of `line` draws to: its own for an image or a plain text, otherwise that
// of the image of frame `frame`. It may reach beyond the canvas.
struct Rectangle AreaOfLine(const PlayedDocument& played, int line, uint32_t frame);

// How many bytes the image of the frame takes in the file: those that it has there, or those that saving would write.
// The latter takes its time, as it is encoded. kBytesNotCounted when that fails, and for
// images of which it would take too long.
uint64_t BytesOfFrame(const PlayedDocument& played, uint32_t frame);

// Three lines: which frame, where and how large the block is, how long the frame is shown and its bytes
// (kBytesNotCounted: these are left out).
std::wstring DescribeLine(const PlayedDocument& played, int line, uint32_t frame, uint64_t bytes);
