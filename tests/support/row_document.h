// Animations of one row, written as lists of numbers, and what they look like, as digits.
#pragma once

#include <algorithm>
#include <string>

#include "animation/stage.h"
#include "tests/support/test_blocks.h"

// A screen of one row whose global colours are (i, 2i, 3i); each part adds blocks.
struct RowDocument : BlockList {
    explicit RowDocument(int width, int height = 1) {
        (void)CreateBlockList(this);
        Block header = *MakeHeaderBlock(this);
        std::vector<RgbTriple> colours;
        for (int i = 0; i < 8; ++i)
            colours.push_back({static_cast<uint8_t>(i), static_cast<uint8_t>(2 * i), static_cast<uint8_t>(3 * i)});
        (void)header.palette.Set(colours);
        PutHeaderFields(&header, {static_cast<uint16_t>(width), static_cast<uint16_t>(height), 0xF2, 0, 0});
        Append(this, header);
    }
    RowDocument& Control(int disposal, int transparent = kNoTransparency, int delay = 5) {
        Block control = OfKind(kControlBlock);
        const int packed = disposal << kControlDisposalShift | (transparent >= 0 ? kControlTransparent : 0);
        PutControlFields(&control, {static_cast<uint8_t>(packed), static_cast<uint16_t>(delay),
                                    static_cast<uint8_t>(std::max(transparent, 0))});
        Append(this, control);
        return *this;
    }
    RowDocument& Row(int left, const std::vector<uint32_t>& pixels, int top = 0) {
        Block image = MakeImage(static_cast<int>(pixels.size()), 1, 3);
        image.data = MakeRow(4, pixels);
        ImageFields fields = GetImageFields(image);
        fields.left = static_cast<uint16_t>(left);
        fields.top = static_cast<uint16_t>(top);
        PutImageFields(&image, fields);
        Append(this, image);
        return *this;
    }
    RowDocument& Text(int left, int top, std::string_view words, int columns = 80, int lines = 25) {
        Block text = MakeText(kPlainTextBlock, words);
        PutPlainTextFields(&text, {static_cast<uint16_t>(left), static_cast<uint16_t>(top),
                                   static_cast<uint16_t>(columns), static_cast<uint16_t>(lines), 8, 8, 1, 2});
        Append(this, text);
        return *this;
    }
};

// The first row of the canvas: the red of each pixel as a digit, "." for a transparent one.
inline std::string RowOf(const CanvasView& canvas, int y = 0) {
    std::string row;
    for (int x = 0; x < canvas.width; ++x) {
        const auto* bytes = reinterpret_cast<const uint8_t*>(&canvas.Row(y)[x]);
        row += bytes[3] ? static_cast<char>('0' + bytes[0]) : '.';
    }
    return row;
}

// All frames, a blank between two.
inline std::string RowsOf(const BlockList& list) {
    Animation animation;
    Stage stage;
    EXPECT_TRUE(animation.Open(list, Texts::kDrawn));
    EXPECT_TRUE(stage.Open(animation, 0));
    std::string rows;
    for (uint32_t frame = 0; frame < animation.Frames().size(); ++frame) {
        EXPECT_TRUE(stage.Show(frame));
        rows += (frame ? " " : "") + RowOf(stage.Canvas());
    }
    return rows;
}
