#include "size/planned_frame.h"

namespace {

// Whether some pixel shows a colour: one that is not free, one that is.
class ColourMarks {
public:
    explicit ColourMarks(size_t colours) : marks_(2 * colours) {}

    void Mark(const ColourId* ids, const uint8_t* free, size_t count) {
        uint8_t* const marks = marks_.data();  // a byte written might be the vector's, for all that is known
        for (size_t i = 0; i < count; ++i) marks[size_t{2} * ids[i] + free[i]] = 1;
    }

    void Deliver(PlannedFrame* frame) const {
        frame->needsTransparency = IsNeeded(kTransparentId) || IsOffered(kTransparentId);
        frame->hasFree = IsOffered(kTransparentId);
        for (size_t id = kTransparentId + 1; id < marks_.size() / 2; ++id) {
            frame->hasFree = frame->hasFree || IsOffered(id);
            if (IsNeeded(id))
                frame->needed.push_back(static_cast<ColourId>(id));
            else if (IsOffered(id))
                frame->offered.push_back(static_cast<ColourId>(id));
        }
    }

private:
    bool IsNeeded(size_t id) const { return marks_[2 * id]; }
    bool IsOffered(size_t id) const { return marks_[2 * id + 1]; }

    std::vector<uint8_t> marks_;
};

}  // namespace

void TakePixels(const NumberedCanvas& before, const NumberedCanvas& shown, size_t colours, PlannedFrame* frame) {
    const Rectangle& box = frame->box;
    const auto width = static_cast<size_t>(box.Width());
    ColourMarks marks(colours);
    std::vector<uint8_t> free(width);
    frame->ids.reserve(static_cast<size_t>(box.Pixels()));
    frame->free.reserve(static_cast<size_t>(box.Pixels()));
    for (int y = box.top; y < box.bottom; ++y) {
        const ColourId* from = before.Row(y) + box.left;
        const ColourId* to = shown.Row(y) + box.left;
        uint8_t* const row = free.data();
        for (size_t x = 0; x < width; ++x) row[x] = from[x] == to[x];
        marks.Mark(to, row, width);
        frame->ids.insert(frame->ids.end(), to, to + width);
        frame->free.insert(frame->free.end(), free.begin(), free.end());
    }
    marks.Deliver(frame);
}
