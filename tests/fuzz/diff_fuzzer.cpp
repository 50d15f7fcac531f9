// Two documents that begin alike: whatever is in them, they are compared, and none of their bytes differs unseen.
#include <algorithm>
#include <vector>

#include "editing/diff.h"
#include "gif/gif_reader.h"
#include "tests/fuzz/document_check.h"

namespace {

using Bytes = std::vector<uint8_t>;

bool Read(const Bytes& bytes, BlockList* list) {
    File file;
    file.OpenMemory(bytes.data(), bytes.size());
    assert(CreateBlockList(list));
    return ReadGif(list, file, nullptr, Manner::kWhole) == kReadDone;
}

bool IsPlausible(const BlockDifference& block, const BlockList& old, const BlockList& fresh) {
    return block.before < old.count && block.after < fresh.count && (block.before >= 0 || block.after >= 0);
}

}  // namespace

// The other document lacks a piece of the first one, or has it twice, as the last bytes say.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Bytes bytes(data, data + size);
    BlockList old, fresh;
    if (size < 8 || !Read(bytes, &old)) return 0;
    const auto from = static_cast<std::ptrdiff_t>(size * data[size - 1] / 256);
    const auto to = static_cast<std::ptrdiff_t>(size * data[size - 2] / 256);
    Bytes other(bytes.begin(), bytes.begin() + from);
    other.insert(other.end(), bytes.begin() + to, bytes.end());
    if (!Read(other, &fresh)) return 0;
    DocumentDifferences found;
    assert(CompareDocuments(old, fresh, &found));
    assert(found.AreNone() == (bytes == other));
    assert(std::ranges::all_of(found.blocks, [&](const auto& block) { return IsPlausible(block, old, fresh); }));
    return 0;
}
