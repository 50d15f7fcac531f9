// What there is to say about a file that was loaded: what the document lacks of it, or what is wrong with it.
#pragma once

#include <string>

#include "gif/gif_reader.h"

struct LoadNotice {
    std::string text;          // one sentence, Windows-1252; empty when there is nothing to say
    bool offersWhole = false;  // whether reading the file whole would bring more
};

// The notice on a load of `manner` that brought `list` and ended so. A file that could not be opened or read at all has
// none: the message about it says everything.
LoadNotice DescribeLoad(const BlockList& list, ReadResult result, const ReadReport& report, Manner manner);
