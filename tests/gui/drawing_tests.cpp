// Drawing images into memory device contexts, against what the same pixels should give one by one.
#include "imaging/draw/draw_image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "imaging/draw/device_bitmaps.h"
#include "gif/interlace.h"
#include "imaging/draw/progressive_reveal.h"
#include "imaging/draw/screen_palette.h"
#include "tests/gui/picture.h"

namespace {

constexpr COLORREF kGround = RGB(200, 100, 50);
constexpr int kCanvasWidth = 40;
constexpr int kCanvasHeight = 30;
constexpr int kDepths[] = {1, 4, 8, 24};

struct Colours {
    explicit Colours(int seed) {
        for (int i = 0; i < kPaletteEntries; ++i)
            entries[i] = {static_cast<uint8_t>(i * 37 + seed), static_cast<uint8_t>(i * 91 + 2 * seed),
                          static_cast<uint8_t>(255 - i - seed)};
    }
    RgbTriples entries;
};

// Values that fit the depth; at 24 bits colours.
uint32_t SamplePixel(int x, int y, int depth) {
    auto mixed = static_cast<uint32_t>(x * 5 + y * 11 + x * y);
    return depth == 24 ? mixed * 0x030507 & 0xFFFFFF : mixed % (1u << depth);
}

class SampleImage {
public:
    SampleImage(int width, int height, int depth, const RgbTriple* colours)
        : width_(width),
          height_(height),
          depth_(depth),
          image_(MakeImage(width, height, depth, colours, [=](int x, int y) { return SamplePixel(x, y, depth); })) {}

    MemoryHandle Get() const { return image_.Get(); }
    void Release() { image_.Reset(nullptr); }
    COLORREF ColourAt(int x, int y, const RgbTriple* colours) const {
        uint32_t pixel = SamplePixel(x, y, depth_);
        return depth_ == 24 ? pixel : ColourRef(colours[pixel]);
    }
    // The image at (0, 0) of the ground, its rows limited to those that `shows` wants.
    template <typename Shows>
    Picture Expected(const RgbTriple* colours, int xSource, int ySource, Shows shows) const {
        Picture picture(kCanvasWidth, kCanvasHeight, kGround);
        for (int y = 0; y < height_; ++y)
            for (int x = 0; x < width_; ++x)
                if (shows(x + xSource, y + ySource, y)) picture.Set(x, y, ColourAt(x + xSource, y + ySource, colours));
        return picture;
    }
    bool Has(int x, int y) const { return x >= 0 && y >= 0 && x < width_ && y < height_; }
    int Depth() const { return depth_; }

private:
    int width_, height_, depth_;
    OwnedMemory image_;
};

// The rows that the reveal of an image never reaches, straight from its row sequence.
bool RevealReaches(int row, int height) {
    static const char* const kMissing[] = {"", "", "1", "1", "3"};
    return height > 4 || std::string(kMissing[height]).find(static_cast<char>('0' + row)) == std::string::npos;
}

LRESULT CALLBACK ReleaseWhenAsked(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_APP) reinterpret_cast<SampleImage*>(GetWindowLongPtrW(window, GWLP_USERDATA))->Release();
    return DefWindowProcW(window, message, wParam, lParam);
}

RgbTriple FirstColour(MemoryHandle image) {
    RgbTriples colours = {};
    GetImageInfo(image, nullptr, nullptr, nullptr, colours);
    return colours[0];
}

}  // namespace

TEST(RowWalk, FollowsTheFourPasses) {
    struct {
        int height;
        std::vector<int> rows;
    } const kCases[] = {
        {1, {0}},
        {2, {0, 4}},
        {3, {0, 4, 2}},
        {4, {0, 4, 2, 1}},
        {5, {0, 4, 2, 1, 3}},
        {8, {0, 4, 2, 6, 1, 3, 5, 7}},
        {9, {0, 8, 4, 2, 6, 1, 3, 5, 7}},
        {17, {0, 8, 16, 4, 12, 2, 6, 10, 14, 1, 3, 5, 7, 9, 11, 13, 15}},
    };
    for (const auto& given : kCases) {
        RowWalk order(given.height, true);
        std::vector<int> rows;
        for (int turn = 0; turn < given.height; ++turn, order.Advance()) rows.push_back(order.Row());
        EXPECT_EQ(rows, given.rows) << given.height;
    }
}

