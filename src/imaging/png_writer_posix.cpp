#include <png.h>

#include <new>

#include "imaging/png_faults_posix.h"
#include "imaging/png_writer.h"

namespace {

constexpr size_t kCompressedPieceBytes = size_t{64} * 1024;  // an IDAT chunk each
constexpr int kFastMemoryLevel = 9;                          // the most: less time, and smaller files

void Keep(png_structp png, png_bytep bytes, size_t count) {
    if (!static_cast<ByteBuffer*>(png_get_io_ptr(png))->Append(bytes, count)) png_error(png, "out of memory");
}

void Flush(png_structp) {}

int BitsFor(size_t colours) {
    if (colours <= 2) return 1;
    if (colours <= 4) return 2;
    return colours <= 16 ? 4 : 8;
}

void PutColours(png_structp png, png_infop info, std::span<const uint32_t> colours) {
    png_color table[256] = {};
    png_byte opacities[256] = {};
    int count = 0, opacityCount = 0;
    for (const uint32_t& colour : colours) {
        const auto* bytes = reinterpret_cast<const uint8_t*>(&colour);
        table[count] = {bytes[0], bytes[1], bytes[2]};
        opacities[count++] = bytes[3];
        if (bytes[3] != 0xFF) opacityCount = count;
    }
    png_set_PLTE(png, info, table, count);
    if (opacityCount > 0) png_set_tRNS(png, info, opacities, opacityCount, nullptr);
}

void PutHeader(png_structp png, png_infop info, const PngLayout& layout) {
    const bool isIndexed = layout.form == PngForm::kIndexed;
    const int type = isIndexed                         ? PNG_COLOR_TYPE_PALETTE
                     : layout.form == PngForm::kOpaque ? PNG_COLOR_TYPE_RGB
                                                       : PNG_COLOR_TYPE_RGB_ALPHA;
    png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_set_compression_level(png, layout.level);
    png_set_compression_mem_level(png, kFastMemoryLevel);
    png_set_compression_buffer_size(png, kCompressedPieceBytes);
    png_set_IHDR(png, info, layout.width, layout.height, isIndexed ? BitsFor(layout.colours.size()) : 8, type,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (isIndexed) PutColours(png, info, layout.colours);
    png_write_info(png, info);
    if (isIndexed) png_set_packing(png);
    if (layout.form == PngForm::kOpaque) png_set_filler(png, 0, PNG_FILLER_AFTER);
}

}  // namespace

struct PngWriter::System {
    png_structp png = nullptr;
    png_infop info = nullptr;

    ~System() { png_destroy_write_struct(&png, &info); }
};

PngWriter::PngWriter() = default;
PngWriter::~PngWriter() = default;

// libpng leaves by longjmp when something fails: no object with a destructor may come to life behind a setjmp.
bool PngWriter::Start(const PngLayout& layout, ByteBuffer* out) {
    system_.reset(new (std::nothrow) System);
    if (!system_) return false;
    system_->png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, LeavePng, IgnorePngWarning);
    if (!system_->png) return false;
    system_->info = png_create_info_struct(system_->png);
    // NOLINTNEXTLINE(cert-err52-cpp): the library's way to report failures
    if (!system_->info || setjmp(png_jmpbuf(system_->png))) return false;
    png_set_write_fn(system_->png, out, Keep, Flush);
    PutHeader(system_->png, system_->info, layout);
    return true;
}

bool PngWriter::AddRow(const uint8_t* row) {
    // NOLINTNEXTLINE(cert-err52-cpp): the library's way to report failures
    if (setjmp(png_jmpbuf(system_->png))) return false;
    png_write_row(system_->png, row);
    return true;
}

bool PngWriter::Finish() {
    // NOLINTNEXTLINE(cert-err52-cpp): the library's way to report failures
    if (setjmp(png_jmpbuf(system_->png))) return false;
    png_write_end(system_->png, nullptr);
    return true;
}
