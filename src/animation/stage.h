// What each frame of an animation looks like.
#pragma once

#include "animation/animation.h"
#include "animation/paint_image.h"

// Canvases with more pixels than this (4 bytes each) are refused.
constexpr uint64_t kMostCanvasPixels = uint64_t{1} << 28;

// So many bytes of canvases are kept by default, for going back to a frame without playing all of them before it.
constexpr uint64_t kKeptCanvasBytes = uint64_t{64} << 20;

inline bool FitsCanvas(const Animation& animation) {
    return animation.Screen().Pixels() <= kMostCanvasPixels;
}

// One canvas that shows a frame at a time. From frame to frame only what changes is touched; any other frame is played
// from the nearest of these: the canvas as it is, one that was kept on the way, a frame that stands alone, the first.
class Stage {
public:
    // `animation` must stay as it is for as long as this is used, and FitsCanvas hold for it. At most `keptBytes` bytes
    // of canvases are kept. False when memory runs out.
    [[nodiscard]] bool Open(const Animation& animation, uint64_t keptBytes);

    // The same for a part of an animation without texts: rows `top` to `bottom` - 1 of its screen, which are all that
    // the canvas has and all that is looked at. No canvases are kept.
    [[nodiscard]] bool OpenRows(const Animation& animation, int top, int bottom);

    // Makes the canvas show frame number `frame`, which must exist. False when memory runs out: the canvas then shows
    // nothing of use until the next success.
    [[nodiscard]] bool Show(uint32_t frame);

    // How many frames Show would draw to get there: 0 when the canvas shows the frame already.
    uint32_t FramesToDraw(uint32_t frame) const;

    // The canvas: the animation's width, its height or the rows that are composed, from the top, and pixels as
    // PaintImage makes them.
    const CanvasView& Canvas() const { return canvas_; }

    // The rectangle outside of which nothing differs from what was shown before. The first time it is the whole canvas.
    struct Rectangle Changed() const {
        return changed_;
    }

    // How many frames were drawn since Open, those on the way included: what showing has cost.
    uint64_t FramesDrawn() const { return framesDrawn_; }

private:
    static constexpr int64_t kNothing = -1;

    [[nodiscard]] bool OpenPart(const Animation& animation, const struct Rectangle& part);
    struct Rectangle AreaOf(const Frame& frame) const {
        return Common(frame.area, part_);
    }
    void PlanKeeping(uint64_t keptBytes);
    uint32_t NearestStart(uint32_t frame) const;
    void StartAt(uint32_t frame);
    void Dispose();
    void Keep(uint32_t frame);
    bool Draw(uint32_t number);
    void DrawTexts(const Frame& frame);
    bool SaveUnder(const struct Rectangle& area);
    const uint32_t* KeptBefore(uint32_t frame) const;

    const Animation* animation_ = nullptr;
    struct Rectangle part_;  // of the screen, that is composed
    GlobalPalette palette_;
    CanvasView canvas_ = {};
    std::unique_ptr<uint32_t[]> pixels_;
    int64_t shown_ = kNothing;
    struct Rectangle changed_;
    uint64_t framesDrawn_ = 0;

    // What was under the shown frame, when its disposal brings that back.
    std::unique_ptr<uint32_t[]> under_;
    uint64_t underRoom_ = 0;

    // Slot i holds the canvas as it was before frame (i + 1) * keptEvery_ was drawn, once that has been passed.
    std::unique_ptr<std::unique_ptr<uint32_t[]>[]> kept_;
    uint32_t keptSlots_ = 0;
    uint32_t keptEvery_ = 0;
};
