#include "gif/gif_reader.h"

namespace {

std::string Count(uint32_t count, const std::string& what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

std::string AfterPixels(uint32_t pixels) {
    return pixels == 0 ? "before its first pixel" : "after " + Count(pixels, "pixel");
}

}  // namespace

std::string DescribeDamage(const Damage& damage) {
    switch (damage.kind) {
        case DamageKind::kPrefix: return "there are bytes before the signature: " + std::to_string(damage.detail);
        case DamageKind::kStrayBytes:
            return Count(damage.detail, "byte") + (damage.detail == 1 ? " starts" : " start") + " no block";
        case DamageKind::kPaletteCut: return "the file ends inside a colour table";
        case DamageKind::kOddSize: return "the block's fixed part has a size of " + std::to_string(damage.detail);
        case DamageKind::kMoreSubBlocks: return "the block goes on behind its fixed part";
        case DamageKind::kBlockCut:
            if (damage.block < 0) return "the file ends where a block has just begun";
            return "the file ends inside this block" +
                   (damage.detail ? ", " + AfterPixels(damage.detail) : std::string());
        case DamageKind::kNoPalette: return "there is no palette for this image, whose colours are all black";
        case DamageKind::kCodeSize:
            return "the image's minimum code size is " + std::to_string(damage.detail) + ", so it can't be decoded";
        case DamageKind::kBadCode: return "the image's data makes no sense " + AfterPixels(damage.detail);
        case DamageKind::kBadCodeBehind: return "the image's data makes no sense behind its last pixel";
        case DamageKind::kPixelsMissing: return "the image's data ends " + AfterPixels(damage.detail);
        case DamageKind::kPictureTooLarge: return "the image is too large for the memory";
        case DamageKind::kNoTrailer: return "the file ends without a trailer";
        case DamageKind::kBytesAfterTrailer:
            return "there are bytes behind the trailer: " + std::to_string(damage.detail);
    }
    return "";
}

bool IsHarmless(const Damage& damage) {
    return damage.kind == DamageKind::kPrefix || damage.kind == DamageKind::kBytesAfterTrailer ||
           damage.kind == DamageKind::kBadCodeBehind;
}
