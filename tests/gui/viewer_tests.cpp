// What the viewer shows of a document, and when it goes on.
#include <gtest/gtest.h>

#include <random>

#include "tests/gui/animation.h"
#include "tests/gui/viewer_stage.h"

namespace {

// Plays the document once, beside the model, and compares after every image and every disposal.
void PlayBesideModel(Animation* animation, int clientWidth, int clientHeight) {
    ViewerStage stage(animation->List(), clientWidth, clientHeight);
    ViewerModel model(*animation, clientWidth, clientHeight);
    ASSERT_EQ(Difference(model.Shown(), stage.Look()), "") << "before the first block";
    for (uint32_t index = 1; index < animation->List()->count; ++index) {
        ASSERT_EQ(stage.Step(), WM_VIEWER_NEXT);
        model.Play(animation->At(index));
        ASSERT_EQ(Difference(model.Shown(), stage.Look()), "") << "block " << index << " played";
        if (animation->At(index).kind != kImageBlock) continue;
        ASSERT_EQ(stage.Step(), WM_VIEWER_DELAY);
        if (stage.State().delay > 0) stage.Tick();
        ASSERT_EQ(stage.Step(), WM_VIEWER_DISPOSE);
        model.Dispose();
        ASSERT_EQ(Difference(model.Shown(), stage.Look()), "") << "block " << index << " disposed of";
    }
    EXPECT_EQ(stage.Step(), WM_VIEWER_NEXT);
    EXPECT_EQ(stage.Step(), 0u);
    EXPECT_EQ(Difference(model.Shown(), stage.Look()), "") << "the end";
}

constexpr int kClientWidth = 61;
constexpr int kClientHeight = 50;

}  // namespace

TEST(Viewer, CentresTheScreenAndKeepsTheImagesInTheirPlaces) {
    struct {
        uint16_t screenWidth, screenHeight;
        ImageRequest image;
    } const kCases[] = {
        {40, 30, {0, 0, 40, 30}},   {41, 31, {5, 7, 10, 12}},    {40, 30, {35, 25, 20, 20}},  // reaching out
        {100, 90, {0, 0, 100, 90}}, {100, 90, {30, 20, 20, 10}}, {100, 90, {10, 5, 70, 60}},
        {10, 10, {0, 0, 100, 90}},  {61, 50, {0, 0, 61, 50}},    {1, 1, {0, 0, 1, 1, 1}},
        {0, 0, {0, 0, 7, 6}},       {40, 30, {2, 2, 0, 9}},      {40, 30, {200, 200, 9, 9}},
    };
    for (const auto& given : kCases)
        for (uint32_t disposal : {2u, 3u}) {
            SCOPED_TRACE(testing::Message() << given.screenWidth << " x " << given.screenHeight << ", image "
                                            << given.image.width << " x " << given.image.height);
            Animation animation(given.screenWidth, given.screenHeight);
            animation.Control(disposal, 1).Image(given.image);
            PlayBesideModel(&animation, kClientWidth, kClientHeight);
        }
}

TEST(Viewer, ComposesWhatTheModelComposes) {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        auto below = [&](unsigned limit) { return random() % limit; };
        Animation animation(static_cast<uint16_t>(1 + below(80)), static_cast<uint16_t>(1 + below(60)), below(8) != 0);
        for (int block = 0; block < 8; ++block) {
            if (below(2))
                animation.Control(below(4) ? below(4) : below(8), static_cast<uint16_t>(below(3)),
                                  below(2) ? static_cast<int>(below(16)) : -1);
            const int depths[] = {1, 2, 4, 6, 8};
            animation.Image({static_cast<uint16_t>(below(50)), static_cast<uint16_t>(below(40)),
                             static_cast<int>(below(70)), static_cast<int>(below(20)), depths[below(5)], below(2) != 0,
                             below(2) != 0, static_cast<int>(1 + below(50))});
            if (below(4) == 0) animation.Comment();
        }
        PlayBesideModel(&animation, kClientWidth, kClientHeight);
    }
}

