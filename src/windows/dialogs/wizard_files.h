// The list of files on the Animation Wizard's page of that name.
#pragma once

#include <string>
#include <vector>

#include "windows/services/dropped_files.h"

// In careful mode: the paths of the lines that have no room for them show as tips.
void GiveWizardTips(HWND dialog);

// Adds files to the list, one file dialog after the other until the user cancels one.
void SelectWizardFiles(HWND dialog);

// Adds the files that were dropped on the list, in the order of their names; those dropped elsewhere are let go.
void DropWizardFiles(HWND dialog, HDROP drop);

// Takes the selected file, if there is one, out of the list and selects the one behind it.
void DeleteWizardFile(HWND dialog);

// The paths (UTF-8) in the order of the list.
std::vector<std::string> WizardFiles(HWND dialog);
