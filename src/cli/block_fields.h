// The fields of a block by their names, as far as the editor's dialogs change them, and the global colours.
#pragma once

#include <string>

#include "gif/block.h"

// Why a field was not set; an empty text when it was.
struct FieldRefusal {
    std::string text;
    bool wrongWords = false;  // no block of this kind would take the value
};

// Sets one field: `field` as in "delay" or "colour:5", `value` in UTF-8. A block whose text was changed has released
// its old one.
FieldRefusal SetBlockField(Block* block, const std::string& field, const std::string& value);
