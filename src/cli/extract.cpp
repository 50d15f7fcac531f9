// zephyr extract: the picture of one image block, or the data of one that belongs to another application.
#include "cli/chosen_blocks.h"
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/output_file.h"
#include "cli/picture_file.h"
#include "cli/usage.h"
#include "gif/application_data.h"

namespace {

bool WriteDataFile(const Block& block, const std::string& path) {
    BlockData data;
    if (GetBlockData(block, &data))
        return WriteOutputFile(path, [&](File& file) { return file.Write(data.bytes.get(), data.count); });
    Complain(path, "out of memory");
    return false;
}

bool Extract(LoadedFile& file, uint32_t index, const std::string& out, const Options& options) {
    const Block& block = file.list.blocks[index];
    if (options.IsWhole() && HasBlockData(block)) return WriteDataFile(block, out);
    const Block* image = file.ImageAt(index);
    return image && WritePictureFile(image->data, out);
}

}  // namespace

const char kExtractHelp[] =
    "Usage: zephyr extract [--classic] [--strict] FILE SELECTION OUT\n"
    "\n"
    "Writes the picture of a block of the GIF file FILE to OUT as a BMP file, as a\n"
    "PNG file when OUT ends in .png, or the data of an APPLICATION-DEFINED or UNKNOWN\n"
    "TYPE block as it is: of XMP the packet. \"zephyr set\" with data=@OUT puts it\n"
    "back. \"-\" is standard input or output. For several blocks OUT has a place for\n"
    "their numbers: %d, or %03d for at least three digits.\n"
    "With --strict it fails when FILE is damaged.\n"
    "With --classic it reads as the editor does by default, and --strict means that\n"
    "the load has to reach the trailer; other data than pictures is not known then.\n";

int RunExtract(const Words& words) {
    Options options(words, {"--strict"}, {});
    if (!options.Error().empty()) return WrongUsage("extract", options.Error());
    ChosenBlocks blocks;
    if (std::string wrong = blocks.Read(options.Operands()); !wrong.empty()) return WrongUsage("extract", wrong);
    return blocks.WriteEach(options, [&](LoadedFile& file, uint32_t index, const std::string& out) {
        return Extract(file, index, out, options);
    });
}
