// Drawing images into memory device contexts, against what the same pixels should give one by one.
#include "windows/drawing/draw_image.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/faults.h"
#include "tests/gui/picture.h"
#include "windows/drawing/device_bitmaps.h"
#include "windows/drawing/screen_palette.h"
#include "windows/services/settings.h"

namespace {

constexpr COLORREF kGround = RGB(200, 100, 50);
constexpr int kWidth = 40, kHeight = 30;  // of the canvas

const Palette kOwn = ManyColours(1), kOthers = ManyColours(77);

MemoryHandle Sample(int width, int height, int depth) {
    return MakeImage(width, height, depth, kOwn, [=](int x, int y) {
        auto mixed = static_cast<uint32_t>(x * 5 + y * 11 + x * y);
        return depth == 24 ? mixed * 0x030507 & 0xFFFFFF : mixed % (1u << depth);
    });
}

MemoryHandle* toRelease;

// Runs while the drawing looks for the user's input.
LRESULT CALLBACK ReleaseImage(int, WPARAM, LPARAM) {
    *toRelease = nullptr;
    return 0;
}

enum Way { kStraight, kProgressive, kTransparent, kTransparentProgressive, kInverted, kInvertedResource };

// Draws so that the pixel (x, y) of the image comes to (0, 0); pixels of index 0 may be transparent.
bool Draw(int way, HDC dc, MemoryHandle* image, const RgbTriple* palette, int x, int y) {
    if (way == kInvertedResource)  // a loaded resource is the address of its bytes
        DrawResourceBitmap(dc, -x, -y, WriteLock(image).As<void>(), SRCINVERT);
    else if (way == kInverted)
        DrawImageBitmap(dc, -x, -y, *image, SRCINVERT);
    else if (way >= kTransparent)  // whose vertical offset has the other sense
        return DrawImageTransparent(dc, *image, x, -y, 0, way == kTransparentProgressive);
    else
        (way == kStraight ? DrawImageStraight : DrawImageProgressive)(dc, image, palette, x, y);
    return static_cast<bool>(*image);
}

}  // namespace

TEST(DrawImage, EqualsTheSamePixelsOneByOne) {
    constexpr RECT kCases[] = {{0, 0, 11, 1}, {0, 0, 7, 2},   {0, 0, 9, 3},   {0, 0, 33, 4}, {0, 0, 1, 5},
                               {0, 0, 19, 9}, {3, 0, 20, 12}, {2, 5, 20, 12}, {0, 0, 0, 9},  {0, 0, 9, 0}};
    settings.interlaceDelay = 0;
    for (const auto& [x, y, width, height] : kCases)
        for (int depth : {1, 4, 8, 24})
            for (int i = 0; i < 6 * 2; ++i) {
                const int way = i / 2;
                SCOPED_TRACE(testing::Message() << width << " x " << height << ", " << depth << " bits, way " << way);
                const bool transparent = way == kTransparent || way == kTransparentProgressive;
                const bool progressive = way == kProgressive || way == kTransparentProgressive;
                const RgbTriple* palette = i % 2 ? kOthers.Colours() : nullptr;
                const RgbTriple* colours = palette && way < kTransparent ? palette : kOwn;
                MemoryHandle image = Sample(width, height, depth), none;
                Picture expected(kWidth, kHeight, way < kInverted ? kGround : 0);
                expected.Put(image, -x, -y, colours, transparent ? 0 : kNoPixel, progressive);
                for (COLORREF& colour : expected.pixels) colour ^= way < kInverted ? 0 : kGround;
                Canvas canvas(kWidth, kHeight, kGround);
                SetTextColor(canvas.Dc(), RGB(1, 2, 3));
                faults.locksUntilFailure = 0;
                Draw(way, canvas.Dc(), &image, palette, x, y);  // nothing
                faults = {};
                EXPECT_TRUE(Draw(way, canvas.Dc(), &image, palette, x, y));
                EXPECT_FALSE(Draw(way, canvas.Dc(), &none, palette, x, y));
                EXPECT_EQ(Difference(expected, canvas.Look()), "");
                EXPECT_EQ(GetTextColor(canvas.Dc()), RGB(1, 2, 3));
                RgbTriples left = {};
                GetImagePalette(ImageLock(image), left);
                EXPECT_EQ(left[1], depth < 24 ? colours[1] : RgbTriple{}) << "the palette that later drawings see";
            }
}

