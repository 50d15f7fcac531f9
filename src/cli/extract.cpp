// zephyr extract: the picture of one image block, or the data of one that belongs to another application.
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/loaded_file.h"
#include "cli/options.h"
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

bool Extract(LoadedFile* file, uint32_t index, const Options& options) {
    const std::string& out = options.Operands()[2];
    const Block* block = file->At(index);
    if (!block) return false;
    if (options.IsWhole() && HasBlockData(*block)) return WriteDataFile(*block, out);
    const Block* image = file->ImageAt(index);
    return image && WritePictureFile(image->data, out);
}

}  // namespace

const char kExtractHelp[] =
    "Usage: zephyr extract [--classic] [--strict] FILE INDEX OUT\n"
    "\n"
    "Writes the picture of block number INDEX (0 is the header) of the GIF file FILE\n"
    "to OUT as a BMP file, as a PNG file when OUT ends in .png, or the data of an\n"
    "APPLICATION-DEFINED or UNKNOWN TYPE block as it is: of XMP the packet. \"zephyr\n"
    "set\" with data=@OUT puts it back.\n"
    "With --strict it fails when FILE is damaged.\n"
    "With --classic it reads as the editor does by default, and --strict means that\n"
    "the load has to reach the trailer; other data than pictures is not known then.\n";

int RunExtract(const Words& words) {
    Options options(words, {"--strict"}, {});
    if (!options.Error().empty()) return WrongUsage("extract", options.Error());
    const Words& operands = options.Operands();
    if (operands.size() != 3) return WrongUsage("extract", "give FILE, INDEX and OUT");
    uint32_t index;
    std::string error;
    if (!ParseIndex(operands[1], &index, &error)) return WrongUsage("extract", error);
    LoadedFile file;
    return file.Open(operands[0], options) && Extract(&file, index, options) ? kExitDone : kExitFailed;
}
