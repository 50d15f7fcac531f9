// What a document is when it is played: its frames, where each is drawn, and when.
//
// These are the rules of the browsers (Chrome, Edge, Firefox and Safari agree where nothing else is said):
//
// - Every IMAGE is a frame, also one without pixels. A CONTROL counts for the next image alone: of two, the later one;
//   an image without one has no delay, no disposal and no transparency. A delay of 0 or 1 hundredths is played as 10.
//   The flag for user input is not heeded.
// - The canvas is the logical screen and starts transparent: neither the background colour nor a palette shows through.
//   Images are cut off at its edges. Where its width or height is 0, the right or bottom edge of the first image takes
//   its place. (Of a first image larger than the screen Chrome and Firefox enlarge the canvas, each in another manner.
//   Here the screen holds.)
// - When a frame's time is over, disposal 2 makes its rectangle transparent, and disposal 3 brings back what was there
//   before it; in a first frame that is the empty canvas. 0, 1 and 5 to 7 leave it. 4 counts as 3, since old writers
//   took the bit for the number.
// - The transparent index may lie beyond the palette. Other pixels beyond it are black, and so are all of an image for
//   which the document has no palette at all.
// - A loop block's number is that of the repeats: the frames play once more than that, and for ever with 0. NETSCAPE2.0
//   and ANIMEXTS1.0 are the same; of several blocks the last counts. Without any the frames play once.
//
// A PLAIN TEXT is no frame, and browsers do not show it. Here it is drawn into the frame of the next image, before that
// one, as View draws it at once and goes on. Texts behind the last image make a frame of their own. The control that
// stands before a text tells its transparent colour and still counts for the next image.
//
// View is the program's own player and has rules of its own: its controls stay in force, it fills with the background
// colour, and it repeats from the third block.
#pragma once

#include <memory>
#include <span>

#include "animation/rectangle.h"
#include "gif/block_list.h"

constexpr int kNoTransparency = -1;

enum Disposal : uint8_t {
    kDisposeNothing = 0,
    kDisposeLeave = 1,
    kDisposeBackground = 2,
    kDisposePrevious = 3,
    kDisposePreviousOfOld = 4,
};

struct Frame {
    uint32_t firstBlock;    // where its texts begin: behind the block of the frame before
    uint32_t block;         // the IMAGE, or the last text of a frame of texts alone
    int32_t control = -1;   // the CONTROL that counts for it, or -1
    struct Rectangle area;  // of its image, cut off at the edges of the screen
    int transparentIndex = kNoTransparency;
    uint8_t disposal = kDisposeNothing;  // as browsers take it: 0 to 3, and 5 to 7, which do nothing
    bool standsAlone = false;            // covers the whole screen: nothing of what was before shows
    uint16_t delay = 0;                  // as the file has it, in hundredths of a second
    uint32_t length = 0;                 // as it is played
    uint64_t start = 0;                  // in hundredths from the start of the first frame
};

constexpr uint16_t kShortestPlayedDelay = 2;
constexpr uint32_t kDelayInstead = 10;

// How long a browser shows a frame of that delay, both in hundredths of a second. ffmpeg does the same.
constexpr uint32_t PlayedDelay(uint16_t delay) {
    return delay < kShortestPlayedDelay ? kDelayInstead : delay;
}

enum class Texts : bool { kLeftOut, kDrawn };

class Animation {
public:
    static constexpr int kNoLoop = -1;

    // Takes down the frames of `list`, which must stay as it is for as long as this is used. False when memory runs
    // out.
    [[nodiscard]] bool Open(const BlockList& list, Texts texts);

    const BlockList& List() const { return *list_; }
    int Width() const { return width_; }  // of the canvas: 0 to 131070
    int Height() const { return height_; }
    struct Rectangle Screen() const {
        return {0, 0, width_, height_};
    }
    std::span<const Frame> Frames() const { return {frames_.get(), count_}; }
    bool DrawsTexts() const { return texts_ == Texts::kDrawn; }

    // The number in the loop block that counts: 0 stands for ever; kNoLoop without one.
    int Repeats() const { return repeats_; }
    // How often the frames are played in all; 0 for ever.
    uint32_t Plays() const { return repeats_ == 0 ? 0 : static_cast<uint32_t>(repeats_ == kNoLoop ? 1 : repeats_ + 1); }
    // How long they take once, in hundredths of a second.
    uint64_t Length() const { return count_ ? frames_[count_ - 1].start + frames_[count_ - 1].length : 0; }

private:
    void FitScreen();
    void AddFrame(const Frame& frame);
    void TakeFrames();
    bool StandsAlone(const Frame& frame) const;

    const BlockList* list_ = nullptr;
    int width_ = 0, height_ = 0;
    int repeats_ = kNoLoop;
    Texts texts_ = Texts::kDrawn;
    std::unique_ptr<Frame[]> frames_;
    uint32_t count_ = 0;
};

// The transparent index that a CONTROL gives, or kNoTransparency.
int TransparentIndexOf(const Block& control);

// The colours in force for an IMAGE: its own, or else the document's.
Palette ColoursOf(const Block& image, const GlobalPalette& global);

// The number in a block that says how often the animation repeats; kNoLoop for any other block.
int RepeatsOf(const Block& block);
