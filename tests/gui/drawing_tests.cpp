// Drawing images into memory device contexts, against what the same pixels should give one by one.
#include "imaging/draw/draw_image.h"

#include <gtest/gtest.h>

#include <thread>

#include "imaging/draw/device_bitmaps.h"
#include "imaging/draw/screen_palette.h"
#include "tests/gui/picture.h"

namespace {

constexpr COLORREF kGround = RGB(200, 100, 50);
constexpr int kWidth = 40, kHeight = 30;  // of the canvas
constexpr int kDepths[] = {1, 4, 8, 24};

struct Colours {
    explicit Colours(int seed) {
        for (int i = 0; i < kPaletteEntries; ++i)
            entries[i] = {static_cast<uint8_t>(i * 37 + seed), static_cast<uint8_t>(i * 91 + 2 * seed),
                          static_cast<uint8_t>(255 - i - seed)};
    }
    RgbTriples entries;
};
const Colours kOwn(1), kOthers(77);

// Values that fit the depth; at 24 bits colours.
uint32_t SamplePixel(int x, int y, int depth) {
    auto mixed = static_cast<uint32_t>(x * 5 + y * 11 + x * y);
    return depth == 24 ? mixed * 0x030507 & 0xFFFFFF : mixed % (1u << depth);
}

MemoryHandle Sample(int width, int height, int depth) {
    return MakeImage(width, height, depth, kOwn.entries, [=](int x, int y) { return SamplePixel(x, y, depth); });
}

LRESULT CALLBACK ReleaseWhenAsked(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_APP) reinterpret_cast<OwnedMemory*>(GetWindowLongPtrW(window, GWLP_USERDATA))->Reset(nullptr);
    return DefWindowProcW(window, message, wParam, lParam);
}

enum Way { kStraight, kProgressive, kTransparent, kTransparentProgressive };

// Draws so that the pixel (x, y) of the image comes to (0, 0).
bool Draw(Way way, HDC dc, MemoryHandle image, const RgbTriple* palette, int x, int y, uint32_t transparent) {
    if (way >= kTransparent)  // whose vertical offset has the other sense
        return DrawImageTransparent(dc, nullptr, image, palette, x, -y, transparent, way == kTransparentProgressive);
    (way == kStraight ? DrawImageStraight : DrawImageProgressive)(dc, image, palette, x, y);
    return image != nullptr;
}
constexpr Way kWays[] = {kStraight, kProgressive, kTransparent, kTransparentProgressive};

}  // namespace

TEST(DrawImage, EqualsTheSamePixelsOneByOne) {
    const struct {
        int width, height, x, y;
        bool hasPalette;
        uint32_t transparent;  // an index, or for 0 one that occurs in every image
    } cases[] = {
        {11, 1, 0, 0, true, 0},  {7, 2, 0, 0, false, 300}, {9, 3, 0, 0, true, 0},
        {33, 4, 0, 0, true, 1},  {1, 5, 0, 0, false, 0},   {19, 9, 0, 0, true, 0},
        {20, 12, 3, 0, true, 0}, {20, 12, 0, 4, false, 1}, {20, 12, 2, 5, true, 0},
    };
    InstantReveal instantReveal;
    for (const auto& c : cases)
        for (int depth : kDepths)
            for (Way way : kWays) {
                SCOPED_TRACE(testing::Message() << "case " << &c - cases << ", " << depth << " bits, way " << way);
                const bool transparent = way >= kTransparent, progressive = way % 2;
                const uint32_t index = c.transparent ? c.transparent : SamplePixel(0, 0, depth);
                const RgbTriple* colours = c.hasPalette && !transparent ? kOthers.entries : kOwn.entries;
                OwnedMemory image(Sample(c.width, c.height, depth));
                Picture expected(kWidth, kHeight, kGround);
                expected.Put(image.Get(), -c.x, -c.y, colours, transparent ? index : kNoPixel, progressive);
                Canvas canvas(kWidth, kHeight, kGround);
                SetTextColor(canvas.Dc(), RGB(1, 2, 3));
                SetBkColor(canvas.Dc(), RGB(4, 5, 6));
                const RgbTriple* palette = c.hasPalette ? kOthers.entries : nullptr;
                EXPECT_TRUE(Draw(way, canvas.Dc(), image.Get(), palette, c.x, c.y, index));
                EXPECT_EQ(Difference(expected, canvas.Look()), "");
                EXPECT_EQ(GetTextColor(canvas.Dc()), RGB(1, 2, 3));
                RgbTriples left = {};
                GetImageInfo(image.Get(), nullptr, nullptr, nullptr, left);
                EXPECT_EQ(left[1], depth < 24 ? colours[1] : RgbTriple{}) << "the palette that later drawings see";
            }
}

