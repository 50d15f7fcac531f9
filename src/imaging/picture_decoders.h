// What reads each kind of picture file. picture_reader.h chooses among them.
#pragma once

#include <span>

#include "imaging/picture.h"

// Each fills `picture`, which comes empty, with the picture in `file`, and fails as ReadPicture does. PNG and JPEG are
// the seam to the system; their files are known to reach to their end marks.
[[nodiscard]] Failure DecodePng(std::span<const uint8_t> file, Picture* picture);
[[nodiscard]] Failure DecodeJpeg(std::span<const uint8_t> file, Picture* picture);
[[nodiscard]] Failure DecodeBmp(std::span<const uint8_t> file, Picture* picture);

// The same for what ReadDib (dib.h) reads.
[[nodiscard]] Failure DecodeDib(std::span<const uint8_t> bytes, Picture* picture);

// A row of `count` pixels in the inks of printing (cyan, magenta, yellow, black; 255 for all of it), as Rgba. Both may
// be the same memory.
void RgbaFromInks(const uint8_t* inks, size_t count, uint8_t* rgba);
