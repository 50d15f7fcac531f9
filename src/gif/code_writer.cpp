#include "gif/code_writer.h"

bool CodeWriter::Start(File* file, int minimumCodeSize, Place* at) {
    file_ = file;
    buffer_ = AllocateScratch(kBufferBytes);
    if (!buffer_) return false;
    buffer_[0] = static_cast<uint8_t>(minimumCodeSize);
    uint8_t* lengthByte = buffer_.get() + 1;
    *at = {0, 0, lengthByte + 1, lengthByte + 1};
    return true;
}

uint8_t* CodeWriter::CloseBlock(uint8_t* start, uint8_t* end) {
    start[-1] = static_cast<uint8_t>(end - start);
    if (buffer_.get() + kBufferBytes - end >= kRoomForBlock) return end + 1;
    file_->Write(buffer_.get(), static_cast<size_t>(end - buffer_.get()));
    return buffer_.get() + 1;
}

bool CodeWriter::Finish(Place at) {
    if (at.count > 0) ++at.next;
    if (at.next > at.blockStart) {
        at.blockStart[-1] = static_cast<uint8_t>(at.next - at.blockStart);
        *at.next++ = 0;
    } else {
        at.blockStart[-1] = 0;
    }
    return file_->Write(buffer_.get(), static_cast<size_t>(at.next - buffer_.get()));
}
