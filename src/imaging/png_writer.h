// Writing PNG files with the system's own means: libpng, and on Windows its imaging component.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "platform/byte_buffer.h"

// How the pixels are stored.
enum class PngForm : uint8_t {
    kIndexed,  // rows of one byte a pixel: the number of its colour
    kOpaque,   // rows of four bytes a pixel: red, green, blue, and one that is not heeded
    kFull,     // the same with opacity
};

constexpr int kDefaultPngLevel = 6;
constexpr int kMostPngLevel = 9;

struct PngLayout {
    uint32_t width = 0, height = 0;  // 1 to 2^31 - 1
    PngForm form = PngForm::kFull;
    std::span<const uint32_t> colours;  // of kIndexed, 1 to 256: red, green, blue and opacity as bytes in memory
    int level = kDefaultPngLevel;       // zlib's, 0 (fast) to 9 (small); the imaging component has none and decides
};

// Writes one picture: Start, AddRow for each row from the top, Finish. Each is false when memory runs out or the system
// can't do it; nothing more may be asked of the writer then.
class PngWriter {
public:
    PngWriter();
    ~PngWriter();
    PngWriter(const PngWriter&) = delete;
    PngWriter& operator=(const PngWriter&) = delete;

    // The file's bytes are added to `out`, some of them only by Finish.
    [[nodiscard]] bool Start(const PngLayout& layout, ByteBuffer* out);
    [[nodiscard]] bool AddRow(const uint8_t* row);
    [[nodiscard]] bool Finish();

private:
    struct System;
    std::unique_ptr<System> system_;
};