TEST(DrawImage, StraightUsesItsOwnColoursOrAdoptsOthers) {
    const Colours own(1), others(77);
    for (int depth : kDepths)
        for (int width : {1, 7, 33})
            for (bool adopts : {false, true}) {
                SCOPED_TRACE(testing::Message() << depth << " bits, width " << width << ", adopts " << adopts);
                SampleImage image(width, 9, depth, own.entries);
                const RgbTriple* colours = adopts ? others.entries : own.entries;
                Canvas canvas(kCanvasWidth, kCanvasHeight, kGround);
                DrawImageStraight(canvas.Dc(), image.Get(), adopts ? others.entries : nullptr, 0, 0);
                auto everywhere = [](int, int, int) { return true; };
                EXPECT_EQ(Difference(image.Expected(colours, 0, 0, everywhere), canvas.Look()), "");
                if (depth < 24) {
                    EXPECT_EQ(FirstColour(image.Get()), colours[0]);
                }
            }
}

TEST(DrawImage, StraightAndProgressiveScroll) {
    const Colours colours(5);
    using Draw = void (*)(HDC, MemoryHandle, const RgbTriple*, int, int);
    for (Draw draw : {DrawImageStraight, DrawImageProgressive})
        for (auto [x, y] : {std::pair{3, 0}, {0, 4}, {2, 5}}) {
            SCOPED_TRACE(testing::Message() << x << ", " << y);
            SampleImage image(20, 12, 8, colours.entries);
            Canvas canvas(kCanvasWidth, kCanvasHeight, kGround);
            draw(canvas.Dc(), image.Get(), nullptr, x, y);
            auto inside = [&](int column, int row, int) { return image.Has(column, row); };
            EXPECT_EQ(Difference(image.Expected(colours.entries, x, y, inside), canvas.Look()), "");
        }
}

TEST(DrawImage, ProgressiveLacksRowsOfLowImages) {
    const Colours own(1), others(60);
    for (int depth : kDepths)
        for (int height = 1; height <= 9; ++height) {
            SCOPED_TRACE(testing::Message() << depth << " bits, height " << height);
            SampleImage image(11, height, depth, own.entries);
            Canvas canvas(kCanvasWidth, kCanvasHeight, kGround);
            DrawImageProgressive(canvas.Dc(), image.Get(), others.entries, 0, 0);
            auto reached = [=](int, int, int row) { return RevealReaches(row, height); };
            EXPECT_EQ(Difference(image.Expected(others.entries, 0, 0, reached), canvas.Look()), "");
            if (depth < 24) {
                EXPECT_EQ(FirstColour(image.Get()), others.entries[0]);
            }
        }
}

TEST(DrawImage, TransparentLeavesTheGroundWhereItsIndexIs) {
    const Colours own(1), others(60);
    for (int depth : kDepths)
        for (bool interlaced : {false, true})
            for (int height : {1, 3, 4, 8, 13})
                for (uint32_t index : {0u, 1u, SamplePixel(2, 0, depth), 300u}) {
                    SCOPED_TRACE(testing::Message() << depth << " bits, height " << height << ", index " << index
                                                    << ", interlaced " << interlaced);
                    SampleImage image(19, height, depth, own.entries);
                    Canvas canvas(kCanvasWidth, kCanvasHeight, kGround);
                    SetTextColor(canvas.Dc(), RGB(1, 2, 3));
                    SetBkColor(canvas.Dc(), RGB(4, 5, 6));
                    EXPECT_TRUE(DrawImageTransparent(canvas.Dc(), nullptr, image.Get(), others.entries, 0, 0, index,
                                                     interlaced));
                    auto opaque = [&](int x, int y, int row) {
                        return SamplePixel(x, y, depth) != index && (!interlaced || RevealReaches(row, height));
                    };
                    EXPECT_EQ(Difference(image.Expected(own.entries, 0, 0, opaque), canvas.Look()), "");
                    EXPECT_EQ(GetTextColor(canvas.Dc()), RGB(1, 2, 3));
                    if (depth < 24) {
                        EXPECT_EQ(FirstColour(image.Get()), own.entries[0]);
                    }
                }
}

