// The information panel, shown at start and from the Help menu.
#pragma once

#include "platform/windows_api.h"

// Shows the panel and waits; its check box sets settings.showStartupBanner.
void ShowInformationPanel(HWND owner);
