// zephyr remap: the picture of one image block in the colours of a standard palette.
#include "imaging/remap.h"
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/loaded_file.h"
#include "cli/options.h"
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

}  // namespace

const char kRemapHelp[] =
    "Usage: zephyr remap [--classic] [--strict] FILE INDEX OUT --palette KIND\n"
    "                    [--dither]\n"
    "\n"
    "Writes the picture of block number INDEX (0 is the header) of the GIF file FILE\n"
    "to OUT in the colours of a standard palette: each pixel in the nearest colour or,\n"
    "with --dither, in a mixture of colours. It is a PNG file when OUT ends in .png,\n"
    "otherwise a BMP file. Palettes:\n"
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
    const Words& operands = options.Operands();
    if (operands.size() != 3) return WrongUsage("remap", "give FILE, INDEX and OUT");
    const std::string* palette = options.Value("--palette");
    unsigned kind = 0;
    if (!palette || !ParseNumber(*palette, kPaletteGrey, &kind))
        return WrongUsage("remap", "give --palette and a number of 0 to 9");
    uint32_t index;
    std::string error;
    if (!ParseIndex(operands[1], &index, &error)) return WrongUsage("remap", error);
    LoadedFile file;
    const Block* image = file.Open(operands[0], options) ? file.ImageAt(index) : nullptr;
    if (!image) return kExitFailed;
    Result<MemoryHandle> fitted = FitToPalette(image->data, static_cast<int>(kind), options.Has("--dither"));
    if (!fitted) {
        Complain(operands[0], "out of memory");
        return kExitFailed;
    }
    return WritePictureFile(*fitted, operands[2]) ? kExitDone : kExitFailed;
}
