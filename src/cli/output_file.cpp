#include "cli/output_file.h"

#include <cstdio>
#include <filesystem>

#include "cli/complaints.h"
#include "cli/options.h"
#include "cli/terminal.h"
#include "cli/usage.h"

namespace fs = std::filesystem;

namespace {

bool WriteStandardOutput(const std::function<bool(File&)>& write) {
    File file;
    if (!file.CreateMemory() || !write(file)) {
        Complain(NameOfOutput(kStandardStream), "not enough memory");
        return false;
    }
    MakeOutputBinary();
    const std::span<const uint8_t> bytes = file.Written();
    fwrite(bytes.data(), 1, bytes.size(), stdout);
    return FlushOutput();
}

}  // namespace

bool WriteOutputFile(const std::string& path, const std::function<bool(File&)>& write) {
    if (path == kStandardStream) return WriteStandardOutput(write);
    File file;
    if (!file.CreateReplacement(path.c_str()) || !write(file) || !file.Close()) {
        Complain(path, WhyNotWritten(path, file.HasFailed() ? file.Reason() : "not enough memory"));
        return false;
    }
    if (file.FolderRefused()) Complain(path, "note: written in place, as its folder takes no new file for it");
    return true;
}

bool IsStandardOutput(const std::string& path) {
    if (path == kStandardStream) return true;
    const fs::path file = std::u8string(path.begin(), path.end());
    std::error_code unknown;
    // Of a device nothing is read back.
    return fs::equivalent(file, "/dev/stdout", unknown) && !fs::is_character_file(file, unknown);
}
