#include "gif/sub_blocks.h"

#include <cstring>

#include "gif/descriptor.h"

namespace {

// A sub-block that the end of the file cuts off is dropped whole: its codes might be cut too.
constexpr bool kQuirkCutSubBlockDropped = true;

}  // namespace

void SkipSubBlocks(File& file) {
    int length;
    while ((length = ReadByte(file)) > 0) file.Seek(file.Position() + static_cast<unsigned>(length));
}

CodeStream::Bits CodeStream::Fetch(Bits at) {
    auto filled = static_cast<size_t>(at.end - at.next);
    if (filled) memmove(buffer_, at.next, filled);
    while (!ended_ && filled + kMostSubBlockBytes <= kBufferBytes) {
        uint64_t here = file_.Position();
        int length = ReadByte(file_);
        auto wanted = static_cast<size_t>(length);
        size_t read = length > 0 ? file_.Read(buffer_ + filled, wanted) : 0;
        ended_ = length <= 0 || read < wanted;
        if (!ended_ || keepsCut_ || !kQuirkCutSubBlockDropped) filled += read;
        if (length == 0) file_.Seek(here);  // the empty sub-block is left for whoever looks for the chain's end
    }
    at.next = buffer_;
    at.end = buffer_ + filled;
    return at;
}
