// What the viewer shows of a document, and when it goes on.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "tests/gui/animation.h"
#include "tests/gui/viewer_stage.h"

namespace {

constexpr int kClientWidth = 61, kClientHeight = 50;

// Where an image begins in the client area, along one axis.
int PlaceOf(int client, int image, int screen, int offset) {
    double centred = image < client ? std::floor((client - image) / 2.0) : 0;
    return static_cast<int>(centred + offset - std::floor((screen - image) / 2.0));
}

// Plays the document once, and compares after every image and every disposal with the rules for single pixels.
void CheckPlaying(Animation* animation) {
    ViewerStage stage(animation->List(), kClientWidth, kClientHeight);
    const Block header = animation->At(0);
    const HeaderFields screen = GetHeaderFields(header);
    const COLORREF background = screen.packed & kHasPalette ? ColourRef(header.palette[kBackgroundIndex]) : 0;
    Picture shown(kClientWidth, kClientHeight, background);
    ControlFields control = {};
    for (uint32_t index = 1; index < animation->List()->count; ++index) {
        ASSERT_EQ(Difference(shown, stage.Look()), "") << "before block " << index;
        ASSERT_EQ(stage.Step(), WM_VIEWER_NEXT);
        const Block block = animation->At(index);
        if (block.kind == kControlBlock) control = GetControlFields(block);
        if (block.kind != kImageBlock) continue;
        const ImageFields image = GetImageFields(block);
        const int left = PlaceOf(kClientWidth, image.width, screen.screenWidth, image.left);
        const int top = PlaceOf(kClientHeight, image.height, screen.screenHeight, image.top);
        const Picture under = shown;
        shown.Put(block.data, left, top, image.packed & kHasPalette ? block.palette : header.palette,
                  control.packed & kControlTransparent ? control.transparentIndex : kNoPixel,
                  image.packed & kImageInterlaced);
        if (index % 2) stage.Expose();
        ASSERT_EQ(Difference(shown, stage.Look()), "") << "block " << index << " shown";
        ASSERT_EQ(stage.Step(), WM_VIEWER_DELAY);
        if (control.delay > 0) stage.Tick();
        ASSERT_EQ(stage.Step(), WM_VIEWER_DISPOSE);
        const int disposal = control.packed >> 2 & 7;
        for (int y = std::max(top, 0); y < std::min(top + image.height, kClientHeight); ++y)
            for (int x = std::max(left, 0); x < std::min(left + image.width, kClientWidth); ++x)
                if (disposal == 2 || disposal == 3) shown.At(x, y) = disposal == 2 ? background : under.At(x, y);
        ASSERT_EQ(Difference(shown, stage.Look()), "") << "block " << index << " disposed of";
        ASSERT_EQ(stage.State().savedUnder, nullptr);
    }
}

// Plays with a key pressed during every image. For each image shown: its left edge, disposal, transparent index, and
// what is waited for before and after the key; then how many loops are left. At most `steps` messages run.
std::string TraceOf(ViewerStage& stage, int steps) {
    std::string trace;
    for (UINT message = 1; message && steps > 0; --steps) {
        message = stage.Step();
        if (message != WM_VIEWER_DELAY) continue;
        const ViewerState& state = stage.State();
        for (uint32_t field : {state.imageLeft, state.disposal, state.transparentIndex})
            trace += std::to_string(static_cast<int32_t>(field)) + ",";
        trace += std::to_string(pendingWait);
        SendMessageW(stage.Window(), WM_CHAR, ' ', 0);
        trace += ">" + std::to_string(pendingWait) + " ";
        if (state.delay == 0) continue;
        EXPECT_EQ(stage.Step(), 0u) << "the delay goes on whatever is pressed";
        stage.Tick();
        EXPECT_FALSE(stage.TimerRuns());
    }
    return trace + std::to_string(stage.State().loopsLeft);
}

ImageRequest ImageAt(uint16_t left) {
    return {left, 0, 9, 9};
}

}  // namespace

TEST(Viewer, CentresTheScreenAndKeepsTheImagesInTheirPlaces) {
    const struct {
        uint16_t screenWidth, screenHeight;
        ImageRequest image;
    } cases[] = {
        {41, 31, {5, 7, 10, 12}},   {40, 30, {35, 25, 20, 20}},  // reaching out
        {100, 90, {0, 0, 100, 90}}, {100, 90, {10, 5, 70, 60}}, {10, 10, {0, 0, 100, 90}}, {61, 50, {0, 0, 61, 50}},
        {1, 1, {0, 0, 1, 1, 1}},    {0, 0, {0, 0, 7, 6}},       {40, 30, {2, 2, 0, 9}},    {40, 30, {200, 200, 9, 9}},
    };
    for (const auto& c : cases)
        for (uint32_t disposal : {2u, 3u}) {
            SCOPED_TRACE(testing::Message() << "case " << &c - cases << ", disposal " << disposal);
            Animation animation(c.screenWidth, c.screenHeight);
            animation.Control(disposal, 1).Image(c.image);
            CheckPlaying(&animation);
        }
}

