// The animation viewer from inside: one state per viewing, which its window finds by StateOfViewer, and what the window
// does with it.
#pragma once

#include "gif/block_list.h"
#include "platform/windows_api.h"

constexpr wchar_t kViewerClass[] = L"KLM ZephyrView";

// Messages that the window posts to itself, without parameters.
constexpr UINT WM_VIEWER_NEXT = WM_USER + 31;     // play the block at nextIndex
constexpr UINT WM_VIEWER_DELAY = WM_USER + 32;    // an image has been drawn: start its delay
constexpr UINT WM_VIEWER_DISPOSE = WM_USER + 33;  // the delay is over: dispose of the image and go on
constexpr UINT_PTR kDelayTimer = 1;

constexpr uint32_t kNoTransparentIndex = 0xFFFFFFFF;
constexpr int32_t kNoLoopYet = -1;
constexpr int32_t kEndlessLoops = 32767;

// Repeats begin behind a header and a loop block, wherever those are; the loop block is not read again.
constexpr uint32_t kQuirkLoopStart = 2;

enum Disposal : uint32_t { kDisposeNothing = 0, kDisposeLeave = 1, kDisposeBackground = 2, kDisposePrevious = 3 };

struct ViewerState {
    uint32_t screenWidth = 0, screenHeight = 0;
    uint32_t nextIndex = 0;
    // Of the last image drawn, as all that begin with image...
    uint32_t imageLeft = 0, imageTop = 0, imageWidth = 0, imageHeight = 0;
    uint32_t imageTransparentIndex = kNoTransparentIndex;
    bool imageInterlaced = false;
    Palette imagePalette;
    uint32_t transparentIndex = kNoTransparentIndex;  // for the next images, as the controls say
    uint32_t disposal = 0;
    uint32_t delay = 0;  // hundredths of a second
    uint32_t waitForInput = 0;
    uint32_t hasGlobalPalette = 0;
    int32_t loopsLeft = kNoLoopYet;
    uint32_t backgroundColour = 0;
    Palette globalPalette;
    Block current;                 // the block being played
    HBITMAP savedUnder = nullptr;  // what lay under the current image, for kDisposePrevious
    MemoryHandle currentImage;     // the image on screen
    HBRUSH backgroundBrush = nullptr;
    BlockList* list = nullptr;
};

// Hundredths of a second while the delay timer runs, 1 after an image that waits for the user's input, otherwise 0.
extern int32_t pendingWait;

LRESULT CALLBACK ViewerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
ViewerState* StateOfViewer(HWND window);  // null when the window has none yet

// Fills `state`, fresh, for playing `list` from behind its header. False when there is no header.
bool BeginViewing(ViewerState* state, BlockList* list);
void EndViewing(ViewerState* state);  // releases what the state owns

// What the window's messages do (viewer_blocks.cpp).
void PlayNextBlock(HWND window, ViewerState& state);
void StartDelay(HWND window, const ViewerState& state);
void EndDelay(HWND window);
void ForgetDelay(HWND window);

// Painting and disposing of the current image (viewer_paint.cpp).
void PaintCurrentImage(HDC dc, HWND window, ViewerState& state);
void DisposeOfImage(HWND window, ViewerState& state);
void ForgetSavedUnder(ViewerState& state);