TEST(DrawImage, TransparentScrollsTheOtherWayDown) {
    const Colours colours(9);
    for (bool interlaced : {false, true}) {
        SampleImage image(19, 12, 8, colours.entries);
        Canvas canvas(kCanvasWidth, kCanvasHeight, kGround);
        EXPECT_TRUE(DrawImageTransparent(canvas.Dc(), nullptr, image.Get(), nullptr, 3, 2, 0, interlaced));
        auto opaque = [&](int x, int y, int) { return image.Has(x, y) && SamplePixel(x, y, 8) != 0; };
        EXPECT_EQ(Difference(image.Expected(colours.entries, 3, -2, opaque), canvas.Look()), "") << interlaced;
    }
}

TEST(DrawImage, NothingComesOfImagesWithoutPixelsOrMemory) {
    const Picture untouched(kCanvasWidth, kCanvasHeight, kGround);
    for (auto [width, height] : {std::pair{0, 9}, {9, 0}, {0, 0}})
        for (int depth : kDepths) {
            OwnedMemory image(CreateImageBitmap(width, height, nullptr, depth));
            Canvas canvas(kCanvasWidth, kCanvasHeight, kGround);
            DrawImageStraight(canvas.Dc(), image.Get(), nullptr, 0, 0);
            DrawImageProgressive(canvas.Dc(), image.Get(), nullptr, 0, 0);
            EXPECT_TRUE(DrawImageTransparent(canvas.Dc(), nullptr, image.Get(), nullptr, 0, 0, 0, false));
            EXPECT_TRUE(DrawImageTransparent(canvas.Dc(), nullptr, image.Get(), nullptr, 0, 0, 0, true));
            DrawImageBitmap(canvas.Dc(), 0, 0, image.Get(), SRCCOPY);
            EXPECT_EQ(Difference(untouched, canvas.Look()), "") << width << " x " << height << ", " << depth << " bits";
        }
    Canvas canvas(kCanvasWidth, kCanvasHeight, kGround);
    DrawImageStraight(canvas.Dc(), nullptr, nullptr, 0, 0);
    DrawImageProgressive(canvas.Dc(), nullptr, nullptr, 0, 0);
    DrawImageBitmap(canvas.Dc(), 0, 0, nullptr, SRCCOPY);
    EXPECT_FALSE(DrawImageTransparent(canvas.Dc(), nullptr, nullptr, nullptr, 0, 0, 0, false));
    EXPECT_EQ(Difference(untouched, canvas.Look()), "");
}

TEST(DrawImage, ProgressiveLeavesTheEscapeToItsOwner) {
    PostMessageW(nullptr, WM_KEYDOWN, VK_ESCAPE, 0);
    SampleImage image(11, 9, 8, Colours(1).entries);
    Canvas canvas(kCanvasWidth, kCanvasHeight, kGround);
    DrawImageProgressive(canvas.Dc(), image.Get(), nullptr, 0, 0);
    EXPECT_EQ(Difference(image.Expected(Colours(1).entries, 0, 0, [](int, int, int) { return true; }), canvas.Look()),
              "");
    MSG message;
    ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE));
    EXPECT_EQ(message.wParam, WPARAM{VK_ESCAPE});
}

