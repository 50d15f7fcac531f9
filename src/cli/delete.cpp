// zephyr delete: a document without some of its blocks.
#include <algorithm>
#include <vector>

#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/loaded_file.h"
#include "cli/names.h"
#include "cli/options.h"
#include "cli/save_document.h"
#include "cli/usage.h"
#include "texts/string_ids.h"
#include "texts/strings.h"

namespace {

// The numbers behind IN and OUT, ascending and each once. Returns what is wrong with them, or an empty text.
std::string ReadIndexes(const Words& operands, std::vector<uint32_t>* indexes) {
    std::string error;
    for (size_t i = 2; i < operands.size(); ++i)
        if (!ParseIndex(operands[i], &indexes->emplace_back(), &error)) return error;
    std::sort(indexes->begin(), indexes->end());
    indexes->erase(std::unique(indexes->begin(), indexes->end()), indexes->end());
    return "";
}

bool Delete(LoadedFile* file, const std::vector<uint32_t>& indexes, const std::string& path) {
    for (uint32_t index : {indexes.back(), indexes.front()}) {
        const Block* block = file->At(index);
        if (!block) return false;
        if (block->kind != kHeaderBlock) continue;
        Complain(path, LoadStr(IDS_HEADER_FIXED));
        return false;
    }
    RemoveBlocks(&file->list, indexes);
    return true;
}

}  // namespace

const char kDeleteHelp[] =
    "Usage: zephyr delete [--classic] [--strict] [--fit-screen] [--owner NAME]\n"
    "                     [--organisation NAME] IN OUT INDEX...\n"
    "\n"
    "Loads the GIF file IN, deletes the blocks with the given numbers and writes the\n"
    "result to OUT, all other blocks as they were. The numbers are those of IN, as\n"
    "\"zephyr list\" counts its lines from 0; one given twice counts once. The header\n"
    "(0) stays.\n"
    "--fit-screen sets the logical screen to the right and bottom edge of the images.\n"
    "--owner and --organisation add a file-identity comment with these names; one\n"
    "that is not given is that which Windows is registered to, elsewhere empty.\n"
    "With --strict it fails, and writes nothing, when IN is damaged.\n"
    "With --classic it reads and writes as the editor does by default: what is not\n"
    "understood is dropped, every block is written anew, the screen is fitted, and\n"
    "the comment is always there. --strict then means that the load has to reach the\n"
    "trailer.\n";

int RunDelete(const Words& words) {
    Options options(words, {"--strict", "--fit-screen"}, {"--owner", "--organisation"});
    if (!options.Error().empty()) return WrongUsage("delete", options.Error());
    if (std::string wrong = WrongNames(options); !wrong.empty()) return WrongUsage("delete", wrong);
    const Words& operands = options.Operands();
    if (operands.size() < 3) return WrongUsage("delete", "give IN, OUT and at least one INDEX");
    std::vector<uint32_t> indexes;
    if (std::string wrong = ReadIndexes(operands, &indexes); !wrong.empty()) return WrongUsage("delete", wrong);
    LoadedFile file;
    if (!file.Open(operands[0], options)) return kExitFailed;
    if (!Delete(&file, indexes, operands[0])) return kExitFailed;
    return SaveDocument(&file.list, operands[1], options);
}
