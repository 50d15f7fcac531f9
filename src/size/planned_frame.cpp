#include "size/planned_frame.h"

namespace {

void TakeColours(size_t colours, PlannedFrame* frame) {
    std::vector<uint8_t> marked(2 * colours);  // whether some pixel shows it: one that is not free, one that is
    uint8_t* const marks = marked.data();
    const ColourId* const ids = frame->ids.data();
    const uint8_t* const free = frame->free.data();
    for (size_t i = 0, count = frame->ids.size(); i < count; ++i) marks[size_t{2} * ids[i] + (free[i] ? 1 : 0)] = 1;
    constexpr size_t kTransparentMarks = size_t{2} * kTransparentId;
    frame->needsTransparency = marks[kTransparentMarks] || marks[kTransparentMarks + 1];
    for (size_t id = 0; id < colours; ++id) {
        const bool isNeeded = marks[2 * id], isOffered = marks[2 * id + 1];
        if (isOffered) frame->hasFree = true;
        if (id == kTransparentId) continue;
        if (isNeeded)
            frame->needed.push_back(static_cast<ColourId>(id));
        else if (isOffered)
            frame->offered.push_back(static_cast<ColourId>(id));
    }
}

}  // namespace

void TakePixels(const NumberedCanvas& before, const NumberedCanvas& shown, size_t colours, PlannedFrame* frame) {
    const auto width = static_cast<size_t>(frame->box.Width());
    frame->ids.reserve(static_cast<size_t>(frame->box.Pixels()));
    frame->free.resize(static_cast<size_t>(frame->box.Pixels()));
    uint8_t* free = frame->free.data();
    for (int y = frame->box.top; y < frame->box.bottom; ++y, free += width) {
        const ColourId* from = before.Row(y) + frame->box.left;
        const ColourId* to = shown.Row(y) + frame->box.left;
        frame->ids.insert(frame->ids.end(), to, to + width);
        for (size_t x = 0; x < width; ++x) free[x] = from[x] == to[x];
    }
    TakeColours(colours, frame);
}