TEST(DrawImage, ProgressiveEndsWhenTheImageIsReleased) {
    constexpr int kHeight = 400;
    SampleImage image(11, kHeight, 8, Colours(1).entries);
    HWND window =
        CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, GetModuleHandleW(nullptr), nullptr);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&image));
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ReleaseWhenAsked));
    std::thread other([=] { SendMessageW(window, WM_APP, 0, 0); });
    Canvas canvas(kCanvasWidth, kHeight, kGround);
    DrawImageProgressive(canvas.Dc(), image.Get(), nullptr, 0, 0);
    EXPECT_EQ(canvas.Look().At(0, kHeight - 1), kGround);  // the last row of the last pass
    MSG message;
    while (image.Get()) PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);  // lets the other thread end
    other.join();
    DestroyWindow(window);
}

TEST(DrawImageBitmap, CombinesByTheRasterOperation) {
    const Colours colours(3);
    for (int depth : kDepths)
        for (DWORD operation : {DWORD{SRCCOPY}, DWORD{SRCAND}, DWORD{SRCINVERT}}) {
            SampleImage image(9, 6, depth, colours.entries);
            Canvas canvas(kCanvasWidth, kCanvasHeight, kGround);
            DrawImageBitmap(canvas.Dc(), 4, 5, image.Get(), operation);
            Picture expected(kCanvasWidth, kCanvasHeight, kGround);
            for (int y = 0; y < 6; ++y)
                for (int x = 0; x < 9; ++x) {
                    COLORREF colour = image.ColourAt(x, y, colours.entries);
                    expected.Set(x + 4, y + 5,
                                 operation == SRCCOPY  ? colour
                                 : operation == SRCAND ? colour & kGround
                                                       : colour ^ kGround);
                }
            EXPECT_EQ(Difference(expected, canvas.Look()), "") << depth << " bits, " << operation;
        }
}

TEST(DrawImageBitmap, DrawsResourcesTheSame) {
    SampleImage image(9, 6, 4, Colours(3).entries);
    Canvas drawn(kCanvasWidth, kCanvasHeight, kGround), expected(kCanvasWidth, kCanvasHeight, kGround);
    MemoryLock lock(image.Get());  // a loaded resource is the address of its bytes
    DrawResourceBitmap(drawn.Dc(), 2, 3, lock.Bytes(), SRCCOPY);
    DrawImageBitmap(expected.Dc(), 2, 3, image.Get(), SRCCOPY);
    EXPECT_EQ(Difference(expected.Look(), drawn.Look()), "");
    DrawResourceBitmap(drawn.Dc(), 0, 0, nullptr, SRCCOPY);
    EXPECT_EQ(Difference(expected.Look(), drawn.Look()), "");
}

TEST(DeviceBitmaps, AreGrabbedCutToTheDevice) {
    Canvas canvas(kCanvasWidth, kCanvasHeight, kGround);
    SampleImage image(20, 15, 8, Colours(1).entries);
    DrawImageStraight(canvas.Dc(), image.Get(), nullptr, 0, 0);
    const int screenWidth = GetDeviceCaps(canvas.Dc(), HORZRES), screenHeight = GetDeviceCaps(canvas.Dc(), VERTRES);
    struct {
        RECT area;
        SIZE size;  // of what is grabbed; 0: nothing
    } const kCases[] = {
        {{2, 3, 12, 9}, {10, 6}},
        {{-5, -7, 12, 9}, {12, 9}},
        {{0, 0, 99999, 4}, {screenWidth, 4}},
        {{0, 0, 4, 99999}, {4, screenHeight}},
        {{3, 3, 3, 9}, {}},
        {{5, 5, 4, 9}, {}},
        {{-9, 0, -1, 5}, {}},
        {{99999, 0, 100000, 5}, {}},
    };
    for (const auto& given : kCases) {
        HBITMAP grabbed = GrabScreenArea(canvas.Dc(), given.area);
        ASSERT_EQ(grabbed != nullptr, given.size.cx != 0) << given.area.left;
        if (!grabbed) continue;
        BITMAP size;
        GetObjectW(grabbed, sizeof size, &size);
        EXPECT_EQ(size.bmWidth, given.size.cx);
        EXPECT_EQ(size.bmHeight, given.size.cy);
        Canvas copy(kCanvasWidth, kCanvasHeight, kGround);
        EXPECT_TRUE(DrawDeviceBitmap(copy.Dc(), 0, 0, grabbed));
        const LONG left = std::max(given.area.left, LONG{0}), top = std::max(given.area.top, LONG{0});
        EXPECT_EQ(copy.Look().At(1, 2), canvas.Look().At(left + 1, top + 2));
        DeleteObject(grabbed);
    }
    EXPECT_FALSE(DrawDeviceBitmap(canvas.Dc(), 0, 0, nullptr));
}

