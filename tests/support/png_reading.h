// PNG files as tests look at them.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "imaging/png_writer.h"
#include "tests/support/temp_folder.h"

struct PngChunk {
    std::string type;
    Bytes data;
    uint32_t sum, expectedSum;
};

// The chunks of a file, as far as they are whole.
std::vector<PngChunk> ChunksOf(std::span<const uint8_t> png);

// A still picture as the system's reader sees it. Of no pixels when it can't be read.
struct ReadPng {
    explicit ReadPng(std::span<const uint8_t> png);
    uint32_t width = 0, height = 0;
    PngForm form = PngForm::kFull;  // as the file's header says
    std::vector<uint32_t> pixels;   // red, green, blue, opacity as bytes in memory; transparent ones all zero

private:
    bool Decode(std::span<const uint8_t> png);
};
