// zephyr save: a document read and written again.
#include "cli/commands.h"
#include "cli/document.h"
#include "cli/options.h"
#include "cli/save_document.h"
#include "cli/usage.h"

const char kSaveHelp[] =
    "Usage: zephyr save [--owner NAME] [--organisation NAME] IN OUT\n"
    "\n"
    "Loads the GIF file IN, fits the logical screen to its images and writes it to\n"
    "OUT as GIF89a.\n"
    "The names go into the file-identity comment; they are empty by default.\n";

int RunSave(const Words& words) {
    Options options(words, {}, {"--owner", "--organisation"});
    if (!options.Error().empty()) return WrongUsage("save", options.Error());
    if (options.Operands().size() != 2) return WrongUsage("save", "give IN and OUT");
    Document document;
    if (document.Open(options.Operands()[0]) != kReadDone) return kExitFailed;
    return SaveDocument(&document.list, options.Operands()[1], options);
}