TEST(Viewer, AControlStaysInForceUntilTheNext) {
    Animation animation(20, 20);
    animation.Control(3, 25, 7, true).Image({0, 0, 9, 9}).Image({1, 1, 9, 9}).Control(5, 0).Image({2, 2, 9, 9});
    ViewerStage stage(animation.List(), 30, 30);
    stage.Step();
    EXPECT_EQ(stage.State().transparentIndex, 7u);
    EXPECT_EQ(stage.State().disposal, 3u);
    EXPECT_EQ(stage.State().delay, 25u);
    EXPECT_EQ(stage.State().waitForInput, 2u);
    for (int image = 0; image < 2; ++image) {
        EXPECT_EQ(stage.Step(), WM_VIEWER_NEXT);
        EXPECT_EQ(stage.State().imageLeft, static_cast<uint32_t>(image));
        EXPECT_EQ(stage.Step(), WM_VIEWER_DELAY);
        EXPECT_EQ(pendingWait, 25);
        EXPECT_EQ(stage.Step(), 0u);  // the timer runs
        stage.Tick();
        EXPECT_EQ(pendingWait, 0);
        EXPECT_FALSE(stage.TimerRuns());
        EXPECT_EQ(stage.Step(), WM_VIEWER_DISPOSE);
    }
    stage.Step();
    EXPECT_EQ(stage.State().transparentIndex, 0xFFFFFFFFu);
    EXPECT_EQ(stage.State().disposal, 5u);
    EXPECT_EQ(stage.State().waitForInput, 0u);
}

TEST(Viewer, WithoutADelayTheImageGoesAtOnce) {
    for (bool userInput : {false, true}) {
        Animation animation(20, 20);
        animation.Control(1, 0, -1, userInput).Image({0, 0, 9, 9});
        ViewerStage stage(animation.List(), 30, 30);
        stage.Step(), stage.Step();
        EXPECT_EQ(stage.Step(), WM_VIEWER_DELAY);
        EXPECT_EQ(pendingWait, userInput ? 1 : 0);
        EXPECT_FALSE(stage.TimerRuns());
        SendMessageW(stage.Window(), WM_CHAR, ' ', 0);
        EXPECT_EQ(pendingWait, 0);
        EXPECT_EQ(stage.Step(), WM_VIEWER_DISPOSE);
    }
}

TEST(Viewer, AKeyDoesNotShortenADelay) {
    Animation animation(20, 20);
    animation.Control(1, 50, -1, true).Image({0, 0, 9, 9});
    ViewerStage stage(animation.List(), 30, 30);
    stage.Step(), stage.Step(), stage.Step();
    SendMessageW(stage.Window(), WM_CHAR, ' ', 0);
    EXPECT_EQ(stage.Step(), 0u);
    EXPECT_TRUE(stage.TimerRuns());
}

TEST(Viewer, ALoopNeverRunsWithoutADelay) {
    Animation animation(20, 20);
    animation.Image({0, 0, 9, 9}).Loop(2).Image({0, 0, 9, 9}).Control(0, 0).Image({0, 0, 9, 9}).Control(0, 7);
    ViewerStage stage(animation.List(), 30, 30);
    stage.Step();
    EXPECT_EQ(stage.State().delay, 0u);
    stage.Step(), stage.Step();
    EXPECT_EQ(stage.Step(), WM_VIEWER_NEXT);  // the loop
    EXPECT_EQ(stage.State().delay, 1u);
    stage.Step(), stage.Step(), stage.Tick(), stage.Step();
    EXPECT_EQ(stage.Step(), WM_VIEWER_NEXT);  // the control without a delay
    EXPECT_EQ(stage.State().delay, 1u);
    stage.Step(), stage.Step(), stage.Tick(), stage.Step();
    stage.Step();
    EXPECT_EQ(stage.State().delay, 7u);
}

TEST(Viewer, RepeatsFromTheThirdBlockAsOftenAsTheFirstLoopSays) {
    struct {
        uint16_t iterations;
        int loopsLeft;
        int images;
    } const kCases[] = {{1, 1, 2 + 1}, {3, 3, 2 + 3}};
    for (const auto& given : kCases) {
        Animation animation(20, 20);
        // The first image is not repeated: the repeats begin at index 2 whatever stands before.
        animation.Image({0, 0, 9, 9}).Loop(given.iterations).Control(0, 1).Image({1, 1, 9, 9}).Loop(99);
        ViewerStage stage(animation.List(), 30, 30);
        stage.Step(), stage.Step(), stage.Step();
        EXPECT_EQ(stage.Step(), WM_VIEWER_NEXT);
        EXPECT_EQ(stage.State().loopsLeft, given.loopsLeft);
        EXPECT_EQ(stage.PlayToEnd() + 1, given.images);
        EXPECT_EQ(stage.State().loopsLeft, 0);
    }
}

