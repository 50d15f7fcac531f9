// Controls of the timing dialog. Shared with the resource compiler: macros and comments only.
#pragma once

#define IDC_TIMING_DELAY 101
#define IDC_TIMING_SCALE 102
#define IDC_TIMING_TOTAL 103
#define IDC_TIMING_LEAST 104
#define IDC_TIMING_VALUE 105
#define IDC_TIMING_UNIT 106
#define IDC_TIMING_SELECTED 107
#define IDC_TIMING_ALL 108
