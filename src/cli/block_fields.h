// The fields of a block by their names, as far as the editor's dialogs change them, the colours, how images are
// encoded, and the data of application and unknown blocks.
#pragma once

#include <string>

#include "gif/block_list.h"

// Why a field was not set; an empty text when it was.
struct FieldRefusal {
    std::string text;
    bool wrongWords = false;  // no block of this kind would take the value
    std::string file = {};    // the one that the text is about, when that is one which the value names
    bool noSuchField = false;
};

// Whether setting the field decides on the bytes of the block, too: which of those that the file had are kept. It is
// then not to be compared with what it was.
bool MakesSource(const Block& block, const std::string& field);

// Sets one field: `field` as in "delay" or "colour:5", `value` in UTF-8. Documents of the classic manner have fewer
// fields. The block is one of its owner's, or a copy.
FieldRefusal SetBlockField(Block* block, const std::string& field, const std::string& value, Manner manner);
