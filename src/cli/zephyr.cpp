#include <algorithm>
#include <cstdio>
#include <exception>

#include "cli/commands.h"
#include "cli/edit_command.h"
#include "cli/usage.h"

namespace {

constexpr char kProgramHelp[] =
    "Usage: zephyr COMMAND [ARGUMENT...]\n"
    "\n"
    "Works on animated GIF files without a window.\n"
    "\n"
    "  list [--json] FILE                print the blocks of a file\n"
    "  diff OLD NEW                      print what differs between two files\n"
    "  save IN OUT                       load a file and write it again\n"
    "  extract FILE SELECTION OUT        write the picture or data of a block\n"
    "  remap FILE SELECTION OUT          the same in colours of a standard palette\n"
    "  insert IN OUT [FILE...]           insert images or other new blocks\n"
    "  delete IN OUT SELECTION           delete blocks\n"
    "  set IN OUT SELECTION FIELD=VALUE  change the fields of blocks\n"
    "  move IN OUT SELECTION --at INDEX  put blocks elsewhere\n"
    "  copy IN OUT SELECTION --at INDEX  copy blocks, also those of another file\n"
    "  timing IN OUT [SELECTION]         change how long frames are shown\n"
    "  reverse IN OUT [SELECTION]        let frames come in the opposite order\n"
    "  thin IN OUT --every N             keep every Nth frame\n"
    "  cut IN OUT SELECTION              keep these frames alone\n"
    "  build -o OUT FILE FILE...         make an animation from pictures\n"
    "  repair IN OUT                     save what can be saved of a damaged file\n"
    "  frames IN OUT-%03d.png            write what each frame looks like\n"
    "  check FILE...                     tell what will surprise in players\n"
    "  optimise IN OUT                   write the smallest file that plays the same\n"
    "  cost FILE SELECTION OUT           draw what the pixels of an image cost\n"
    "  advise FILE                       tell what would make a file smaller\n"
    "\n"
    "  zephyr COMMAND --help             more about one command\n"
    "  zephyr --version                  the program's version\n"
    "\n"
    "Documents are read and written whole: nothing is lost or changed unasked. With\n"
    "--classic every command keeps them as the editor does by default.\n"
    "\n"
    "Exit status: 0 done, 1 the operation failed, 2 wrong usage; of diff 0 the same,\n"
    "1 different, 2 trouble.\n";

// What --help adds to a command's own text.
enum HelpTail : uint8_t { kNoTail = 0, kOfSelections = 1, kOfEdits = 2 };

struct Command {
    const char* name;
    int (*run)(const Words& words);
    const char* help;
    unsigned tail = kNoTail;
};

constexpr Command kCommands[] = {
    {"list", RunList, kListHelp},
    {"diff", RunDiff, kDiffHelp},
    {"save", RunSave, kSaveHelp, kOfEdits},
    {"extract", RunExtract, kExtractHelp, kOfSelections},
    {"remap", RunRemap, kRemapHelp, kOfSelections},
    {"insert", RunInsert, kInsertHelp, kOfEdits},
    {"delete", RunDelete, kDeleteHelp, kOfSelections | kOfEdits},
    {"set", RunSet, kSetHelp, kOfSelections | kOfEdits},
    {"move", RunMove, kMoveHelp, kOfSelections | kOfEdits},
    {"copy", RunCopy, kCopyHelp, kOfSelections | kOfEdits},
    {"timing", RunTiming, kTimingHelp, kOfEdits},
    {"reverse", RunReverse, kReverseHelp, kOfEdits},
    {"thin", RunThin, kThinHelp, kOfEdits},
    {"cut", RunCut, kCutHelp, kOfEdits},
    {"build", RunBuild, kBuildHelp},
    {"repair", RunRepair, kRepairHelp, kOfEdits},
    {"frames", RunFrames, kFramesHelp},
    {"check", RunCheck, kCheckHelp},
    {"optimise", RunOptimise, kOptimiseHelp, kOfEdits},
    {"cost", RunCost, kCostHelp, kOfSelections},
    {"advise", RunAdvise, kAdviseHelp},
};

int Print(const char* text) {
    fputs(text, stdout);
    return FlushOutput() ? kExitDone : kExitFailed;
}

int PrintHelp(const Command& command) {
    std::string text = command.help;
    if (command.tail & kOfSelections) text += kSelectionHelp;
    if (command.tail & kOfEdits) text += kEditHelp;
    return Print(text.c_str());
}

bool AsksForHelp(const std::string& word) {
    return word == "--help" || word == "-h";
}

bool WantsHelp(const Words& words) {
    auto end = std::find(words.begin(), words.end(), "--");
    return std::any_of(words.begin(), end, AsksForHelp);
}

int Run(const Words& words) {
    if (words.empty()) return WrongUsage("", "give a command");
    const std::string& name = words[0];
    if (name == "--version") return Print("zephyr " ZEPHYR_VERSION "\n");
    if (AsksForHelp(name) || (name == "help" && words.size() == 1)) return Print(kProgramHelp);
    if (name == "help") return Run({words[1], "--help"});
    Words rest(words.begin() + 1, words.end());
    for (const Command& command : kCommands) {
        if (name != command.name) continue;
        if (WantsHelp(rest)) return PrintHelp(command);
        return command.run(rest);
    }
    return WrongUsage("", "unknown command " + name);
}

}  // namespace

int RunZephyr(const Words& words) {
    // Documents live in memory that reports its end by a null handle; only texts on the way to the terminal can throw.
    try {
        return Run(words);
    } catch (const std::exception&) {
        fputs("zephyr: out of memory\n", stderr);
        const bool failureIsAnAnswer = !words.empty() && (words[0] == "diff" || words[0] == "check");
        return failureIsAnAnswer ? kExitTrouble : kExitFailed;
    }
}
