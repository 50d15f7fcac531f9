// Controls of the dialogs for work on the whole document, and of the one that shows how far it is. Shared with the
// resource compiler: macros and comments only.
#pragma once

#define IDC_WORK_LINE 101
#define IDC_WORK_BAR 102

#define IDC_EXPORT_ALL 101
#define IDC_EXPORT_SOME 102
#define IDC_EXPORT_FIRST 103
#define IDC_EXPORT_LAST 104
#define IDC_EXPORT_FILES 105
#define IDC_EXPORT_SHEET 106
#define IDC_EXPORT_ANIMATION 107
#define IDC_EXPORT_COUNT 108

#define IDC_FINDINGS_TEXT 101
#define IDC_FINDINGS_LIST 102

#define IDC_SMALLER_BEFORE 101
#define IDC_SMALLER_FAST 102
#define IDC_SMALLER_NORMAL 103
#define IDC_SMALLER_MAX 104
#define IDC_SMALLER_KEEP_FRAMES 105
#define IDC_SMALLER_LOSSY 106
#define IDC_SMALLER_COMMENTS 111
#define IDC_SMALLER_APPLICATIONS 112
#define IDC_SMALLER_NAMES 113
#define IDC_SMALLER_TEXTS 114
#define IDC_SMALLER_UNKNOWN 115
