#include <png.h>

#include <algorithm>
#include <cstring>

#include "imaging/picture_decoders.h"
#include "imaging/png_faults_posix.h"

namespace {

constexpr png_alloc_size_t kMostChunkBytes = png_alloc_size_t{8} << 20;  // of any but image data

// The file, and how far it has been read.
struct Source {
    std::span<const uint8_t> left;
    Failure failure = Failure::kDamaged;  // what it means when libpng gives up
};

void Deliver(png_structp png, png_bytep to, size_t bytes) {
    auto* source = static_cast<Source*>(png_get_io_ptr(png));
    if (bytes > source->left.size()) png_error(png, "cut short");
    memcpy(to, source->left.data(), bytes);
    source->left = source->left.subspan(bytes);
}

// Who finds no size that is too large for us may still find it too large for itself.
void SetLimits(png_structp png) {
    png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_set_chunk_malloc_max(png, kMostChunkBytes);
    // Texts, profiles and the like are skipped unread: nobody here looks at them.
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    png_set_benign_errors(png, 1);
}

void TakeColours(png_structp png, png_infop info, Picture* picture) {
    png_colorp colours = nullptr;
    int count = 0;
    if (!png_get_PLTE(png, info, &colours, &count) || count < 1) png_error(png, "no palette");
    GiveColours(picture, std::min(count, Picture::kMostColours));
    for (int i = 0; i < picture->colourCount; ++i)
        picture->colours[i] = {colours[i].red, colours[i].green, colours[i].blue, 255};
    png_bytep opacities = nullptr;
    int opacityCount = 0;
    if (!png_get_tRNS(png, info, &opacities, &opacityCount, nullptr)) return;
    for (int i = 0; i < std::min(opacityCount, picture->colourCount); ++i) picture->colours[i].opacity = opacities[i];
}

// Makes rows of one byte a pixel of a picture with a palette, and of four of any other.
void SetRowForm(png_structp png, png_infop info, Picture* picture) {
    const int type = png_get_color_type(png, info);
    if (type == PNG_COLOR_TYPE_PALETTE) {
        TakeColours(png, info, picture);
        png_set_packing(png);
        return;
    }
    if (type == PNG_COLOR_TYPE_GRAY && png_get_bit_depth(png, info) < 8) png_set_expand_gray_1_2_4_to_8(png);
    if (png_get_valid(png, info, PNG_INFO_tRNS)) png_set_tRNS_to_alpha(png);
    if (png_get_bit_depth(png, info) == 16) png_set_scale_16(png);
    if (!(type & PNG_COLOR_MASK_COLOR)) png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
}

// libpng leaves by longjmp when something fails: no object with a destructor may come to life behind the setjmp.
Failure Read(png_structp png, png_infop info, Source* source, Picture* picture) {
    // NOLINTNEXTLINE(cert-err52-cpp): the library's way to report failures
    if (setjmp(png_jmpbuf(png))) return source->failure;
    png_set_read_fn(png, source, Deliver);
    SetLimits(png);
    png_read_info(png, info);
    SetRowForm(png, info, picture);
    source->failure = MakeRoom(picture, png_get_image_width(png, info), png_get_image_height(png, info));
    if (source->failure != Failure::kNone) return source->failure;
    source->failure = Failure::kDamaged;
    const int passes = png_set_interlace_handling(png);
    png_read_update_info(png, info);
    if (png_get_rowbytes(png, info) != picture->RowBytes()) return Failure::kNotSupported;
    for (int pass = 0; pass < passes; ++pass)
        for (int y = 0; y < picture->height; ++y) png_read_row(png, picture->Row(y), nullptr);
    return Failure::kNone;
}

}  // namespace

Failure DecodePng(std::span<const uint8_t> file, Picture* picture) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, LeavePng, IgnorePngWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    Source source = {file};
    const Failure failure = info ? Read(png, info, &source, picture) : Failure::kNoMemory;
    png_destroy_read_struct(&png, &info, nullptr);
    return failure;
}
