// zephyr save: a document read and written again.
#include "cli/commands.h"
#include "cli/edit_command.h"

namespace {

class Saving : public Edit {
public:
    std::string Read(const Options&, const Words&) override { return ""; }
    EditAnswer Change(LoadedFile*) override { return {}; }
};

}  // namespace

const char kSaveHelp[] =
    "Usage: zephyr save [OPTION...] IN OUT\n"
    "       zephyr save --in-place [OPTION...] FILE...\n"
    "\n"
    "Loads the GIF file IN and writes it to OUT. Nothing is lost, and nothing changes\n"
    "but what the options ask for.\n";

int RunSave(const Words& words) {
    Saving saving;
    return RunEdit({"save", {}, {}, 0, 0}, words, &saving);
}
