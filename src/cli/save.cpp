// zephyr save: a document read and written again.
#include "cli/commands.h"
#include "cli/loaded_file.h"
#include "cli/names.h"
#include "cli/options.h"
#include "cli/save_document.h"
#include "cli/usage.h"

const char kSaveHelp[] =
    "Usage: zephyr save [--classic] [--strict] [--fit-screen] [--owner NAME]\n"
    "                   [--organisation NAME] IN OUT\n"
    "\n"
    "Loads the GIF file IN and writes it to OUT. Nothing is lost, and nothing changes\n"
    "but what is asked for: --fit-screen sets the logical screen to the right and\n"
    "bottom edge of the images.\n"
    "--owner and --organisation add a file-identity comment with these names; one\n"
    "that is not given is that which Windows is registered to, elsewhere empty.\n"
    "With --strict it fails, and writes nothing, when IN is damaged.\n"
    "With --classic it reads and writes as the editor does by default: what is not\n"
    "understood is dropped, every block is written anew, the screen is fitted, and\n"
    "the comment is always there. --strict then means that the load has to reach the\n"
    "trailer.\n";

int RunSave(const Words& words) {
    Options options(words, {"--strict", "--fit-screen"}, {"--owner", "--organisation"});
    if (!options.Error().empty()) return WrongUsage("save", options.Error());
    if (std::string wrong = WrongNames(options); !wrong.empty()) return WrongUsage("save", wrong);
    if (options.Operands().size() != 2) return WrongUsage("save", "give IN and OUT");
    LoadedFile file;
    if (!file.Open(options.Operands()[0], options)) return kExitFailed;
    return SaveDocument(&file.list, options.Operands()[1], options);
}
