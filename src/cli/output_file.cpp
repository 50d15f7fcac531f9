#include "cli/output_file.h"

#include "cli/complaints.h"

bool WriteOutputFile(const std::string& path, const std::function<bool(File&)>& write) {
    File file;
    if (!file.CreateReplacement(path.c_str()) || !write(file) || !file.Close()) {
        Complain(path, WhyNotWritten(path, file.HasFailed() ? file.Reason() : "not enough memory"));
        return false;
    }
    if (file.FolderRefused()) Complain(path, "note: written in place, as its folder takes no new file for it");
    return true;
}
