// What the markers of a JPEG file tell without decoding it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

// Whether the file reaches to the marker that ends it. Decoders fill up what is missing, each in its own way.
bool HasEndMarker(std::span<const uint8_t> file);

struct JpegSize {
    uint32_t width, height;
};

// The size that the file's frame has; nothing where there is none before the first scan.
std::optional<JpegSize> SizeOfJpeg(std::span<const uint8_t> file);

// In which of the eight ways of EXIF the picture is stored: 1 to 8; kUpright where the file does not say.
int JpegOrientation(std::span<const uint8_t> file);

// The same from the TIFF structure that EXIF data consists of.
int TiffOrientation(std::span<const uint8_t> bytes);
