#include "gif/code_writer.h"

bool CodeWriter::Start(File* file, int minimumCodeSize) {
    file_ = file;
    buffer_ = AllocateScratch(kBufferBytes);
    if (!buffer_) return false;
    buffer_[0] = static_cast<uint8_t>(minimumCodeSize);
    StartBlock(buffer_.get() + 1);
    return true;
}

void CodeWriter::StartBlock(uint8_t* lengthByte) {
    blockStart_ = next_ = lengthByte + 1;
}

void CodeWriter::CloseBlock() {
    blockStart_[-1] = static_cast<uint8_t>(next_ - blockStart_);
    if (buffer_.get() + kBufferBytes - next_ >= kRoomForBlock) return StartBlock(next_);
    file_->Write(buffer_.get(), static_cast<size_t>(next_ - buffer_.get()));
    StartBlock(buffer_.get());
}

bool CodeWriter::Finish() {
    if (count_ > 0) ++next_;
    if (next_ > blockStart_) {
        blockStart_[-1] = static_cast<uint8_t>(next_ - blockStart_);
        *next_++ = 0;
    } else {
        blockStart_[-1] = 0;
    }
    return file_->Write(buffer_.get(), static_cast<size_t>(next_ - buffer_.get()));
}
