// Reading picture files: PNG and JPEG with the system's own means (libpng and libjpeg, on Windows its imaging
// component), BMP by the program itself.
#pragma once

#include <span>

#include "imaging/picture.h"

enum class PictureKind : uint8_t { kOther, kPng, kJpeg, kBmp };

// So many bytes from the start of a file tell what kind of picture it holds.
constexpr size_t kPictureStartBytes = 18;

PictureKind KindOfPicture(std::span<const uint8_t> start);

// The picture that the bytes of a file hold; of several the first. A JPEG is put upright as its EXIF data says, and
// samples of 16 bits become the nearest of 8. Neither gamma nor colour profiles are applied. Fails with
//   kNotPicture    none of the kinds above
//   kDamaged       cut short, or otherwise broken: half a picture is none
//   kTooLarge      more than kMostPictureSide or kMostPicturePixels
//   kNotSupported  a form of its kind that nothing here reads
//   kNoDecoder     the system has no component that reads the kind
//   kNoMemory
Result<Picture> ReadPicture(std::span<const uint8_t> file);
