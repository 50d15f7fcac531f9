// The commands of the main window's menus and the notifications of its list.
#pragma once

#include <string>
#include <vector>

#include "editing/edit_outcome.h"
#include "platform/windows_api.h"

// Runs command `id`; `notification` tells what happened in the list, for its own id. Always answers 0.
LRESULT OnCommand(HWND window, int id, int notification);

void OnView(HWND window);
void OnEdit(HWND window);
void OnInsert(HWND window);
void OnInsertPictures(HWND window);
void OnDelete(HWND window);
void OnExportFrames(HWND window);
void OnCheck(HWND window);
void OnMakeSmaller(HWND window);

// Inserts the first image of each file (paths in UTF-8) behind the line, as Insert does with those that are chosen.
void InsertImageFiles(HWND window, int line, const std::vector<std::string>& paths);

// Those of the Edit menu. The first ones work on the selected block; where nothing is selected, nothing happens.
void OnCut(HWND window);
void OnCopy(HWND window);
void OnPaste(HWND window);  // behind the selected block, or else the last one
void OnDuplicate(HWND window);
void OnMoveUp(HWND window);
void OnMoveDown(HWND window);
void OnReverse(HWND window);  // all frames
void OnTiming(HWND window);

// Whether they can be done now.
bool CanCopy(HWND window);  // and so Cut
bool CanPaste(HWND window);
bool CanDuplicate(HWND window);
bool CanMoveUp(HWND window);
bool CanMoveDown(HWND window);
bool CanReverse(HWND window);
bool CanTime(HWND window);

// Puts the block of that line behind that of another one, as a step.
void MoveLine(HWND window, int line, int behind);
bool CanMoveLine(int line, int behind);

// Says why an operation was refused, or what came out otherwise than one may expect; nothing where neither is.
void TellOutcome(HWND window, const EditOutcome& outcome);

// The number of the selected block; kNoLine when none is selected, or the line belongs to a document that is closed.
int SelectedBlock(HWND window);

// Shows the document after a change, with that line selected.
void ShowChangedDocument(HWND window, int line);
