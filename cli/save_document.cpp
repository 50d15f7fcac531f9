#include "cli/save_document.h"

#include "cli/complaints.h"
#include "cli/names.h"
#include "cli/save_warnings.h"
#include "gif/gif_writer.h"
#include "gif/logical_screen.h"

int SaveDocument(BlockList* list, const std::string& path, const Options& options) {
    UseNames(options);
    FitLogicalScreen(list);
    if (!WriteGifFile(*list, path.c_str())) {
        Complain(path, WhyNotWritten(path));
        return kExitFailed;
    }
    WarnOfLosses(*list, path);
    return kExitDone;
}
