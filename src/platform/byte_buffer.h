// Bytes that come piece by piece.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

class ByteBuffer {
public:
    // Adds a copy of the bytes at the end. False, with nothing changed, when memory runs out.
    [[nodiscard]] bool Append(const void* bytes, size_t count);
    // Forgets the content and keeps the memory for what comes next.
    void Clear() { used_ = 0; }

    std::span<const uint8_t> Content() const { return {bytes_.get(), used_}; }

private:
    [[nodiscard]] bool GrowTo(size_t bytes);

    std::unique_ptr<uint8_t[]> bytes_;
    size_t used_ = 0, room_ = 0;
};
