// Importing one picture: the first image of a GIF file, or the picture of one of another kind.
#pragma once

#include <string>

#include "imaging/picture_bitmap.h"
#include "platform/file.h"
#include "platform/memory.h"
#include "platform/result.h"

// Of a GIF file its bitmap and the depth of its colours, 1 to 8: whether parts of it are transparent is said by another
// block, and not heeded.
using FirstImage = PictureBitmap;

// Reads the picture in the file at `path` (UTF-8): the first image of a GIF file, or a PNG, JPEG or BMP picture, told
// by their content. Fails with kCantOpen, kCantRead, kNotGif (none of these), kDamaged (cut short, broken, a GIF file
// without an image or a palette for it, or too large for the memory at hand), or as ReadPicture does.
Result<FirstImage> ReadFirstImage(const std::string& path);

// As above, from a file that is already open and stands at its start.
Result<FirstImage> ReadFirstImage(File& file);

// Whether the file, open and standing at its start, is read as a picture of a kind other than GIF. Stands at its start
// again afterwards.
bool HoldsOtherPicture(File& file);
