// The information panel, shown at start and from the Help menu.
#pragma once

#include "platform/windows_api.h"

// Shows the panel and waits; its check boxes set settings.showStartupBanner and settings.carefulMode.
void ShowInformationPanel(HWND owner);
