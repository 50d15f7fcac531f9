// The preview: what it shows, and how it zooms and plays.
#include <chrono>
#include <functional>

#include "gif/whole_writer.h"
#include "size/heat_map.h"
#include "size/pixel_costs.h"
#include "tests/gui/panes_test.h"
#include "windows/app/panes.h"

namespace {

TEST_F(PanesTest, ThePreviewsNaturalSizeFollowsTheDensityOfTheScreen) {
    Command(IDM_PREVIEW);
    Show(TestAnimation());
    Select(kSecondImage);
    for (const auto& [dpi, scale] : {std::pair(144, 1), {192, 2}, {96, 1}}) {
        const RECT place = {0, 0, 1200, 900};
        SendMessageW(hMainWindow, kDpiChanged, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
        Settle();
        ExpectFrame(1, scale, {10, 8, 26, 24});
    }
}

TEST_F(PanesTest, ThePreviewShowsTheComposedFrameOfTheSelectedLine) {
    Command(IDM_PREVIEW);
    Show(TestAnimation());
    const struct {
        int line;
        uint32_t frame;
        RECT outlined;
    } cases[] = {{0, 0, {4, 5, 24, 15}},
                 {kFirstImage, 0, {4, 5, 24, 15}},
                 {kSecondControl, 1, {10, 8, 26, 24}},
                 {kSecondImage, 1, {10, 8, 26, 24}},
                 {kThirdImage, 2, {30, 20, 50, 40}},
                 {kFirstImage, 0, {4, 5, 24, 15}}};
    for (const auto& is : cases) {
        Select(is.line);
        Settle();
        ExpectFrame(is.frame, 1, is.outlined);
    }
    Select(kSecondImage);
    Press(Preview(), VK_ADD);
    ExpectFrame(1, 2, {10, 8, 26, 24});
    Press(Preview(), VK_OEM_PLUS);
    ExpectFrame(1, 3, {10, 8, 26, 24});
    Press(Preview(), VK_SUBTRACT);
    Press(Preview(), '0');
    ExpectFrame(1, 1, {10, 8, 26, 24});
    Press(Preview(), VK_PRIOR);
    EXPECT_EQ(Selection(), kFirstImage) << "Page Up";
    Press(Preview(), VK_NEXT);
    EXPECT_EQ(Selection(), kSecondImage) << "Page Down";
}

TEST_F(PanesTest, TheWheelZoomsAboutThePointUnderTheMouseFromTheListToo) {
    Command(IDM_PREVIEW);
    Show(TestAnimation());
    Settle();
    const POINT at = {Painted(Preview()).width / 2 + 3, 100};
    const Picture before = Painted(Preview());
    Wheel(Preview(), 1, at);
    const Picture twice = Painted(Preview());
    EXPECT_NE(Difference(before, twice), "");
    Wheel(Preview(), -1, at);
    EXPECT_EQ(Difference(before, Painted(Preview())), "");
    POINT onScreen = at;
    ClientToScreen(Preview(), &onScreen);
    SendMessageW(List(), WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), MAKELPARAM(onScreen.x, onScreen.y));
    EXPECT_EQ(Difference(twice, Painted(Preview())), "");
}

TEST_F(PanesTest, TheWordsSayPlaceDelayAndBytes) {
    Command(IDM_PREVIEW);
    Show(TestAnimation());
    Select(kSecondImage);
    CountBytes();
    // The file without the image is shorter by as much.
    size_t sizes[2] = {};
    for (bool without : {false, true}) {
        BlockList list;
        ASSERT_TRUE(CopyBlockList(document, &list));
        if (without)
            std::move(list.blocks.get() + kSecondImage + 1, list.blocks.get() + list.count--,
                      list.blocks.get() + kSecondImage);
        ASSERT_TRUE(WriteWholeGifFile(list, File("bytes.gif").c_str(), nullptr));
        sizes[without] = ReadAll(File("bytes.gif")).size();
    }
    EXPECT_EQ(NameOf(Preview()), "Preview: Frame 2 of 3; At 10, 8: 16 x 16; Delay 1/100 s (played as 10), " +
                                     std::to_string(sizes[0] - sizes[1]) + " bytes");
    Command(IDM_CLOSE);
    EXPECT_EQ(NameOf(Preview()), "Preview: Nothing to show");
}

TEST_F(PanesTest, PricesOfPixelsLieOverTheFrameAndGoAgain) {
    Command(IDM_PREVIEW);
    Show(TestAnimation());
    Select(kThirdImage);  // which reaches beyond the screen
    CountBytes();
    const Picture plain = Painted(Preview());
    const std::string words = NameOf(Preview());
    auto expectPrices = [&](int line, uint32_t frame) {
        SCOPED_TRACE(line);
        Settle();
        EXPECT_NE(NameOf(Preview()).find("; Bits of a pixel: "), std::string::npos) << NameOf(Preview());
        const Block& image = document.blocks[static_cast<uint32_t>(line)];
        PixelCosts costs;
        ASSERT_TRUE(MeasurePixelCosts(image, &costs));
        const HeatMapColours colours = MakeHeatMapColours();
        const ComposedFrame composed = Compose(document, frame);
        const ImageFields fields = GetImageFields(image);
        const Picture shown = Painted(Preview());
        WindowDc dc(Preview());
        SelectedObject font(dc.Get(), hListFont);
        TEXTMETRICW metric = {};
        GetTextMetricsW(dc.Get(), &metric);
        const int height = shown.height - 4 * static_cast<int>(metric.tmHeight) - 8;  // a line more
        const int left = (shown.width - composed.width) / 2, top = (height - composed.height) / 2;
        int wrong = 0, heated = 0;
        for (int y = 0; y < composed.height; ++y)
            for (int x = 0; x < composed.width; ++x) {
                const int column = x - fields.left, row = y - fields.top;
                const bool isInside = column >= 0 && row >= 0 && column < fields.width && row < fields.height;
                const bool isOutline = x >= fields.left - 1 && x <= fields.left + fields.width && y >= fields.top - 1 &&
                                       y <= fields.top + fields.height && !isInside;
                const auto at = static_cast<size_t>(y * composed.width + x);
                if (isOutline || (!isInside && !composed.isOpaque[at])) continue;
                COLORREF expected = RGB(composed.pixels[at] >> 16, composed.pixels[at] >> 8, composed.pixels[at]);
                // A canvas has red in the lowest byte, as COLORREF does.
                if (isInside) expected = colours[HeatMapEntry(costs.Row(row)[column])] & 0xFFFFFF;
                heated += isInside;
                wrong += shown.At(left + x, top + y) != expected;
            }
        EXPECT_EQ(wrong, 0);
        EXPECT_GT(heated, 0);
    };
    Press(Preview(), 'P');
    expectPrices(kThirdImage, 2);
    Select(kFirstImage);
    expectPrices(kFirstImage, 0);
    Press(Preview(), VK_SPACE);
    EXPECT_EQ(NameOf(Preview()).find("Bits"), std::string::npos) << "not while it plays";
    Press(Preview(), VK_SPACE);
    Select(kThirdImage);
    expectPrices(kThirdImage, 2);
    Press(Preview(), 'P');
    CountBytes();
    EXPECT_EQ(Difference(plain, Painted(Preview())), "");
    EXPECT_EQ(NameOf(Preview()), words);

    // Where there is nothing to be measured, that is said.
    Press(Preview(), 'P');
    Animation none(40, 30);
    none.Comment().Image({0, 0, 10, 10});
    none.List()->blocks[2].data = nullptr;
    Show(std::move(none));
    Settle();
    EXPECT_NE(NameOf(Preview()).find("No pixels that cost bits"), std::string::npos) << NameOf(Preview());
    Command(IDM_CLOSE);
    EXPECT_EQ(NameOf(Preview()), "Preview: Nothing to show");
}

TEST_F(PanesTest, TooLargeAScreenIsRefusedInAWordAndALaterOneShown) {
    Command(IDM_PREVIEW);
    Command(IDM_FILMSTRIP);
    Animation large(65535, 65535);
    large.Image({0, 0, 4, 4});
    Show(std::move(large));
    Settle();
    const Picture refused = Painted(Preview());
    Show(TestAnimation());
    Settle();
    EXPECT_NE(Difference(refused, Painted(Preview())), "");
    ExpectFrame(0, 1, {4, 5, 24, 15});
}

TEST_F(PanesTest, TheEndOfPlayingChoosesNoOtherLineInTheMidstOfSomething) {
    static int looks, lineAtLast;
    static bool isAtLast;
    constexpr int kLooks = 50;  // behind the last frame, one in 10 ms
    const auto look = [](HWND, UINT, UINT_PTR timer, DWORD) {
        HWND pane = GetDlgItem(hMainWindow, IDC_PREVIEW);
        isAtLast = isAtLast || NameOf(pane).find("Frame 3 of 3") != std::string::npos;
        if (!isAtLast || ++looks < kLooks) return;
        KillTimer(nullptr, timer);
        lineAtLast = SelectedLine(hMainWindow);
        EndMenu();
        if (GetCapture()) ReleaseCapture();
        if (HWND dialog = FindWindowW(L"#32770", nullptr)) PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    };
    Command(IDM_PREVIEW);
    Show(TestAnimation());
    const struct {
        const char* name;
        std::function<void()> begin;
    } cases[] = {{"menu", [&] { SendMessageW(hMainWindow, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(List()), -1); }},
                 {"dialog", [] { SendMessageW(hMainWindow, WM_COMMAND, IDM_ABOUT, 0); }},
                 {"mouse", [&] {
                      SetCapture(List());
                      while (GetCapture()) PumpMessages();
                  }}};
    for (const auto& [name, begin] : cases) {
        SCOPED_TRACE(name);
        Select(kFirstImage);
        Settle();
        looks = 0, lineAtLast = -2, isAtLast = false;
        SetTimer(nullptr, 0, 10, look);
        PlayOrStop(Preview());
        begin();
        EXPECT_EQ(lineAtLast, kFirstImage);
        Settle();
        EXPECT_EQ(Selection(), kThirdImage) << "afterwards it does";
    }
}

TEST_F(PanesTest, PlayingEndsAtTheEndUnlessTheDocumentLoops) {
    Command(IDM_PREVIEW);
    Show(TestAnimation());
    Press(List(), VK_SPACE);
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (IsPlaying(Preview()) && std::chrono::steady_clock::now() < limit) PumpMessages();
    EXPECT_FALSE(IsPlaying(Preview()));
    EXPECT_EQ(Selection(), kThirdImage);
}

}  // namespace
