// Controls of the block editor dialogs and the colour picker. Shared with the resource compiler: macros and comments
// only. The up-down beside the edit field n is 10000 + n; its text holds "minimum,maximum,start".
#pragma once

#define IDC_HELP_BUTTON 9

// Owner-drawn: one palette entry, and the eyedropper that takes it from an image.
#define IDC_COLOUR 599
#define IDC_SECOND_COLOUR 598
#define IDC_EYEDROPPER 811
#define IDC_SECOND_EYEDROPPER 812

#define IDC_HEADER_WIDTH 101
#define IDC_HEADER_HEIGHT 102
#define IDC_HEADER_GLOBAL_PALETTE 103
#define IDC_HEADER_SORTED 105
#define IDC_HEADER_COLOURS 107
#define IDC_HEADER_WIDTH_UPDOWN 10101
#define IDC_HEADER_HEIGHT_UPDOWN 10102

#define IDC_IMAGE_WIDTH 101
#define IDC_IMAGE_HEIGHT 102
#define IDC_IMAGE_LOCAL_PALETTE 103
#define IDC_IMAGE_INTERLACED 106
#define IDC_IMAGE_COLOURS 107
#define IDC_IMAGE_FRAME 111
#define IDC_IMAGE_LEFT 116
#define IDC_IMAGE_TOP 117
#define IDC_IMAGE_LEFT_UPDOWN 10116
#define IDC_IMAGE_TOP_UPDOWN 10117

#define IDC_CONTROL_TRANSPARENT 101
#define IDC_CONTROL_USER_INPUT 102
#define IDC_CONTROL_DISPOSAL 103
#define IDC_CONTROL_DELAY 104
#define IDC_CONTROL_DELAY_UPDOWN 10104

#define IDC_COMMENT_TEXT 101

#define IDC_PLAIN_TEXT 101
#define IDC_PLAIN_LEFT 102
#define IDC_PLAIN_TOP 103
#define IDC_PLAIN_GRID_WIDTH 104  // these four are not in the template and read as 0
#define IDC_PLAIN_GRID_HEIGHT 105
#define IDC_PLAIN_CELL_WIDTH 106
#define IDC_PLAIN_CELL_HEIGHT 107
#define IDC_PLAIN_LEFT_UPDOWN 10102
#define IDC_PLAIN_TOP_UPDOWN 10103

#define IDC_LOOP_ITERATIONS 104
#define IDC_LOOP_ITERATIONS_UPDOWN 10104

// The colour picker, in careful mode.
#define IDC_COLOUR_GRID 601

#define IDB_EYEDROPPER 1811
#define IDB_EYEDROPPER_150 1812  // for screens half as dense again, and twice as dense
#define IDB_EYEDROPPER_200 1813