TEST(DrawImage, NothingComesOfImagesWithoutPixelsOrMemory) {
    Canvas canvas(kWidth, kHeight, kGround);
    OwnedMemory none;
    for (int depth : kDepths) {
        OwnedMemory narrow(Sample(0, 9, depth)), low(Sample(9, 0, depth));
        for (MemoryHandle image : {narrow.Get(), low.Get(), none.Get()}) {
            for (Way way : kWays)
                EXPECT_EQ(Draw(way, canvas.Dc(), image, nullptr, 0, 0, 0), image != nullptr) << way << depth;
            DrawImageBitmap(canvas.Dc(), 0, 0, image, SRCCOPY);
        }
    }
    DrawResourceBitmap(canvas.Dc(), 0, 0, nullptr, SRCCOPY);
    EXPECT_EQ(Difference(Picture(kWidth, kHeight, kGround), canvas.Look()), "");
}

TEST(DrawImage, ProgressiveLeavesTheEscapeToItsOwner) {
    PostMessageW(nullptr, WM_KEYDOWN, VK_ESCAPE, 0);
    OwnedMemory image(Sample(11, 9, 8));
    Canvas canvas(kWidth, kHeight, kGround);
    DrawImageProgressive(canvas.Dc(), image.Get(), nullptr, 0, 0);
    EXPECT_EQ(canvas.Look().At(0, 7), ColourRef(kOwn.entries[SamplePixel(0, 7, 8)])) << "the last row to come";
    MSG message;
    ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE));
    EXPECT_EQ(message.wParam, WPARAM{VK_ESCAPE});
}

TEST(DrawImage, ProgressiveEndsWhenTheImageIsReleased) {
    constexpr int kManyRows = 400;
    OwnedMemory image(Sample(11, kManyRows, 8));
    HWND window =
        CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, GetModuleHandleW(nullptr), nullptr);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&image));
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ReleaseWhenAsked));
    std::thread other([=] { SendMessageW(window, WM_APP, 0, 0); });
    Canvas canvas(kWidth, kManyRows, kGround);
    DrawImageProgressive(canvas.Dc(), image.Get(), nullptr, 0, 0);
    EXPECT_EQ(canvas.Look().At(0, kManyRows - 1), kGround);  // the last row of the last pass
    MSG message;
    while (image) PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);  // lets the other thread end
    other.join();
    DestroyWindow(window);
}

TEST(DrawImageBitmap, CombinesByTheRasterOperationAlsoFromResources) {
    for (int depth : kDepths)
        for (DWORD operation : {DWORD{SRCCOPY}, DWORD{SRCAND}, DWORD{SRCINVERT}}) {
            OwnedMemory image(Sample(9, 6, depth));
            Picture expected(kWidth, kHeight, kGround);
            expected.Put(image.Get(), 4, 5, kOwn.entries, kNoPixel, false);
            for (int i = 0; i < 9 * 6; ++i) {
                COLORREF& colour = expected.At(4 + i % 9, 5 + i / 9);
                if (operation != SRCCOPY) colour = operation == SRCAND ? colour & kGround : colour ^ kGround;
            }
            Canvas canvas(kWidth, kHeight, kGround), fromResource(kWidth, kHeight, kGround);
            DrawImageBitmap(canvas.Dc(), 4, 5, image.Get(), operation);
            MemoryLock lock(image.Get());  // a loaded resource is the address of its bytes
            DrawResourceBitmap(fromResource.Dc(), 4, 5, lock.Bytes(), operation);
            EXPECT_EQ(Difference(expected, canvas.Look()), "") << depth << " bits, " << operation;
            EXPECT_EQ(Difference(expected, fromResource.Look()), "") << depth << " bits, " << operation;
        }
}

