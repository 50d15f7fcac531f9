// The notice strip and its controls. Shared with the resource compiler: macros and comments only.
#pragma once

#define IDC_NOTICE 1002
#define IDC_NOTICE_TEXT 101
#define IDC_NOTICE_WHOLE 102
#define IDC_NOTICE_CLOSE 103
