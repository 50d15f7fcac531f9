// The pages of the Animation Wizard's dialog.
#pragma once

#include <list>
#include <string>

#include "platform/windows_api.h"

constexpr int kWizardFilesPage = 5;
constexpr int kWizardLastPage = 6;

// What the wizard's dialog works on.
struct Wizard {
    struct BlockList* document;  // where the animation goes
    int page;                    // 0 to kWizardLastPage
    // Of the lines that show names only, which point at them.
    std::list<std::wstring> paths = {};
};

// Shows the controls of the wizard's page and hides those of all others.
void ShowWizardPage(HWND dialog);

// Enables Back, Next and Delete by the page and the files chosen. The keyboard focus leaves a control that can't be
// used any more for one that can.
void EnableWizardButtons(HWND dialog);
