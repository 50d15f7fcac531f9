// Commands of the main window. Shared with the resource compiler: macros and comments only.
#pragma once

#define IDM_OPEN 100
#define IDM_CLOSE 101
#define IDM_SAVE_AS 102
#define IDM_VIEW 103
#define IDM_INSERT 104
#define IDM_WIZARD 105
#define IDM_SAVE 106
#define IDM_NEW 107
#define IDM_DELETE 108
#define IDM_EXIT 199
#define IDM_EDIT 201
#define IDM_CAREFUL_MODE 301
#define IDM_READABLE_DETAILS 302
#define IDM_PREVIEW 303
#define IDM_FILMSTRIP 304
#define IDM_OPEN_WHOLE 321
#define IDM_CLOSE_NOTICE 322
#define IDM_INSERT_PICTURES 331
#define IDM_EXPORT_FRAMES 332
#define IDM_CHECK 333
#define IDM_UNDO 401
#define IDM_REDO 402
#define IDM_CUT 403
#define IDM_COPY 404
#define IDM_PASTE 405
#define IDM_DUPLICATE 406
#define IDM_MOVE_UP 407
#define IDM_MOVE_DOWN 408
#define IDM_REVERSE 409
#define IDM_TIMING 410
#define IDM_INFORMATION 997
#define IDM_HELP 998
#define IDM_ABOUT 999
#define IDC_BLOCK_LIST 1000
#define IDM_RECENT_FIRST 2000
