// The preview: a pane that shows the composed frame of the selected line, enlarged as wanted, and plays in place.
//
// The wheel, + and - zoom, 0 shows all again; dragging and the arrow keys move what is larger than the pane; Page Up
// and Page Down go to the frame before and behind; Space plays and stops; P lays the prices of the
// pixels over the picture, also from the menu of the pane.
#pragma once

#include "platform/windows_api.h"

class PlayedDocument;

// Creates the pane as child IDC_PREVIEW of `window`, without a place. Null when that fails.
HWND CreatePreview(HWND window);

// Puts it there, fitted to the screen that it is on now.
void FitPreview(HWND pane, const RECT& place);

// Shows the frame of `line` of `played`, which must stay where it is as long as the pane is there. A changed document
// or another line ends playing. What takes longer is composed bit by bit while the window waits for messages.
void ShowInPreview(HWND pane, const PlayedDocument& played, int line);

// Starts playing from the frame that is shown; or stops, and chooses the line of the frame that is shown then.
void PlayOrStop(HWND pane);
bool IsPlaying(HWND pane);

// Whether all that was asked for is shown.
bool IsPreviewReady(HWND pane);
