// Frames that look as they did although they stand behind others than before.
#pragma once

#include <span>

#include "editing/edit_outcome.h"
#include "gif/block_list.h"

// A frame and the document in which it looks as it should.
struct Look {
    const BlockList* document;  // not the one that is changed; its frames are its images, as an Animation counts them
    uint32_t frame;
};

// Makes the frames of `list` look as `looks` says, which has one for each image. A frame whose drawing gives its look
// keeps its bytes. Any other is composed anew: an image of the smallest rectangle that makes its look of what is there,
// in the global palette or with one of its own. Where something has to become transparent again, which no image does,
// the frame before it is disposed of to the background, and is composed anew as well when it is too small for that.
// Delays stay: an image without a control gets one that says so where it has come behind another control than before.
//
// Looks are those of players, which show no plain texts: these stay where they are, and no image that is made has their
// letters. A frame composed anew that had the control of a text gets one of its own, so that the text's stays as it is.
EditOutcome KeepLooks(std::span<const Look> looks, BlockList* list);

// Whether a plain text stands between the control that counts for the image `block` and the image: the control is that
// of the text, too.
bool SharesControlWithText(const BlockList& list, uint32_t control, uint32_t block);
