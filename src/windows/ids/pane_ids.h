// The panes beside the list of blocks. Shared with the resource compiler: macros and comments only.
#pragma once

#define IDC_PREVIEW 1003
#define IDC_FILMSTRIP 1004
