// zephyr cost: pictures of what the pixels of images cost.
#include <cstdio>

#include "cli/chosen_blocks.h"
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/output_file.h"
#include "cli/size_table.h"
#include "cli/usage.h"
#include "gif/descriptor.h"
#include "imaging/heat_scale.h"
#include "imaging/png_writer.h"
#include "size/heat_map.h"
#include "size/pixel_costs.h"

namespace {

bool EncodeHeatMap(const PixelCosts& costs, ByteBuffer* png) {
    const HeatMapColours colours = MakeHeatMapColours();
    PngLayout layout;
    layout.width = static_cast<uint32_t>(costs.width);
    layout.height = static_cast<uint32_t>(costs.height);
    layout.form = PngForm::kIndexed;
    layout.colours = colours;
    PngWriter writer;
    const auto row = AllocateScratch(layout.width);
    bool done = row && writer.Start(layout, png);
    for (int y = 0; done && y < costs.height; ++y) {
        for (int x = 0; x < costs.width; ++x) row[static_cast<size_t>(x)] = HeatMapEntry(costs.Row(y)[x]);
        done = writer.AddRow(row.get());
    }
    return done && writer.Finish();
}

void PrintCosts(uint32_t index, const PixelCosts& costs) {
    printf("block %u: %d x %d pixels of %.3f to %.3f bits, %.3f in the mean\n", unsigned{index}, costs.width,
           costs.height, double{costs.least}, double{costs.most}, costs.Mean());
    const uint64_t room = static_cast<uint64_t>(costs.width) * static_cast<uint64_t>(costs.height);
    if (costs.pixels < room) printf("    pixels that the data lacks: %s\n", WithThousands(room - costs.pixels).c_str());
    printf("    for pixels: %s bits; other codes, lengths and ends: %s bits\n", WithThousands(costs.pixelBits).c_str(),
           WithThousands(costs.otherBits).c_str());
}

// The colours of some costs.
void PrintLegend() {
    printf("bits:");
    for (double bits : {0.0, 0.1, 0.5, 1.0, 2.0, 4.0, 8.0, kMostBitsOfPixel}) {
        const RgbTriple colour = HeatColour(HeatOfBits(bits));
        printf("%s %g #%02x%02x%02x", bits > 0 ? "," : "", bits, unsigned{colour.red}, unsigned{colour.green},
               unsigned{colour.blue});
    }
    putchar('\n');
}

bool WriteHeatMap(LoadedFile& file, uint32_t index, const std::string& out) {
    const Block* image = file.ImageAt(index);
    if (!image) return false;
    PixelCosts costs;
    ByteBuffer png;
    const ImageFields fields = GetImageFields(*image);
    if (fields.width == 0 || fields.height == 0) {
        Complain(out, "can't be written: a PNG file has at least one pixel");
        return false;
    }
    if (!MeasurePixelCosts(*image, &costs) || !EncodeHeatMap(costs, &png)) {
        Complain(out, "not enough memory");
        return false;
    }
    if (!WriteOutputFile(out, [&](File& to) { return to.Write(png.Content().data(), png.Content().size()); }))
        return false;
    if (!IsStandardOutput(out)) PrintCosts(index, costs);
    return true;
}

}  // namespace

const char kCostHelp[] =
    "Usage: zephyr cost [--classic] [--strict] FILE SELECTION OUT\n"
    "\n"
    "Writes a picture of an image block of the GIF file FILE to OUT, a PNG file, that\n"
    "shows how many bits of the file each of its pixels costs: the bits of a code are\n"
    "spread evenly over the pixels that it stands for. Dark violet is cheap, light\n"
    "yellow is dear (12 bits, the most), and what the data lacks is transparent. The\n"
    "scale is the same for all images.\n"
    "Prints how much a pixel costs at least, at most and in the mean, the bits of all\n"
    "pixels, all others of the image's data (clear and end codes, lengths of\n"
    "sub-blocks, ends), and the colours of some costs.\n"
    "\"-\" is standard input or output; with the picture there nothing is printed. For\n"
    "several images OUT has a place for their numbers: %d, or %03d for at least three\n"
    "digits.\n"
    "With --strict it fails when FILE is damaged.\n"
    "With --classic it reads as the editor does by default, and the costs are those\n"
    "of the codes that the image would be written with.\n";

int RunCost(const Words& words) {
    Options options(words, {"--strict"}, {});
    if (!options.Error().empty()) return WrongUsage("cost", options.Error());
    ChosenBlocks blocks;
    if (std::string wrong = blocks.Read(options.Operands()); !wrong.empty()) return WrongUsage("cost", wrong);
    const int status = blocks.WriteEach(options, WriteHeatMap);
    if (status == kExitDone && !IsStandardOutput(options.Operands()[2])) PrintLegend();
    return FlushOutput() ? status : kExitFailed;
}
