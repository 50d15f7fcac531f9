// What programs that read the screen aloud are told about windows of ours, where the system can't know it: names, and
// the things that a window shows without their being windows.
#pragma once

#include <string>

#include "platform/windows_api.h"

// clang-format off
#include <objbase.h>
#include <oleacc.h>
// clang-format on

// The lines of a list, the cells of a grid. Items count from 0; those that are asked about are there.
struct ReadItems {
    long role;  // ROLE_SYSTEM_... of each
    int (*count)(HWND window);
    std::wstring (*name)(HWND window, int item);
    RECT (*place)(HWND window, int item);          // in client coordinates; it may lie outside
    int (*selected)(HWND window);                  // -1: none
    void (*select)(HWND window, int item);         // as a person does it
    const wchar_t* action = nullptr;               // what `act` is called; null: there is none
    void (*act)(HWND window, int item) = nullptr;  // what a double click or Enter does. It must not wait for anybody
};

struct ReadWindow {
    std::wstring (*name)(HWND window);  // empty: the system's own
    long role = 0;                      // ROLE_SYSTEM_...; 0: the system's own
    const ReadItems* items = nullptr;   // null: it shows none
};

// Has `window` answer screen readers so, as long as it lives; `about` must outlive it.
void TellReaders(HWND window, const ReadWindow& about);

// The text of the label before a control, without its underlined letter and its colon. A label is what takes no input:
// static text or a group's frame. Buttons without a text of their own are passed over.
std::wstring LabelBefore(HWND control);

// For the lines of list boxes. LB_GETTEXT is the name; selecting one notifies the parent.
int ReadLineCount(HWND list);
std::wstring ReadLineText(HWND list, int line);
RECT ReadLinePlace(HWND list, int line);
int ReadSelectedLine(HWND list);
void SelectReadLine(HWND list, int line);
