// What a preview knows, for the files that it is made of.
#pragma once

#include <string>

#include "platform/windows_api.h"
#include "windows/app/block_list_view.h"
#include "windows/app/played_document.h"
#include "windows/app/preview_details.h"
#include "windows/app/preview_view.h"
#include "windows/app/price_overlay.h"

// Of canvases that are kept for going back.
constexpr uint64_t kPreviewKeptBytes = uint64_t{32} << 20;
constexpr wchar_t kNothingToShow[] = L"Nothing to show";

struct Preview {
    const PlayedDocument* played = nullptr;
    unsigned version = 0;  // of the document that is shown
    int line = kNoLine;
    int frame = -1;  // to be shown; -1: none
    bool isComposed = false;
    const wchar_t* trouble = kNothingToShow;  // what is said instead of a picture; null when there is one
    uint64_t bytes = kBytesNotCounted;
    Composer composer{kPreviewKeptBytes};
    PreviewView view;
    bool showsPrices = false;  // of pixels, over the picture while it does not play
    PriceOverlay prices;
    bool isPlaying = false;
    uint32_t playsLeft = 0;  // 0: for ever
    uint64_t due = 0;        // in Milliseconds(): when the next frame is to be shown
    bool isDragged = false;
    POINT dragged = {};
    int wheelTurned = 0;  // of a notch; fine wheels send parts of one
};

// Of the pane, whose it is; null as long as it has none yet, or no more.
Preview* StateOfPreview(HWND pane);

// Has all of it painted anew.
void RedrawPreview(HWND pane);

// Pixels of the screen under the picture, for the words.
int PreviewTextHeight(HWND pane);

// Chooses the line of a frame that exists.
void ChoosePreviewFrame(HWND pane, int frame);

// Lays the prices of pixels over the picture, or takes them away.
void SwitchPreviewPrices(HWND pane);
