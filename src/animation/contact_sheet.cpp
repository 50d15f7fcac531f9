#include "animation/contact_sheet.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "animation/stage.h"

namespace {

class Sheet {
public:
    Sheet(const Animation& animation, std::span<const uint32_t> frames, const SheetLayout& layout,
          const WorkWatch& watch)
        : animation_(animation), frames_(frames), layout_(layout), watch_(watch) {}

    FrameResult Encode(const PngStyle& style, ByteBuffer* png) {
        ColourSet colours;
        const bool isIndexed = ColoursOfAnimation(animation_, style.background, &colours);
        CanvasRows rows;
        band_ = AllocateScratchArray<uint32_t>(layout_.rowPixels);
        if (!band_ || !stage_.Open(animation_, 0) ||
            !rows.Start(static_cast<uint32_t>(layout_.width), static_cast<uint32_t>(layout_.height),
                        isIndexed ? &colours : nullptr, style, png))
            return FrameResult::kNoMemory;
        for (size_t row = 0; row < layout_.rows; ++row) {
            if (FrameResult result = FillBand(row); result != FrameResult::kDone) return result;
            if (!AddBand(&rows)) return FrameResult::kNoMemory;
        }
        return rows.Finish() ? FrameResult::kDone : FrameResult::kNoMemory;
    }

private:
    FrameResult FillBand(size_t row) {
        const size_t first = row * layout_.columns, count = std::min(layout_.columns, frames_.size() - first);
        std::fill_n(band_.get(), layout_.rowPixels, kTransparent);
        for (size_t column = 0; column < count; ++column) {
            if (!stage_.Show(frames_[first + column])) return FrameResult::kNoMemory;
            PutCell(column);
            if (!GoesOn(watch_, first + column + 1, frames_.size())) return FrameResult::kStopped;
        }
        return FrameResult::kDone;
    }

    void PutCell(size_t column) {
        const CanvasView& canvas = stage_.Canvas();
        const auto width = static_cast<size_t>(canvas.width);
        uint32_t* to = band_.get() + column * width;
        for (int y = 0; y < canvas.height; ++y, to += layout_.width)
            memcpy(to, canvas.Row(y), width * sizeof(uint32_t));
    }

    bool AddBand(CanvasRows* rows) {
        const uint32_t* pixels = band_.get();
        for (int y = 0; y < animation_.Height(); ++y, pixels += layout_.width)
            if (!rows->Add(pixels)) return false;
        return true;
    }

    const Animation& animation_;
    std::span<const uint32_t> frames_;
    const SheetLayout& layout_;
    const WorkWatch& watch_;
    Stage stage_;
    std::unique_ptr<uint32_t[]> band_;  // one row of frames
};

size_t ColumnsFor(size_t frames, unsigned wanted) {
    const auto square = static_cast<size_t>(std::ceil(std::sqrt(static_cast<double>(frames))));
    return std::min<size_t>(wanted ? wanted : square, frames);
}

}  // namespace

bool SheetLayout::Fits() const {
    return rowPixels <= kMostCanvasPixels && height <= INT32_MAX;
}

SheetLayout LayOutSheet(const Animation& animation, size_t frames, unsigned columns) {
    SheetLayout layout;
    layout.columns = ColumnsFor(frames, columns);
    layout.rows = (frames + layout.columns - 1) / layout.columns;
    layout.width = layout.columns * static_cast<uint64_t>(animation.Width());
    layout.height = layout.rows * static_cast<uint64_t>(animation.Height());
    layout.rowPixels = layout.width * static_cast<uint64_t>(animation.Height());
    return layout;
}

FrameResult EncodeSheet(const Animation& animation, std::span<const uint32_t> frames, const SheetLayout& layout,
                        const PngStyle& style, const WorkWatch& watch, ByteBuffer* png) {
    return Sheet(animation, frames, layout, watch).Encode(style, png);
}
