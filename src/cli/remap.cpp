// zephyr remap: the picture of one image block in the colours of a standard palette.
#include "imaging/remap.h"
#include "cli/chosen_blocks.h"
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/picture_file.h"
#include "cli/usage.h"
#include "imaging/dither.h"
#include "imaging/standard_palette.h"

namespace {

// A picture of two colours has nothing to dither and is remapped either way.
Result<MemoryHandle> FitToPalette(const MemoryHandle& image, int kind, bool dither) {
    RgbTriples colours;
    int depth;
    StandardPalette(colours, &depth, kind);
    std::optional<ImageInfo> info = GetImageInfo(image);
    if (!info) return Failure::kNoMemory;
    auto convert = dither && info->bitCount > 1 ? DitherImage : RemapImage;
    return convert(image, colours, depth, nullptr);
}

bool WriteRemapped(const Block& image, int kind, bool dither, const std::string& out) {
    Result<MemoryHandle> fitted = FitToPalette(image.data, kind, dither);
    if (fitted) return WritePictureFile(*fitted, out);
    Complain(NameOfOutput(out), "out of memory");
    return false;
}

}  // namespace

const char kRemapHelp[] =
    "Usage: zephyr remap [--classic] [--strict] FILE SELECTION OUT --palette KIND\n"
    "                    [--dither]\n"
    "\n"
    "Writes the picture of a block of the GIF file FILE to OUT in the colours of a\n"
    "standard palette: each pixel in the nearest colour or, with --dither, in a\n"
    "mixture of colours. It is a PNG file when OUT ends in .png, otherwise a BMP\n"
    "file. \"-\" is standard input or output. For several images OUT has a place for\n"
    "their numbers: %d, or %03d for at least three digits. Palettes:\n"
    "\n"
    "  0  black and white       5  128 colours\n"
    "  2  16 colours            6  216 colours, the web palette\n"
    "  3  32 colours            8  256 colours, 32 of them greys\n"
    "  4  64 colours            9  256 greys\n"
    "  1, 7                     256 colours\n"
    "\n"
    "Pictures of two colours are never dithered.\n"
    "With --strict it fails when FILE is damaged.\n"
    "With --classic it reads as the editor does by default, and --strict means that\n"
    "the load has to reach the trailer.\n";

int RunRemap(const Words& words) {
    Options options(words, {"--dither", "--strict"}, {"--palette"});
    if (!options.Error().empty()) return WrongUsage("remap", options.Error());
    ChosenBlocks images;
    if (std::string wrong = images.Read(options.Operands()); !wrong.empty()) return WrongUsage("remap", wrong);
    const std::string* palette = options.Value("--palette");
    unsigned kind = 0;
    if (!palette || !ParseNumber(*palette, kPaletteGrey, &kind))
        return WrongUsage("remap", "give --palette and a number of 0 to 9");
    return images.WriteEach(options, [&](LoadedFile& file, uint32_t index, const std::string& out) {
        const Block* image = file.ImageAt(index);
        return image && WriteRemapped(*image, static_cast<int>(kind), options.Has("--dither"), out);
    });
}
