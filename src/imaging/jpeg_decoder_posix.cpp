#include <csetjmp>
#include <cstddef>
#include <cstdio>
// clang-format off
#include <jpeglib.h>
#include <jerror.h>
// clang-format on

#include "imaging/picture_decoders.h"
#include "platform/memory.h"

namespace {

constexpr long kMostDecoderBytes = 1L << 30;  // of the decoder's own memory: coefficients of progressive pictures
constexpr int kMostScans = 200;               // each goes over the whole picture again; cameras and editors make ten

// What the library is given for its messages and failures.
struct Errors {
    jpeg_error_mgr base;  // first, as the library knows nothing else
    jmp_buf leave;
    Failure failure;
};

Errors* ErrorsOf(j_common_ptr decoder) {
    return reinterpret_cast<Errors*>(decoder->err);
}

Failure MeaningOf(int code) {
    switch (code) {
        case JERR_OUT_OF_MEMORY:
        case JERR_NO_BACKING_STORE: return Failure::kNoMemory;
        case JERR_BAD_PRECISION:
        case JERR_CONVERSION_NOTIMPL:
        case JERR_SOF_UNSUPPORTED:
        case JERR_ARITH_NOTIMPL:
        case JERR_NOT_COMPILED: return Failure::kNotSupported;
        case JERR_IMAGE_TOO_BIG: return Failure::kTooLarge;
        default: return Failure::kDamaged;
    }
}

[[noreturn]] void Leave(j_common_ptr decoder) {
    Errors* errors = ErrorsOf(decoder);
    errors->failure = MeaningOf(errors->base.msg_code);
    longjmp(errors->leave, 1);  // NOLINT(cert-err52-cpp): exceptions can't pass the library, which is in C
}

// Goes on with what is odd, and stops where the library would make up pixels.
void HeedWarning(j_common_ptr decoder, int level) {
    if (level >= 0) return;
    switch (decoder->err->msg_code) {
        case JWRN_HIT_MARKER:
        case JWRN_HUFF_BAD_CODE:
        case JWRN_JPEG_EOF:
        case JWRN_MUST_RESYNC: Leave(decoder);
        default: return;
    }
}

void KeepSilent(j_common_ptr) {}

void WatchScans(j_common_ptr decoder) {
    if (reinterpret_cast<j_decompress_ptr>(decoder)->input_scan_number > kMostScans) Leave(decoder);
}

// Adobe's programs write inks the other way round, and everybody follows them.
void TakeInks(const jpeg_decompress_struct& jpeg, uint8_t* inks, size_t count, uint8_t* rgba) {
    if (jpeg.saw_Adobe_marker)
        for (size_t i = 0; i < 4 * count; ++i) inks[i] = static_cast<uint8_t>(255 - inks[i]);
    RgbaFromInks(inks, count, rgba);
}

// The library leaves by longjmp when something fails: no object with a destructor may come to life behind the setjmp.
Failure Read(jpeg_decompress_struct* jpeg, Errors* errors, Picture* picture, std::unique_ptr<uint8_t[]>* inks) {
    // NOLINTNEXTLINE(cert-err52-cpp): the library's way to report failures
    if (setjmp(errors->leave)) return errors->failure;
    jpeg_read_header(jpeg, TRUE);
    if (const Failure failure = MakeRoom(picture, jpeg->image_width, jpeg->image_height); failure != Failure::kNone)
        return failure;
    const bool hasInks = jpeg->jpeg_color_space == JCS_CMYK || jpeg->jpeg_color_space == JCS_YCCK;
    jpeg->out_color_space = hasInks ? JCS_CMYK : JCS_EXT_RGBA;
    if (hasInks && !(*inks = AllocateScratch(picture->RowBytes()))) return Failure::kNoMemory;
    jpeg_start_decompress(jpeg);
    for (int y = 0; y < picture->height; ++y) {
        JSAMPROW row = hasInks ? inks->get() : picture->Row(y);
        jpeg_read_scanlines(jpeg, &row, 1);
        if (hasInks) TakeInks(*jpeg, row, static_cast<size_t>(picture->width), picture->Row(y));
    }
    return Failure::kNone;
}

Failure Start(jpeg_decompress_struct* jpeg, Errors* errors, std::span<const uint8_t> file) {
    // NOLINTNEXTLINE(cert-err52-cpp): the library's way to report failures
    if (setjmp(errors->leave)) return errors->failure;
    jpeg_create_decompress(jpeg);
    jpeg->mem->max_memory_to_use = kMostDecoderBytes;
    jpeg_mem_src(jpeg, file.data(), static_cast<unsigned long>(file.size()));
    return Failure::kNone;
}

}  // namespace

Failure DecodeJpeg(std::span<const uint8_t> file, Picture* picture) {
    jpeg_decompress_struct jpeg = {};
    Errors errors = {};
    jpeg_progress_mgr progress = {};
    std::unique_ptr<uint8_t[]> inks;
    jpeg.err = jpeg_std_error(&errors.base);
    errors.base.error_exit = Leave;
    errors.base.emit_message = HeedWarning;
    errors.base.output_message = KeepSilent;
    progress.progress_monitor = WatchScans;
    Failure failure = Start(&jpeg, &errors, file);
    jpeg.progress = &progress;
    if (failure == Failure::kNone) failure = Read(&jpeg, &errors, picture, &inks);
    jpeg_destroy_decompress(&jpeg);
    return failure;
}
