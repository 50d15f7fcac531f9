#include "tests/support/literal_stage.h"

#include "gif/descriptor.h"
#include "tests/support/random_images.h"
#include "tests/support/test_blocks.h"

namespace {

uint32_t LiteralPixel(RgbTriple colour) {
    return colour.red | uint32_t{colour.green} << 8 | uint32_t{colour.blue} << 16 | 0xFF000000u;
}

struct LiteralControl {
    int disposal = 0, transparent = -1;
};

LiteralControl ControlOf(const Block& block) {
    const uint8_t packed = block.descriptor[1];
    int disposal = packed >> 2 & 7;
    return {disposal == 4 ? 3 : disposal, packed & 1 ? block.descriptor[4] : -1};
}

// Does `what` for each pixel (x, y) of the image that lies on the screen, with its place on the canvas.
template <typename What>
void ForEachPixel(const Animation& animation, const Block& image, What what) {
    const ImageFields fields = GetImageFields(image);
    for (int y = 0; y < fields.height; ++y)
        for (int x = 0; x < fields.width; ++x) {
            const int column = fields.left + x, row = fields.top + y;
            if (column < animation.Width() && row < animation.Height())
                what(x, y,
                     static_cast<size_t>(row) * static_cast<size_t>(animation.Width()) + static_cast<size_t>(column));
        }
}

Block RandomControl(std::mt19937& random) {
    Block control = OfKind(kControlBlock);
    const auto packed = static_cast<uint8_t>(random() % 8 << 2 | random() % 4);
    PutControlFields(&control, {packed, static_cast<uint16_t>(random() % 20), static_cast<uint8_t>(random() % 6)});
    return control;
}

Block RandomImageBlock(std::mt19937& random, int most) {
    const int depth = 1 + static_cast<int>(random() % 8);
    const int width = static_cast<int>(random() % static_cast<unsigned>(most)),
              height = 1 + static_cast<int>(random() % 12);
    Block image = MakeImage(width, height, depth, random() % 2 ? kHasPalette : 0);
    ImageFields fields = GetImageFields(image);
    fields.left = static_cast<uint16_t>(random() % 20);
    fields.top = static_cast<uint16_t>(random() % 14);
    if (random() % 6 == 0) fields.left = fields.top = 0;
    PutImageFields(&image, fields);
    std::vector<RgbTriple> colours;
    for (int i = 0; i < 256; ++i)
        colours.push_back(
            {static_cast<uint8_t>(random()), static_cast<uint8_t>(random()), static_cast<uint8_t>(random())});
    (void)image.palette.Set(colours);
    ImageWriteLock bitmap(&image.data);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            SetImagePixel(bitmap, x, y, static_cast<uint32_t>(random() % (1u << depth) % 7));
    return image;
}

}  // namespace

std::vector<Pixels> ComposeLiterally(const Animation& animation) {
    std::vector<Pixels> shown;
    Pixels canvas(static_cast<size_t>(animation.Screen().Pixels()), 0), before = canvas;
    const BlockList& list = animation.List();
    const GlobalPalette global = FindGlobalPalette(list);
    LiteralControl control, last;
    const Block* drawn = nullptr;
    for (const Block& block : list.All()) {
        if (block.kind == kControlBlock) control = ControlOf(block);
        if (block.kind != kImageBlock) continue;
        if (drawn && last.disposal == 2) ForEachPixel(animation, *drawn, [&](int, int, size_t at) { canvas[at] = 0; });
        if (drawn && last.disposal == 3) canvas = before;
        before = canvas;
        ImageLock bitmap(block.data);
        const RgbTriple* colours = block.descriptor[8] & 0x80 ? block.palette : global.colours;
        ForEachPixel(animation, block, [&](int x, int y, size_t at) {
            const uint32_t index = GetImagePixel(bitmap, x, y);
            if (static_cast<int>(index) != control.transparent) canvas[at] = LiteralPixel(colours[index]);
        });
        shown.push_back(canvas);
        drawn = &block;
        last = control;
        control = {};
    }
    return shown;
}

BlockList RandomAnimation(std::mt19937& random, int images) {
    BlockList list;
    (void)CreateBlockList(&list);
    const auto width = static_cast<uint16_t>(1 + random() % 24), height = static_cast<uint16_t>(1 + random() % 10);
    Append(&list, *MakeHeaderBlock(&list));
    PutHeaderFields(&list.blocks[0], {width, height, 0xF7, 0, 0});
    for (int i = 0; i < images; ++i) {
        for (unsigned controls = static_cast<unsigned>(random() % 4); controls > 1; --controls)
            Append(&list, RandomControl(random));
        Append(&list, RandomImageBlock(random, width + 6));
    }
    return list;
}
