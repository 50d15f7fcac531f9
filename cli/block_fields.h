// The fields of a block by their names, as far as the editor's dialogs change them, and the global colours.
#pragma once

#include <string>

#include "gif/block.h"

// Sets one field: `field` as in "delay" or "colour:5", `value` in UTF-8. Returns what is wrong, or an empty text.
// A block whose text was changed has given up its old one and must go back into its list.
std::string SetBlockField(Block* block, const std::string& field, const std::string& value);
