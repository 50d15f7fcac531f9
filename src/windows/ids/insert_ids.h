// Controls of the Insert Object and the palette dialog. Shared with the resource compiler: macros and comments only.
#pragma once

#define IDC_INSERT_IMAGE 101
#define IDC_INSERT_CONTROL 102
#define IDC_INSERT_COMMENT 103
#define IDC_INSERT_PLAIN_TEXT 104
#define IDC_INSERT_LOOP 105

#define IDC_PALETTE_TEXT 104
#define IDC_PALETTE_REMAP 102
#define IDC_PALETTE_DITHER 103
#define IDC_PALETTE_SUBSEQUENT 108
