// zephyr set: changing the fields of one block.
#include <algorithm>

#include "cli/block_fields.h"
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/loaded_file.h"
#include "cli/names.h"
#include "cli/options.h"
#include "cli/save_document.h"
#include "cli/usage.h"
#include "gif/application_data.h"
#include "gif/descriptor.h"
#include "gif/source_bytes.h"

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

// Puts the changed copy of a block back. One whose content is as before keeps the bytes of its file; with data it knows
// that itself, and in the classic manner there are none. False when memory runs out.
bool Store(BlockList* list, const Block& edited, uint32_t index) {
    const bool comparesContent = (list->flags & kReadWhole) && !HasBlockData(edited);
    bool differs;
    return comparesContent ? StoreEdited(list, edited, index, &differs) : PutBlock(list, edited, index);
}

// Returns the exit status.
int SetFields(LoadedFile* file, uint32_t index, const Options& options, const std::vector<Assignment>& assignments) {
    const std::string& path = options.Operands()[0];
    if (!file->At(index)) return kExitFailed;
    Block edited = *file->At(index);
    for (const Assignment& given : assignments) {
        FieldRefusal refusal = SetBlockField(&edited, given.field, given.value, options.DocumentManner());
        if (refusal.wrongWords) return WrongUsage("set", refusal.text);
        if (refusal.text.empty()) continue;
        if (refusal.file.empty())
            Complain(path, "block " + std::to_string(index) + ": " + refusal.text);
        else
            Complain(refusal.file, refusal.text);
        return kExitFailed;
    }
    if (Store(&file->list, edited, index)) return kExitDone;
    Complain(path, "out of memory");
    return kExitFailed;
}

// Tells when the screen was set to something else than what the images need.
void WarnOfScreen(const HeaderFields& kept, const HeaderFields& wanted, const std::vector<Assignment>& assignments,
                  const std::string& path) {
    auto warn = [&](const char* field, uint16_t wish, uint16_t fact) {
        bool isAsked = std::any_of(assignments.begin(), assignments.end(),
                                   [field](const Assignment& given) { return given.field == field; });
        if (isAsked && wish != fact)
            Complain(path, std::string("warning: ") + field + " became " + std::to_string(fact) + ", not " +
                               std::to_string(wish) + ": saving fits the screen to the images");
    };
    warn("width", wanted.screenWidth, kept.screenWidth);
    warn("height", wanted.screenHeight, kept.screenHeight);
}

}  // namespace

const char kSetHelp[] =
    "Usage: zephyr set [--classic] [--strict] [--fit-screen] [--owner NAME]\n"
    "                  [--organisation NAME] IN OUT INDEX FIELD=VALUE...\n"
    "\n"
    "Loads the GIF file IN, changes fields of block number INDEX (0 is the header)\n"
    "and writes the result to OUT, all other blocks as they were. Fields of each kind\n"
    "of block:\n"
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
    "  APPLICATION-DEFINED, UNKNOWN TYPE\n"
    "              data (@FILE: what that file holds; @-: standard input)\n"
    "\n"
    "Colours of the palette are given as #rrggbb, other colours by their number;\n"
    "sorted, interlaced and input are yes or no. A text may have several lines; it\n"
    "is kept in Windows-1252. XMP data goes in as the format's authors want it.\n"
    "--fit-screen sets the logical screen to the right and bottom edge of the images.\n"
    "--owner and --organisation add a file-identity comment with these names; one\n"
    "that is not given is that which Windows is registered to, elsewhere empty.\n"
    "With --strict it fails, and writes nothing, when IN is damaged.\n"
    "With --classic it reads and writes as the editor does by default: what is not\n"
    "understood is dropped, every block is written anew, the screen is fitted, the\n"
    "comment is always there, there is no field data, and a block whose text is made\n"
    "empty is left out. --strict then means that the load has to reach the trailer.\n";

int RunSet(const Words& words) {
    Options options(words, {"--strict", "--fit-screen"}, {"--owner", "--organisation"});
    if (!options.Error().empty()) return WrongUsage("set", options.Error());
    if (std::string wrong = WrongNames(options); !wrong.empty()) return WrongUsage("set", wrong);
    const Words& operands = options.Operands();
    if (operands.size() < 4) return WrongUsage("set", "give IN, OUT, INDEX and at least one FIELD=VALUE");
    std::vector<Assignment> assignments;
    std::string malformed = ReadAssignments(operands, &assignments);
    if (!malformed.empty()) return WrongUsage("set", "give FIELD=VALUE, not " + malformed);
    uint32_t index;
    std::string error;
    if (!ParseIndex(operands[2], &index, &error)) return WrongUsage("set", error);
    LoadedFile file;
    if (!file.Open(operands[0], options)) return kExitFailed;
    int status = SetFields(&file, index, options, assignments);
    if (status != kExitDone) return status;
    const HeaderFields wanted = GetHeaderFields(file.list.blocks[0]);
    status = SaveDocument(&file.list, operands[1], options, {index, 1});
    if (status == kExitDone && index == 0)
        WarnOfScreen(GetHeaderFields(file.list.blocks[0]), wanted, assignments, operands[1]);
    return status;
}
