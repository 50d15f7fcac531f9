// What the editor's window works on: the one open document and what is remembered about it.
#pragma once

#include <cstdint>
#include <string>

#include "gif/block_list.h"

extern BlockList document;           // all zero when no file is open
extern bool documentChanged;         // edited and not saved since
extern std::string currentFileName;  // UTF-8; the name last opened or saved as. Close and New keep it
extern bool documentIsNamed;         // that name is the document's own: it came from there, or went there
extern std::string partlyReadFile;   // UTF-8; the document's file when that holds more than was read, otherwise empty
extern uint32_t selectedLine;        // the last line that a selection change reported

constexpr uint32_t kNoSelectedLine = 65535;