TEST(DeviceBitmaps, AreGrabbedCutToTheDevice) {
    Canvas canvas(kWidth, kHeight, kGround);
    OwnedMemory image(Sample(20, 15, 8));
    DrawImageStraight(canvas.Dc(), image.Get(), nullptr, 0, 0);
    const int screenWidth = GetDeviceCaps(canvas.Dc(), HORZRES), screenHeight = GetDeviceCaps(canvas.Dc(), VERTRES);
    const struct {
        RECT area;
        int left, top, width, height;  // of what is grabbed; 0: nothing
    } cases[] = {
        {{2, 3, 12, 9}, 2, 3, 10, 6},
        {{-5, -7, 12, 9}, 0, 0, 12, 9},
        {{0, 0, 99999, 4}, 0, 0, screenWidth, 4},
        {{0, 0, 4, 99999}, 0, 0, 4, screenHeight},
        {{3, 3, 3, 9}, 0, 0, 0, 0},
        {{-9, 0, -1, 5}, 0, 0, 0, 0},
        {{99999, 0, 100000, 5}, 0, 0, 0, 0},
    };
    for (const auto& c : cases) {
        HBITMAP grabbed = GrabScreenArea(canvas.Dc(), c.area);
        BITMAP size = {};
        GetObjectW(grabbed, sizeof size, &size);
        EXPECT_TRUE(size.bmWidth == c.width && size.bmHeight == c.height) << &c - cases;
        Canvas copy(kWidth, kHeight, kGround);
        EXPECT_EQ(DrawDeviceBitmap(copy.Dc(), 0, 0, grabbed), c.width != 0);
        if (grabbed) {
            EXPECT_EQ(copy.Look().At(1, 2), canvas.Look().At(c.left + 1, c.top + 2));
        }
        DeleteObject(grabbed);
    }
}

TEST(DeviceBitmaps, BecomeImages) {
    Canvas canvas(kWidth, kHeight, kGround), drawn(kWidth, kHeight, 0);
    OwnedMemory image(Sample(20, 15, 8));
    DrawImageStraight(canvas.Dc(), image.Get(), nullptr, 0, 0);
    HBITMAP grabbed = GrabScreenArea(canvas.Dc(), {0, 0, kWidth, kHeight});
    OwnedMemory made(ImageFromDeviceBitmap(canvas.Dc(), grabbed, kOwn.entries));
    DeleteObject(grabbed);
    DrawImageStraight(drawn.Dc(), made.Get(), nullptr, 0, 0);
    EXPECT_EQ(Difference(canvas.Look(), drawn.Look()), "");
    EXPECT_EQ(ImageFromDeviceBitmap(canvas.Dc(), nullptr, nullptr), nullptr);
    EXPECT_EQ(DisplayColourDepth(), 24);
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
    Canvas canvas(4, 4, 0);
    const UINT kEntries[] = {0, 2, 16, 16, 16, 256, 256, 256, 256, 0};
    for (int depth = 0; depth < 10; ++depth) {
        ScreenPalette screen;
        EXPECT_EQ(RealizeImagePalette(canvas.Dc(), kOwn.entries, depth, &screen), kEntries[depth] != 0);
        UINT entries = screen.created ? GetPaletteEntries(screen.created, 0, 0, nullptr) : 0;
        EXPECT_EQ(entries, kEntries[depth]) << depth;
        ReleaseImagePalette(canvas.Dc(), &screen);
        EXPECT_TRUE(!screen.record && !screen.previous && !screen.created) << depth;
        EXPECT_EQ(GetCurrentObject(canvas.Dc(), OBJ_PAL), GetStockObject(DEFAULT_PALETTE)) << depth;
    }
}