TEST(Viewer, ALoopOfZeroIsMeantToBeEndless) {
    Animation animation(20, 20);
    animation.Loop(0).Comment();
    ViewerStage stage(animation.List(), 30, 30);
    stage.Step();
    EXPECT_EQ(stage.State().loopsLeft, 32767);
    stage.Step();
    EXPECT_EQ(stage.Step(), WM_VIEWER_NEXT);  // finds the end
    EXPECT_EQ(stage.State().loopsLeft, 32766);
    EXPECT_EQ(stage.State().nextIndex, 2u);
}

TEST(Viewer, AnExposureKeepsWhatLayUnderTheImage) {
    Animation animation(40, 30);
    animation.Control(1, 1).Image({0, 0, 40, 30}).Control(3, 1).Image({5, 5, 20, 15, 8, false, true, 4});
    ViewerStage stage(animation.List(), kClientWidth, kClientHeight);
    stage.Step(), stage.Step(), stage.Step(), stage.Tick(), stage.Step();
    Picture before = stage.Look();
    stage.Step(), stage.Step();
    InvalidateRect(stage.Window(), nullptr, FALSE);
    UpdateWindow(stage.Window());
    stage.Step(), stage.Tick();
    EXPECT_EQ(stage.Step(), WM_VIEWER_DISPOSE);
    EXPECT_EQ(Difference(before, stage.Look()), "");
    EXPECT_EQ(stage.State().savedUnder, nullptr);
}

TEST(Viewer, AnExposureAfterTheImageIsNotTakenForTheNextOne) {
    Animation animation(40, 30);
    animation.Control(3, 1).Image({0, 0, 20, 15}).Image({10, 5, 20, 15, 8, false, true, 4});
    ViewerStage stage(animation.List(), kClientWidth, kClientHeight);
    stage.Step(), stage.Step(), stage.Step(), stage.Tick(), stage.Step();
    InvalidateRect(stage.Window(), nullptr, FALSE);
    UpdateWindow(stage.Window());
    Picture before = stage.Look();
    stage.Step(), stage.Step(), stage.Tick();
    EXPECT_EQ(stage.Step(), WM_VIEWER_DISPOSE);
    EXPECT_EQ(Difference(before, stage.Look()), "");
}

TEST(Viewer, AnImageThatLeftTheDocumentIsNotPaintedAgain) {
    Animation animation(40, 30);
    animation.Image({0, 0, 40, 30});
    ViewerStage stage(animation.List(), kClientWidth, kClientHeight);
    stage.PlayToEnd();
    DestroyBlockList(animation.List());
    InvalidateRect(stage.Window(), nullptr, TRUE);
    UpdateWindow(stage.Window());
    EXPECT_EQ(stage.Look().At(kClientWidth / 2, kClientHeight / 2), stage.State().backgroundColour);
}

TEST(Viewer, ARightClickOrEscapeClosesALeftClickDoesNot) {
    struct {
        UINT message;
        WPARAM wParam;
        bool closes;
    } const kCases[] = {
        {WM_CHAR, 27, true},          {WM_RBUTTONDOWN, 0, true}, {WM_RBUTTONDBLCLK, 0, true},
        {WM_COMMAND, IDCANCEL, true}, {WM_CHAR, ' ', false},     {WM_LBUTTONDOWN, 0, false},
        {WM_LBUTTONDBLCLK, 0, false}, {WM_COMMAND, 13, false},   {WM_RBUTTONUP, 0, false},
    };
    for (const auto& given : kCases) {
        Animation animation(20, 20);
        animation.Control(0, 5).Image({0, 0, 9, 9});
        ViewerStage stage(animation.List(), 30, 30);
        stage.Step(), stage.Step(), stage.Step();
        EXPECT_EQ(pendingWait, 5);
        SendMessageW(stage.Window(), given.message, given.wParam, 0);
        EXPECT_EQ(!IsWindow(stage.Window()), given.closes) << given.message << ", " << given.wParam;
        EXPECT_EQ(pendingWait, given.closes ? 0 : 5) << given.message;
    }
}
