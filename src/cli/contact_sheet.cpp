#include "cli/contact_sheet.h"

#include <cmath>

#include "animation/stage.h"
#include "cli/complaints.h"
#include "cli/output_file.h"
#include "cli/progress.h"

namespace {

class Sheet {
public:
    Sheet(const Animation& animation, std::span<const uint32_t> frames, size_t columns)
        : animation_(animation), frames_(frames), columns_(columns) {}

    uint64_t Width() const { return columns_ * static_cast<uint64_t>(animation_.Width()); }
    uint64_t Height() const { return Rows() * static_cast<uint64_t>(animation_.Height()); }
    uint64_t RowPixels() const { return Width() * static_cast<uint64_t>(animation_.Height()); }

    bool Encode(const PngStyle& style, ByteBuffer* png) {
        ColourSet colours;
        const bool isIndexed = ColoursOfAnimation(animation_, style.background, &colours);
        CanvasRows rows;
        band_ = AllocateScratchArray<uint32_t>(RowPixels());
        if (!band_ || !stage_.Open(animation_, 0) ||
            !rows.Start(static_cast<uint32_t>(Width()), static_cast<uint32_t>(Height()), isIndexed ? &colours : nullptr,
                        style, png))
            return false;
        for (size_t row = 0; row < Rows(); ++row)
            if (!FillBand(row) || !AddBand(&rows)) return false;
        return rows.Finish();
    }

private:
    size_t Rows() const { return (frames_.size() + columns_ - 1) / columns_; }

    bool FillBand(size_t row) {
        const size_t first = row * columns_, count = std::min(columns_, frames_.size() - first);
        std::fill_n(band_.get(), RowPixels(), kTransparent);
        for (size_t column = 0; column < count; ++column) {
            if (!stage_.Show(frames_[first + column])) return false;
            PutCell(column);
            progress_.OnFrame(first + column + 1, frames_.size());
        }
        return true;
    }

    void PutCell(size_t column) {
        const CanvasView& canvas = stage_.Canvas();
        const auto width = static_cast<size_t>(canvas.width);
        uint32_t* to = band_.get() + column * width;
        for (int y = 0; y < canvas.height; ++y, to += Width()) memcpy(to, canvas.Row(y), width * sizeof(uint32_t));
    }

    bool AddBand(CanvasRows* rows) {
        const uint32_t* pixels = band_.get();
        for (int y = 0; y < animation_.Height(); ++y, pixels += Width())
            if (!rows->Add(pixels)) return false;
        return true;
    }

    const Animation& animation_;
    std::span<const uint32_t> frames_;
    size_t columns_;
    Stage stage_;
    std::unique_ptr<uint32_t[]> band_;  // one row of frames
    Progress progress_;
};

size_t ColumnsFor(size_t frames, unsigned wanted) {
    const auto square = static_cast<size_t>(std::ceil(std::sqrt(static_cast<double>(frames))));
    return std::min<size_t>(wanted ? wanted : square, frames);
}

}  // namespace

bool WriteContactSheet(const Animation& animation, std::span<const uint32_t> frames, unsigned columns,
                       const PngStyle& style, const std::string& path) {
    Sheet sheet(animation, frames, ColumnsFor(frames.size(), columns));
    if (sheet.RowPixels() > kMostCanvasPixels || sheet.Height() > INT32_MAX) {
        Complain(path, "a sheet of " + std::to_string(sheet.Width()) + " x " + std::to_string(sheet.Height()) +
                           " pixels can't be made: a row of frames has at most " + std::to_string(kMostCanvasPixels));
        return false;
    }
    ByteBuffer png;
    if (!sheet.Encode(style, &png)) {
        Complain(path, "not enough memory");
        return false;
    }
    return WriteOutputFile(path, [&](File& file) { return file.Write(png.Content().data(), png.Content().size()); });
}
