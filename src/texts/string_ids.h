// Numbers of the string table. Shared with the resource compiler: macros and comments only.
// There is deliberately no 198: places that ask for it show the loader's fallback text.
#pragma once

#define IDS_OPEN_FAILED 101
#define IDS_TITLE 102
#define IDS_NO_FILE 104
#define IDS_OUT_OF_MEMORY 106
#define IDS_WRITE_FAILED 107
#define IDS_UNTITLED 112
#define IDS_SAVE_QUESTION 114
#define IDS_NOT_EDITABLE 115
#define IDS_APPLICATION_BLOCK 116
#define IDS_COLOUR_COUNT 117
#define IDS_GLOBAL_PALETTE_IN_USE 118
#define IDS_BLOCK_ACCESS 119
#define IDS_NO_GLOBAL_COLOURS 120
#define IDS_NO_PALETTE_FOR_CONTROL 121
#define IDS_HEADER_FIXED 125
#define IDS_NO_SELECTION 126
#define IDS_SECOND_LOOP 127
#define IDS_NEW_TEXT 128
#define IDS_DELAY_ITEM 129
#define IDS_CORRUPTED_FILE 130
#define IDS_MISSING 198
#define IDS_DISPOSAL_FIRST 1000
#define IDS_LINE_EMPTY 2110
#define IDS_LINE_HEADER 2111
#define IDS_LINE_IMAGE 2112
#define IDS_LINE_CONTROL 2113
#define IDS_LINE_PLAIN_TEXT 2114
#define IDS_LINE_APPLICATION 2115
#define IDS_LINE_COMMENT 2116
#define IDS_LINE_UNKNOWN 2117
#define IDS_LINE_LOOP 2124
#define IDS_LINE_BLOCK_NAMES 2125
