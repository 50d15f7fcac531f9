#include "imaging/picture.h"

#include <cstring>
#include <utility>

#include "platform/memory.h"

namespace {

// Where the pixels of an upright picture come from. The ways 5 to 8 exchange rows and columns.
struct Turn {
    bool isOnSide, fromRight, fromBottom;
};

Turn TurnOf(int orientation) {
    switch (orientation) {
        case 2: return {false, true, false};
        case 3: return {false, true, true};
        case 4: return {false, false, true};
        case 5: return {true, false, false};
        case 6: return {true, false, true};
        case 7: return {true, true, true};
        case 8: return {true, true, false};
        default: return {false, false, false};
    }
}

}  // namespace

Failure CheckSize(uint64_t width, uint64_t height) {
    if (width == 0 || height == 0) return Failure::kDamaged;
    const bool isTooLarge =
        width > kMostPictureSide || height > kMostPictureSide || width * height > kMostPicturePixels;
    return isTooLarge ? Failure::kTooLarge : Failure::kNone;
}

Failure MakeRoom(Picture* picture, uint64_t width, uint64_t height) {
    if (const Failure failure = CheckSize(width, height); failure != Failure::kNone) return failure;
    picture->width = static_cast<int>(width);
    picture->height = static_cast<int>(height);
    picture->pixels = AllocateScratch(width * height * picture->PixelBytes());
    return picture->pixels ? Failure::kNone : Failure::kNoMemory;
}

void GiveColours(Picture* picture, int count) {
    for (Rgba& colour : picture->colours) colour = {0, 0, 0, 255};
    picture->colourCount = count;
}

bool PutUpright(Picture* picture, int orientation) {
    const Turn turn = TurnOf(orientation);
    if (!turn.isOnSide && !turn.fromRight && !turn.fromBottom) return true;
    const int width = turn.isOnSide ? picture->height : picture->width;
    const int height = turn.isOnSide ? picture->width : picture->height;
    const size_t pixelBytes = picture->PixelBytes();
    auto upright = AllocateScratch(static_cast<uint64_t>(width) * static_cast<uint64_t>(height) * pixelBytes);
    if (!upright) return false;
    uint8_t* to = upright.get();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x, to += pixelBytes) {
            int column = turn.isOnSide ? y : x, row = turn.isOnSide ? x : y;
            if (turn.fromRight) column = picture->width - 1 - column;
            if (turn.fromBottom) row = picture->height - 1 - row;
            memcpy(to, picture->Row(row) + static_cast<size_t>(column) * pixelBytes, pixelBytes);
        }
    }
    picture->pixels = std::move(upright);
    picture->width = width;
    picture->height = height;
    return true;
}