TEST(Viewer, ComposesPixelByPixel) {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        auto below = [&](unsigned limit) { return static_cast<uint16_t>(random() % limit); };
        auto screenWidth = below(80), screenHeight = below(60);
        Animation animation(screenWidth, screenHeight, below(8) != 0);
        for (int block = 0; block < 8; ++block) {
            if (below(2)) animation.Control(below(4) ? below(4) : below(8), below(3), below(2) ? below(16) : -1);
            const int depths[] = {1, 2, 4, 6, 8};
            animation.Image({below(50), below(40), below(70), below(20), depths[below(5)], below(2) != 0, below(2) != 0,
                             1 + below(50)});
            if (below(4) == 0) animation.Comment();
        }
        CheckPlaying(&animation);
    }
}

TEST(Viewer, ControlsAndLoopsDecideHowItGoesOn) {
    const struct {
        void (*fill)(Animation& document);
        int steps;
        const char* trace;
    } cases[] = {
        // A control stays in force until the next. A key ends only what waits for input.
        {[](Animation& document) {
             document.Control(3, 25, 7, true).Image(ImageAt(0)).Image(ImageAt(1)).Control(5, 0).Image(ImageAt(2));
         },
         99, "0,3,7,25>0 1,3,7,25>0 2,5,-1,0>0 -1"},
        {[](Animation& document) { document.Control(1, 0, -1, true).Image(ImageAt(0)); }, 99, "0,1,-1,1>0 -1"},
        {[](Animation& document) { document.Control(1, 5).Image(ImageAt(0)); }, 99, "0,1,-1,5>5 -1"},
        // Repeats begin at the third block and are never without a delay.
        {[](Animation& document) {
             document.Image(ImageAt(0)).Loop(2).Image(ImageAt(1)).Control(0, 0).Image(ImageAt(2)).Control(0, 7);
         },
         99, "0,0,-1,0>0 1,0,-1,1>1 2,0,-1,1>1 1,0,-1,7>7 2,0,-1,1>1 1,0,-1,7>7 2,0,-1,0>0 0"},
        {[](Animation& document) { document.Loop(1).Control(0, 2).Image(ImageAt(1)).Loop(9); }, 99,
         "1,0,-1,2>2 1,0,-1,2>2 0"},
        {[](Animation& document) { document.Loop(0).Comment(); }, 3, "32766"},
    };
    for (const auto& c : cases) {
        Animation animation(20, 20);
        c.fill(animation);
        ViewerStage stage(animation.List(), 30, 30);
        EXPECT_EQ(TraceOf(stage, c.steps), c.trace);
    }
}

TEST(Viewer, AnExposureAfterTheImageIsNotTakenForTheNextOne) {
    Animation animation(40, 30);
    animation.Control(3, 1).Image({0, 0, 20, 15}).Image({10, 5, 20, 15, 8, false, true, 4});
    ViewerStage stage(animation.List(), kClientWidth, kClientHeight);
    stage.Steps(3), stage.Tick(), stage.Step();
    stage.Expose();
    const Picture before = stage.Look();
    stage.Steps(2), stage.Tick();
    EXPECT_EQ(stage.Step(), WM_VIEWER_DISPOSE);
    EXPECT_EQ(Difference(before, stage.Look()), "");
}

TEST(Viewer, AnImageThatLeftTheDocumentIsNotPaintedAgain) {
    Animation animation(40, 30);
    animation.Image({0, 0, 40, 30});
    ViewerStage stage(animation.List(), kClientWidth, kClientHeight);
    EXPECT_EQ(stage.PlayToEnd(), 1);
    DestroyBlockList(animation.List());
    RedrawWindow(stage.Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    EXPECT_EQ(stage.Look().At(kClientWidth / 2, kClientHeight / 2), stage.State().backgroundColour);
}

TEST(Viewer, ARightClickOrEscapeClosesALeftClickDoesNot) {
    const struct {
        UINT message;
        WPARAM wParam;
        bool closes;
    } cases[] = {
        {WM_CHAR, 27, true},          {WM_RBUTTONDOWN, 0, true},  {WM_RBUTTONDBLCLK, 0, true},
        {WM_COMMAND, IDCANCEL, true}, {WM_LBUTTONDOWN, 0, false}, {WM_LBUTTONDBLCLK, 0, false},
        {WM_COMMAND, 13, false},      {WM_RBUTTONUP, 0, false},
    };
    for (const auto& c : cases) {
        Animation animation(20, 20);
        animation.Control(0, 5).Image(ImageAt(0));
        ViewerStage stage(animation.List(), 30, 30);
        stage.Steps(3);
        SendMessageW(stage.Window(), c.message, c.wParam, 0);
        EXPECT_EQ(!IsWindow(stage.Window()), c.closes) << c.message << ", " << c.wParam;
        EXPECT_EQ(pendingWait, c.closes ? 0 : 5) << c.message;
    }
}
