// zephyr delete: a document without some of its blocks.
#include <functional>
#include <set>

#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/document.h"
#include "cli/options.h"
#include "cli/save_document.h"
#include "cli/usage.h"
#include "platform/prompts.h"
#include "resources/string_ids.h"

namespace {

// Deleted from the last to the first, so that the numbers of those still to come stay right.
using Indexes = std::set<uint32_t, std::greater<>>;

bool FindIndexes(const BlockList& list, const Words& operands, Indexes* indexes) {
    for (size_t i = 2; i < operands.size(); ++i) {
        Block block;
        uint32_t index;
        if (!FindBlock(list, operands[0], operands[i], &block, &index)) return false;
        if (block.kind == kHeaderBlock) {
            Complain(operands[0], LoadStr(IDS_HEADER_FIXED));
            return false;
        }
        indexes->insert(index);
    }
    return true;
}

bool DeleteAll(BlockList* list, const Indexes& indexes) {
    for (uint32_t index : indexes) {
        int selection = static_cast<int>(index);
        if (!DeleteBlock(nullptr, list, &selection)) return false;
    }
    return true;
}

}  // namespace

const char kDeleteHelp[] =
    "Usage: zephyr delete [--owner NAME] [--organisation NAME] IN OUT INDEX...\n"
    "\n"
    "Loads the GIF file IN, deletes the blocks with the given numbers, fits the\n"
    "logical screen to the images and writes the result to OUT. The numbers are\n"
    "those of IN, as \"zephyr list\" counts its lines from 0; one given twice counts\n"
    "once. The header (0) stays.\n"
    "The names go into the file-identity comment; they are empty by default.\n";

int RunDelete(const Words& words) {
    Options options(words, {}, {"--owner", "--organisation"});
    if (!options.Error().empty()) return WrongUsage("delete", options.Error());
    const Words& operands = options.Operands();
    if (operands.size() < 3) return WrongUsage("delete", "give IN, OUT and at least one INDEX");
    Document document;
    if (document.Open(operands[0]) != kReadDone) return kExitFailed;
    Indexes indexes;
    if (!FindIndexes(document.list, operands, &indexes)) return kExitFailed;
    if (!DeleteAll(&document.list, indexes)) return kExitFailed;
    return SaveDocument(&document.list, operands[1], options);
}
