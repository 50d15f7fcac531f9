// The moments of an animation: what it shows one after the other, in numbers for colours.
#pragma once

#include <memory>
#include <vector>

#include "animation/stage.h"
#include "size/numbered_canvas.h"
#include "size/plan_options.h"

// Frames in a row that show the same.
struct Moment {
    size_t number = 0;                       // from 0
    uint32_t firstFrame = 0, lastFrame = 0;  // of the animation
    uint32_t delay = 0;                      // of all of them, in the file's hundredths
    uint32_t played = 0;                     // as browsers play them
    bool isAlone = false;                    // waits for the user
    CanvasHandle canvas;
    ChangeExtent difference;  // from the one before; from the empty canvas for the first
    CanvasHandle drawnOn;     // what the document itself draws it on; none where no canvas here is the same
    Rectangle cleared;        // what the document clears before, when it does so
};
using MomentHandle = std::shared_ptr<const Moment>;

// Composes the moments in their order. A moment ends where its delays could not be summed up for all players.
class MomentReader {
public:
    // All must stay as they are for as long as this is used; the colours of what is read get their numbers there.
    MomentReader(const Animation& animation, const PlanOptions& options, ColourIds* colours)
        : animation_(animation), options_(options), colours_(*colours) {}

    [[nodiscard]] PlanResult Open();

    // Makes `*moments` the next ones, at most `count`, fewer only at the end. May throw std::bad_alloc.
    [[nodiscard]] PlanResult Read(size_t count, std::vector<MomentHandle>* moments);

    // The canvas before the first moment.
    const CanvasHandle& Empty() const { return empty_; }

private:
    PlanResult ReadFrame(std::vector<MomentHandle>* moments);
    CanvasHandle Take(ChangeExtent* difference);
    const uint32_t* GiveUp(const uint32_t* row, const uint32_t* before, const Rectangle& area);
    bool MayMerge() const;
    bool WaitsForUser() const;
    void Start(const CanvasHandle& shown, const ChangeExtent& difference);
    void Merge();
    void Dispose();

    const Frame& AtHand() const { return animation_.Frames()[frame_]; }

    const Animation& animation_;
    const PlanOptions& options_;
    ColourIds& colours_;
    Stage stage_;
    CanvasHandle empty_, canvas_;
    std::vector<uint32_t> pixels_;  // of canvas_
    std::vector<uint32_t> nearRow_;
    uint32_t frame_ = 0;            // the next to be read
    std::shared_ptr<Moment> open_;  // to which the next frame may still belong
    size_t started_ = 0;
    CanvasHandle drawnOn_;  // for the next moment
    Rectangle cleared_;
};
