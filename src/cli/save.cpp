// zephyr save: a document read and written again.
#include "cli/commands.h"
#include "cli/loaded_file.h"
#include "cli/names.h"
#include "cli/options.h"
#include "cli/save_document.h"
#include "cli/usage.h"

const char kSaveHelp[] =
    "Usage: zephyr save [--strict] [--owner NAME] [--organisation NAME] IN OUT\n"
    "\n"
    "Loads the GIF file IN, fits the logical screen to its images and writes it to\n"
    "OUT as GIF89a.\n"
    "The names go into the file-identity comment; by default they are those that\n"
    "Windows is registered to, elsewhere empty.\n"
    "With --strict it fails, and writes nothing, when the load of IN ended before its\n"
    "trailer.\n";

int RunSave(const Words& words) {
    Options options(words, {"--strict"}, {"--owner", "--organisation"});
    if (!options.Error().empty()) return WrongUsage("save", options.Error());
    if (std::string wrong = WrongNames(options); !wrong.empty()) return WrongUsage("save", wrong);
    if (options.Operands().size() != 2) return WrongUsage("save", "give IN and OUT");
    LoadedFile file;
    if (!file.Open(options.Operands()[0], options)) return kExitFailed;
    return SaveDocument(&file.list, options.Operands()[1], options);
}
