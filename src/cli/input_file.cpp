#include "cli/input_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "cli/complaints.h"
#include "cli/terminal.h"
#include "platform/file.h"

namespace {

constexpr size_t kFirstRoom = size_t{64} * 1024;

// Collects what `read` (of a place and a number of bytes) delivers until it delivers nothing.
template <typename Read>
bool Gather(Read read, BlockData* content, std::string* why) {
    BlockData gathered;
    size_t room = 0;
    for (;;) {
        if (gathered.count == room) {
            if (room > kMostBlockData) {
                *why = "is larger than 1 GiB";
                return false;
            }
            room = std::max(kFirstRoom, std::min(2 * room, kMostBlockData + 1));
            std::unique_ptr<uint8_t[]> larger = AllocateScratch(room);
            if (!larger) {
                *why = "does not fit into the memory";
                return false;
            }
            if (gathered.count) memcpy(larger.get(), gathered.bytes.get(), gathered.count);
            gathered.bytes = std::move(larger);
        }
        const size_t come = read(gathered.bytes.get() + gathered.count, room - gathered.count);
        if (come == 0) break;
        gathered.count += come;
    }
    *content = std::move(gathered);
    return true;
}

bool ReadStandardInput(BlockData* content, std::string* why) {
    MakeInputBinary();
    auto read = [](uint8_t* to, size_t bytes) { return fread(to, 1, bytes, stdin); };
    if (!Gather(read, content, why)) return false;
    if (!ferror(stdin)) return true;
    *why = WhyNotRead(strerror(errno));
    return false;
}

}  // namespace

bool ReadInputFile(const std::string& path, BlockData* content, std::string* why) {
    if (path == "-") return ReadStandardInput(content, why);
    File file;
    if (!file.OpenForReading(path.c_str())) {
        *why = WhyNotOpened(path, file.Reason());
        return false;
    }
    if (!Gather([&](uint8_t* to, size_t bytes) { return file.Read(to, bytes); }, content, why)) return false;
    if (!file.HasFailed()) return true;
    *why = WhyNotRead(file.Reason());
    return false;
}
