// zephyr set: changing the fields of one block.
#include "cli/block_fields.h"
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/document.h"
#include "cli/options.h"
#include "cli/save_document.h"
#include "cli/usage.h"

namespace {

struct Assignment {
    std::string field, value;
};

// The first malformed one of the words behind IN, OUT and INDEX, or an empty text.
std::string ReadAssignments(const Words& operands, std::vector<Assignment>* assignments) {
    for (size_t i = 3; i < operands.size(); ++i) {
        size_t equals = operands[i].find('=');
        if (equals == 0 || equals == std::string::npos) return operands[i];
        assignments->push_back({operands[i].substr(0, equals), operands[i].substr(equals + 1)});
    }
    return "";
}

// The block leaves the list while it is changed, as a new text releases the old one: it must never be in two places.
bool SetFields(BlockList* list, const Words& operands, const std::vector<Assignment>& assignments) {
    Block block;
    uint32_t index;
    if (!FindBlock(*list, operands[0], operands[2], &block, &index)) return false;
    if (!PutBlock(list, Block{}, index)) {
        Complain(operands[0], "out of memory");
        return false;
    }
    std::string error;
    for (size_t i = 0; i < assignments.size() && error.empty(); ++i)
        error = SetBlockField(&block, assignments[i].field, assignments[i].value);
    if (!PutBlock(list, block, index)) {
        FreeBlock(&block);
        error = "out of memory";
    }
    if (!error.empty()) Complain(operands[0], "block " + operands[2] + ": " + error);
    return error.empty();
}

}  // namespace

const char kSetHelp[] =
    "Usage: zephyr set [--owner NAME] [--organisation NAME]\n"
    "                  IN OUT INDEX FIELD=VALUE...\n"
    "\n"
    "Loads the GIF file IN, changes fields of block number INDEX (0 is the header),\n"
    "fits the logical screen to the images and writes the result to OUT. Fields of\n"
    "each kind of block:\n"
    "\n"
    "  HEADER      width height background sorted\n"
    "              colour:N (N counts the global colours from 0)\n"
    "  IMAGE       left top interlaced\n"
    "  CONTROL     delay (1/100 seconds) input\n"
    "              disposal (nothing, leave, background, previous, or 0 to 7)\n"
    "              transparent (a colour's number or none)\n"
    "  PLAIN TEXT  text left top foreground background\n"
    "              grid-width grid-height cell-width cell-height\n"
    "  COMMENT     text\n"
    "  LOOP        iterations (0: for ever)\n"
    "\n"
    "Colours of the palette are given as #rrggbb, other colours by their number;\n"
    "sorted, interlaced and input are yes or no. A text may have several lines; it\n"
    "is kept in Windows-1252. A block whose text is made empty is left out of OUT.\n"
    "The screen's width and height only last where no image reaches: saving sets\n"
    "them to the right and bottom edge of the images.\n"
    "The names go into the file-identity comment; they are empty by default.\n";

int RunSet(const Words& words) {
    Options options(words, {}, {"--owner", "--organisation"});
    if (!options.Error().empty()) return WrongUsage("set", options.Error());
    const Words& operands = options.Operands();
    if (operands.size() < 4) return WrongUsage("set", "give IN, OUT, INDEX and at least one FIELD=VALUE");
    std::vector<Assignment> assignments;
    std::string malformed = ReadAssignments(operands, &assignments);
    if (!malformed.empty()) return WrongUsage("set", "give FIELD=VALUE, not " + malformed);
    Document document;
    if (document.Open(operands[0]) != kReadDone) return kExitFailed;
    if (!SetFields(&document.list, operands, assignments)) return kExitFailed;
    return SaveDocument(&document.list, operands[1], options);
}
