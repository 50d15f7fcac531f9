// zephyr save: a document read and written again.
#include "cli/commands.h"
#include "cli/document.h"
#include "cli/identity_options.h"
#include "cli/options.h"
#include "cli/usage.h"

int RunSave(const Words& words) {
    Options options(words, {}, {"--owner", "--organisation"});
    if (!options.Error().empty()) return WrongUsage("save", options.Error());
    if (options.Operands().size() != 2) return WrongUsage("save", "give IN and OUT");
    Document document;
    if (document.Open(options.Operands()[0]) != kReadDone) return kExitFailed;
    ChooseIdentity(options);
    return SaveDocument(&document.list, options.Operands()[1]) ? kExitDone : kExitFailed;
}
