#include "animation/canvas_zoom.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "animation/canvas.h"

namespace {

// A canvas of letters: R, G, B and W for colours, a blank for nothing.
Canvas Lettered(const std::vector<std::string>& rows) {
    Canvas canvas;
    EXPECT_TRUE(canvas.Create(static_cast<int>(rows[0].size()), static_cast<int>(rows.size())));
    for (size_t y = 0; y < rows.size(); ++y)
        for (size_t x = 0; x < rows[y].size(); ++x) {
            const char letter = rows[y][x];
            const bool white = letter == 'W';
            const RgbTriple colour = {static_cast<uint8_t>(white || letter == 'R' ? 255 : 0),
                                      static_cast<uint8_t>(white || letter == 'G' ? 255 : 0),
                                      static_cast<uint8_t>(white || letter == 'B' ? 255 : 0)};
            canvas.View().Row(static_cast<int>(y))[x] = letter == ' ' ? kTransparent : PixelOf(colour);
        }
    return canvas;
}

// What is drawn into a picture of dots: letters again, "#" for the light squares of the board and "=" for the dark
// ones.
std::vector<std::string> Drawn(const Canvas& canvas, const Zoom& zoom, int left, int top, int width, int height,
                               int check = kCheckPixels) {
    constexpr uint32_t kUntouched = 0x123456;
    std::vector<uint32_t> pixels(static_cast<size_t>(width * height), kUntouched);
    DrawZoomed({pixels.data(), width, height}, canvas.View(), zoom, left, top, check);
    const std::pair<uint32_t, char> letters[] = {{kUntouched, '.'}, {0xFF0000, 'R'},   {0x00FF00, 'G'},
                                                 {0x0000FF, 'B'},   {kDarkCheck, '='}, {kLightCheck, '#'},
                                                 {0x808000, 'y'},   {0x808080, 'm'}};
    std::vector<std::string> rows(static_cast<size_t>(height));
    for (size_t i = 0; i < pixels.size(); ++i) {
        char letter = '?';
        for (const auto& [colour, sign] : letters)
            if (pixels[i] == colour) letter = sign;
        rows[i / static_cast<size_t>(width)] += letter;
    }
    return rows;
}

using Rows = std::vector<std::string>;

TEST(CanvasZoom, EnlargesAndCutsOffAtEveryEdge) {
    const Canvas canvas = Lettered({"RG", "BR"});
    EXPECT_EQ(Drawn(canvas, {1, 1}, 1, 1, 4, 4), (Rows{"....", ".RG.", ".BR.", "...."}));
    EXPECT_EQ(Drawn(canvas, {2, 1}, 0, 0, 4, 4), (Rows{"RRGG", "RRGG", "BBRR", "BBRR"}));
    EXPECT_EQ(Drawn(canvas, {3, 1}, -2, -1, 5, 6), (Rows{"RGGG.", "RGGG.", "BRRR.", "BRRR.", "BRRR.", "....."}));
    EXPECT_EQ(Drawn(canvas, {2, 1}, 3, 3, 4, 4), (Rows{"....", "....", "....", "...R"}));
    for (const auto& [left, top] : {std::pair(-9, 0), std::pair(0, -9), std::pair(9, 0), std::pair(0, 9)})
        EXPECT_EQ(Drawn(canvas, {2, 1}, left, top, 3, 1), (Rows{"..."})) << left << ", " << top;
}

TEST(CanvasZoom, TheSquaresOfTheBoardAreAsLargeAsAskedFor) {
    EXPECT_EQ(Drawn(Lettered({"   ", "  R"}), {2, 1}, 0, 0, 6, 4, 3), (Rows{"###===", "###===", "###=RR", "===#RR"}));
    EXPECT_EQ(Drawn(Lettered({"    ", "    "}), {1, 2}, 0, 0, 2, 1, 1), (Rows{"#="}));
}

TEST(CanvasZoom, ReducesToTheMean) {
    EXPECT_EQ(Drawn(Lettered({"RGRR", "GRRR", "BBGG", "BBGG"}), {1, 2}, 0, 0, 3, 2), (Rows{"yR.", "BG."}));
    // At the right and lower edge a pixel stands for less than a whole square.
    EXPECT_EQ(Drawn(Lettered({"RRB", "RRB", "GGG"}), {1, 2}, 0, 0, 2, 2), (Rows{"RB", "GG"}));
    // Of more than 16 pixels every nth counts.
    Canvas large;
    ASSERT_TRUE(large.Create(640, 640));
    for (int y = 0; y < 640; ++y)
        for (int x = 0; x < 640; ++x)
            large.View().Row(y)[x] = PixelOf(x % 128 < 64 ? RgbTriple{} : RgbTriple{255, 255, 255});
    EXPECT_EQ(Drawn(large, {1, 128}, 0, 0, 5, 1), (Rows{"mmmmm"}));
}

TEST(CanvasZoom, TheCheckerboardStaysWithTheCanvasAndIsAsLargeAtEveryZoom) {
    const Canvas nothing = Lettered({std::string(20, ' ')});
    EXPECT_EQ(Drawn(nothing, {1, 1}, 0, 0, 20, 1), (Rows{"########========####"}));
    EXPECT_EQ(Drawn(nothing, {2, 1}, 0, 0, 20, 1), (Rows{"########========####"}));
    EXPECT_EQ(Drawn(nothing, {1, 2}, 0, 0, 10, 1), (Rows{"########=="}));
    EXPECT_EQ(Drawn(nothing, {1, 1}, -5, 0, 16, 1), (Rows{"###========####."}));
}

TEST(CanvasZoom, FitsIntoAPlace) {
    const struct {
        int width, height, placeWidth, placeHeight, most;
        Zoom zoom;
    } cases[] = {
        {40, 30, 96, 60, 4, {2, 1}}, {40, 30, 96, 60, 1, {1, 1}}, {1, 1, 96, 60, 4, {4, 1}},
        {96, 60, 96, 60, 4, {1, 1}}, {97, 60, 96, 60, 4, {1, 2}}, {100, 601, 96, 60, 4, {1, 11}},
        {0, 0, 10, 10, 3, {3, 1}},   {10, 10, 0, 0, 3, {1, 10}},  {131070, 1, 100, 100, 1, {1, 1311}},
    };
    for (const auto& is : cases) {
        const Zoom zoom = ZoomToFit(is.width, is.height, is.placeWidth, is.placeHeight, is.most);
        EXPECT_EQ(zoom, is.zoom) << is.width << " x " << is.height;
        EXPECT_LE(ZoomedSize(is.width, zoom), std::max(is.placeWidth, 1));
        EXPECT_LE(ZoomedSize(is.height, zoom), std::max(is.placeHeight, 1));
    }
}

}  // namespace
