// The document as the panes show it: played, and composed a little at a time so that the window stays awake.
#pragma once

#include <cstdint>
#include <memory>

#include "animation/stage.h"

// Larger canvases are not composed in panes: 64 MiB each.
constexpr uint64_t kMostPanePixels = uint64_t{1} << 24;

// A copy of the document, which shares its pixels, and its frames.
class PlayedDocument {
public:
    // Makes it a copy of `document`, unless it is one already. When memory runs out it has no frames.
    void Take(const BlockList& document);

    // Changes with every other document: what was composed of the one before is of no use any more.
    unsigned Version() const { return version_; }

    const Animation& Played() const { return animation_; }
    const BlockList& Blocks() const { return blocks_; }
    uint32_t FrameCount() const { return static_cast<uint32_t>(animation_.Frames().size()); }
    bool FitsPane() const { return animation_.Screen().Pixels() <= kMostPanePixels; }

    // The frame that the block of `line` is a part of; behind the last image the last frame. -1 without frames, or for
    // a line that does not exist.
    int FrameOfLine(int line) const;
    // The line of its IMAGE.
    int LineOfFrame(uint32_t frame) const { return static_cast<int>(animation_.Frames()[frame].block); }

private:
    BlockList blocks_;
    Animation animation_;
    unsigned version_ = 0;
};

enum class Composed : uint8_t { kReady, kNotYet, kFailed };

// Composes frames of a document in slices of time.
class Composer {
public:
    // `keptBytes`: of canvases that are kept for going back.
    explicit Composer(uint64_t keptBytes) : keptBytes_(keptBytes) {}

    // Works towards frame `frame`, which must exist, of `played`, which must stay where it is. After kReady Canvas()
    // shows it; kNotYet: call again. Failed when memory ran out, or the canvas is too large for panes.
    Composed Compose(const PlayedDocument& played, uint32_t frame);

    const CanvasView& Canvas() const { return stage_.Canvas(); }

    // Gives the memory back.
    void Forget();

private:
    uint64_t keptBytes_;
    Stage stage_;
    unsigned version_ = 0;
    bool isOpen_ = false;
};