TEST(DeviceBitmaps, BecomeImages) {
    Canvas canvas(kCanvasWidth, kCanvasHeight, kGround);
    SampleImage image(20, 15, 8, Colours(1).entries);
    DrawImageStraight(canvas.Dc(), image.Get(), nullptr, 0, 0);
    HBITMAP grabbed = GrabScreenArea(canvas.Dc(), {0, 0, kCanvasWidth, kCanvasHeight});
    OwnedMemory made(ImageFromDeviceBitmap(canvas.Dc(), grabbed, Colours(1).entries));
    DeleteObject(grabbed);
    int bitCount = 0;
    ASSERT_TRUE(GetImageInfo(made.Get(), nullptr, nullptr, &bitCount, nullptr));
    EXPECT_EQ(bitCount, 24);
    Canvas drawn(kCanvasWidth, kCanvasHeight, 0);
    DrawImageStraight(drawn.Dc(), made.Get(), nullptr, 0, 0);
    EXPECT_EQ(Difference(canvas.Look(), drawn.Look()), "");
    EXPECT_EQ(ImageFromDeviceBitmap(canvas.Dc(), nullptr, nullptr), nullptr);
}

TEST(DeviceBitmaps, OfOneBitTakeTheGivenColours) {
    const uint16_t kRows[] = {0x00A0, 0x0040};  // 1 0 1 / 0 1 0
    HBITMAP monochrome = CreateBitmap(3, 2, 1, 1, kRows);
    const RgbTriple kRedAndBlue[] = {{255, 0, 0}, {0, 0, 255}};
    Canvas canvas(3, 2, 0);
    OwnedMemory made(ImageFromDeviceBitmap(canvas.Dc(), monochrome, kRedAndBlue));
    DeleteObject(monochrome);
    DrawImageStraight(canvas.Dc(), made.Get(), nullptr, 0, 0);
    const COLORREF red = RGB(255, 0, 0), blue = RGB(0, 0, 255);
    EXPECT_EQ(canvas.Look().pixels, (std::vector<COLORREF>{blue, red, blue, red, blue, red}));
}

TEST(ScreenPalette, HoldsAsManyColoursAsTheBitCountOfItsDepth) {
    const Colours colours(1);
    Canvas canvas(4, 4, 0);
    const UINT kEntries[] = {0, 2, 16, 16, 16, 256, 256, 256, 256, 0};
    for (int depth = 0; depth < 10; ++depth) {
        ScreenPalette screen;
        EXPECT_EQ(RealizeImagePalette(canvas.Dc(), colours.entries, depth, &screen), kEntries[depth] != 0);
        UINT entries = screen.created ? GetPaletteEntries(screen.created, 0, 0, nullptr) : 0;
        EXPECT_EQ(entries, kEntries[depth]) << depth;
        ReleaseImagePalette(canvas.Dc(), &screen);
        EXPECT_TRUE(!screen.record && !screen.previous && !screen.created) << depth;
        EXPECT_EQ(GetCurrentObject(canvas.Dc(), OBJ_PAL), GetStockObject(DEFAULT_PALETTE)) << depth;
    }
}
