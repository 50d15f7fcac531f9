#include "cli/save_document.h"

#include "cli/complaints.h"
#include "cli/names.h"
#include "cli/output_file.h"
#include "cli/save_warnings.h"
#include "gif/gif_writer.h"
#include "gif/logical_screen.h"

int SaveDocument(BlockList* list, const std::string& path, const Options& options) {
    if (!FitLogicalScreen(list)) {
        Complain(path, "can't be written: not enough memory");
        return kExitFailed;
    }
    const Identity user = NamesOf(options);
    if (!WriteOutputFile(path, [&](File& file) { return WriteGif(*list, file, user); })) return kExitFailed;
    WarnOfLosses(*list, path);
    return kExitDone;
}
