// Control of the three message dialogs. Shared with the resource compiler: macros and comments only.
#pragma once

#define IDC_MESSAGE_TEXT 101