TEST(DrawImage, ProgressiveHandlesKeysOfItsWindowAndEndsWellWhenTheImageIsReleased) {
    settings.interlaceDelay = UINT32_MAX;
    MemoryHandle image = Sample(11, 9, 8);
    HWND window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, kWidth, kHeight, nullptr, nullptr,
                                  nullptr, nullptr);
    UpdateWindow(window);
    for (HWND target : {HWND{nullptr}, window}) PostMessageW(target, WM_KEYDOWN, VK_SPACE, 0);
    PostMessageW(window, WM_CHAR, VK_ESCAPE, 0);  // the rest at once
    toRelease = &image;
    HHOOK hook = SetWindowsHookExW(WH_GETMESSAGE, ReleaseImage, nullptr, GetCurrentThreadId());
    {
        WindowDc dc(window);
        DrawImageProgressive(dc.Get(), &image, nullptr, 0, 0);
        for (int y : {0, 8}) EXPECT_EQ(GetPixel(dc.Get(), 0, y), ColourRef(kOwn[y * 11]));
    }
    UnhookWindowsHookEx(hook);
    EXPECT_FALSE(image);
    MSG message;
    EXPECT_TRUE(PeekMessageW(&message, reinterpret_cast<HWND>(-1), WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE))
        << "the key for no window";
    DestroyWindow(window);
}

TEST(DrawImage, ProgressiveWaitsASecondForARowAtMost) {
    settings.interlaceDelay = UINT32_MAX;
    MemoryHandle image = Sample(11, 1, 8);
    Canvas canvas(kWidth, kHeight, kGround);
    const DWORD start = GetTickCount();
    DrawImageProgressive(canvas.Dc(), &image, nullptr, 0, 0);
    EXPECT_GE(GetTickCount() - start, 1000u);
}

TEST(DeviceBitmaps, AreGrabbedCutToTheDevice) {
    Canvas canvas(kWidth, kHeight, kGround);
    MemoryHandle image = Sample(20, 15, 8);
    DrawImageStraight(canvas.Dc(), &image, nullptr, 0, 0);
    for (RECT nowhere : {RECT{3, 3, 3, 9}, {-9, 0, -1, 5}, {99999, 0, 100000, 5}})
        EXPECT_EQ(GrabScreenArea(canvas.Dc(), nowhere), nullptr) << nowhere.left;
    const int screenWidth = GetDeviceCaps(canvas.Dc(), HORZRES), screenHeight = GetDeviceCaps(canvas.Dc(), VERTRES);
    const std::pair<RECT, RECT> cases[] = {{{2, 3, 12, 9}, {2, 3, 12, 9}},
                                           {{-5, -7, 12, 9}, {0, 0, 12, 9}},
                                           {{0, 0, 99999, 4}, {0, 0, screenWidth, 4}},
                                           {{0, 0, 4, 99999}, {0, 0, 4, screenHeight}}};
    for (const auto& [area, cut] : cases) {
        HBITMAP grabbed = GrabScreenArea(canvas.Dc(), area);
        MemoryHandle made = ImageFromDeviceBitmap(canvas.Dc(), grabbed, kOwn);
        const auto [width, height, bitCount] = GetImageInfo(made).value_or(ImageInfo());
        EXPECT_EQ(width, cut.right - cut.left);
        EXPECT_EQ(height, cut.bottom - cut.top);
        Picture expected(std::min(width, kWidth), std::min(height, kHeight), kGround);
        expected.Put(image, -cut.left, -cut.top, kOwn, kNoPixel, false);
        Canvas drawn(expected.width, expected.height, 0);
        DrawImageStraight(drawn.Dc(), &made, nullptr, 0, 0);
        EXPECT_EQ(Difference(expected, drawn.Look()), "") << area.left;
        DeleteObject(grabbed);
    }
}

TEST(ScreenPalette, HoldsAsManyColoursAsTheBitCountOfItsDepth) {
    Canvas canvas(4, 4, 0);
    const UINT kEntries[] = {0, 2, 16, 16, 16, 256, 256, 256, 256, 0};
    for (int depth = 0; depth < 10; ++depth) {
        ScreenPalette screen;
        EXPECT_EQ(RealizeImagePalette(canvas.Dc(), kOwn, depth, &screen), kEntries[depth] != 0);
        EXPECT_EQ(screen.created ? GetPaletteEntries(screen.created, 0, 0, nullptr) : 0, kEntries[depth]) << depth;
        ReleaseImagePalette(canvas.Dc(), &screen);
        EXPECT_EQ(GetCurrentObject(canvas.Dc(), OBJ_PAL), GetStockObject(DEFAULT_PALETTE)) << depth;
    }
}
