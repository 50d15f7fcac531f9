// Frames as PNG files in memory, made on all processors.
#pragma once

#include <functional>
#include <span>

#include "animation/stage.h"
#include "platform/byte_buffer.h"
#include "platform/work_watch.h"

// What the frames of an animation are made into. Encoding happens in several threads at once, delivering in the order
// of the frames; both answer false when they fail, which ends it all.
struct FrameWork {
    bool onlyChanges = false;  // `area` is what differs from the frame before instead of the whole canvas
    std::function<bool(const CanvasView& canvas, const struct Rectangle& area, ByteBuffer* png)> encode;
    std::function<bool(uint32_t frame, const struct Rectangle& area, std::span<const uint8_t> png)> deliver;
    WorkWatch watch;  // told of frames; comes from the calling thread
};

enum class FrameResult { kDone, kNotDelivered, kNoMemory, kStopped };

// Composes the frames with these numbers, ascending, and does the work on each. The memory that it takes does not
// depend on how many there are. A canvas without pixels has nothing to be made into: do not ask.
FrameResult EncodeFrames(const Animation& animation, std::span<const uint32_t> frames, const FrameWork& work);
