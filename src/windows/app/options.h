// The options: what came to the settings later and the settings file keeps only while it is not as by default. Most
// are switches that the Options menu shows.
#pragma once

#include <span>

#include "platform/windows_api.h"
#include "windows/services/settings.h"

struct Option {
    int command;                // of its menu item, which turns it on and off; 0: it has none
    const char* key;            // in the settings file
    uint32_t Settings::*value;  // of a switch 0: off
};

// One row each.
std::span<const Option> Options();

// Turns the option of menu item `command` on or off and shows it so. False when the command is none of an option.
bool SwitchOption(HWND window, int command);

// Sets the check marks in the menu of `window` as the settings say.
void ShowOptions(HWND window);
