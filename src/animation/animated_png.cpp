#include "animation/animated_png.h"

#include "imaging/apng_writer.h"

namespace {

ApngFrame PlaceOf(const Frame& frame, const Rectangle& area) {
    return {static_cast<uint32_t>(area.left), static_cast<uint32_t>(area.top), static_cast<uint32_t>(area.Width()),
            static_cast<uint32_t>(area.Height()), static_cast<uint16_t>(frame.length)};
}

}  // namespace

FrameResult WriteAnimatedPng(const Animation& animation, std::span<const uint32_t> frames, const PngStyle& style,
                             const WorkWatch& watch, File& file) {
    ColourSet colours;
    const bool isIndexed = ColoursOfAnimation(animation, style.background, &colours);
    ApngWriter writer(file);
    FrameWork work;
    work.onlyChanges = true;
    work.watch = watch;
    work.encode = [&](const CanvasView& canvas, const Rectangle& area, ByteBuffer* png) {
        ColourSet own = colours;
        return EncodeCanvasAs(isIndexed ? &own : nullptr, canvas, area, style, png);
    };
    work.deliver = [&](uint32_t frame, const Rectangle& area, std::span<const uint8_t> png) {
        return writer.AddFrame(png, PlaceOf(animation.Frames()[frame], area));
    };
    if (!writer.Start(static_cast<uint32_t>(frames.size()), animation.Plays())) return FrameResult::kNotDelivered;
    const FrameResult result = EncodeFrames(animation, frames, work);
    if (result != FrameResult::kDone) return result;
    return writer.Finish() ? FrameResult::kDone : FrameResult::kNotDelivered;
}
