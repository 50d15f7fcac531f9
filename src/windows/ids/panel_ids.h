// Controls of the information panel and the About box. Shared with the resource compiler: macros and comments only.
#pragma once

#define IDC_SHOW_AGAIN 101
#define IDC_PANEL_CAREFUL_MODE 102
#define IDC_PANEL_READABLE_DETAILS 103
#define IDC_PANEL_PREVIEW 104
#define IDC_PANEL_FILMSTRIP 105
#define IDC_PANEL_FAINT_NOTE 106
#define IDC_VERSION_LINE 101
#define IDC_BUILD_LINE 102
