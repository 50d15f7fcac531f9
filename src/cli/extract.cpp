// zephyr extract: the picture of one image block.
#include "cli/bmp_file.h"
#include "cli/commands.h"
#include "cli/loaded_file.h"
#include "cli/options.h"
#include "cli/usage.h"

const char kExtractHelp[] =
    "Usage: zephyr extract [--strict] FILE INDEX OUT.bmp\n"
    "\n"
    "Writes the picture of block number INDEX (0 is the header) of the GIF file FILE\n"
    "as a BMP file.\n"
    "With --strict it fails when the load of FILE ended before its trailer.\n";

int RunExtract(const Words& words) {
    Options options(words, {"--strict"}, {});
    if (!options.Error().empty()) return WrongUsage("extract", options.Error());
    const Words& operands = options.Operands();
    if (operands.size() != 3) return WrongUsage("extract", "give FILE, INDEX and OUT.bmp");
    uint32_t index;
    std::string error;
    if (!ParseIndex(operands[1], &index, &error)) return WrongUsage("extract", error);
    LoadedFile file;
    const Block* image = file.Open(operands[0], options) ? file.ImageAt(index) : nullptr;
    return image && WriteBmpFile(image->data, operands[2]) ? kExitDone : kExitFailed;
}
