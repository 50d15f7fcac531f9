// The list of files on the Animation Wizard's page of that name.
#pragma once

#include <string>
#include <vector>

#include "platform/windows_api.h"

// Adds files to the list, one file dialog after the other until the user cancels one.
void SelectWizardFiles(HWND dialog);

// Takes the selected file, if there is one, out of the list and selects the one behind it.
void DeleteWizardFile(HWND dialog);

// The paths (UTF-8) in the order of the list.
std::vector<std::string> WizardFiles(HWND dialog);
