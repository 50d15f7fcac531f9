#include <png.h>

#include "tests/support/png_reading.h"

bool ReadPng::Decode(std::span<const uint8_t> png) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&image, png.data(), png.size())) return false;
    image.format = PNG_FORMAT_RGBA;
    width = image.width;
    height = image.height;
    pixels.resize(size_t{width} * height);
    return png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr) != 0;
}
