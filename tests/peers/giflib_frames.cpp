// giflib_frames FILE INDICES: what giflib reads in a GIF file, for a script to compare with.
//
// Standard output, in file order and as far as giflib gets:
//   screen WIDTH HEIGHT BACKGROUND PALETTE
//   image LEFT TOP WIDTH HEIGHT INTERLACED ROWS PALETTE    ROWS: complete rows that were decoded
//   extension LABEL DATA                                    DATA: the sub-blocks' bytes, joined
//   end                                                     the trailer was reached
//   error NUMBER                                            giflib gave up
// PALETTE and DATA are hexadecimal digits, or "-" for none. The file INDICES gets WIDTH x HEIGHT bytes for each image
// with ROWS > 0, one colour index a pixel in the picture's own row order; rows that were not decoded are 0.
#include <gif_lib.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

// Larger pictures are not worth the memory: only damaged files claim them, and their rows do not come.
constexpr uint64_t kMostPixels = 100u << 20;

void PrintPalette(const ColorMapObject* palette) {
    printf(palette ? " " : " -");
    for (int i = 0; palette && i < palette->ColorCount; ++i) {
        const GifColorType& colour = palette->Colors[i];
        printf("%02x%02x%02x", colour.Red, colour.Green, colour.Blue);
    }
    printf("\n");
}

// The picture's row numbers in the order in which the file stores them.
std::vector<int> RowOrder(int height, bool isInterlaced) {
    constexpr int kFirst[] = {0, 4, 2, 1}, kStep[] = {8, 8, 4, 2};
    std::vector<int> order;
    for (int pass = 0; pass < 4 && isInterlaced; ++pass)
        for (int row = kFirst[pass]; row < height; row += kStep[pass]) order.push_back(row);
    for (int row = 0; row < height && !isInterlaced; ++row) order.push_back(row);
    return order;
}

bool DumpImage(GifFileType* gif, FILE* indices) {
    if (DGifGetImageDesc(gif) != GIF_OK) return false;
    const GifImageDesc& image = gif->Image;
    size_t width = static_cast<size_t>(image.Width), rows = 0;
    uint64_t pixelCount = uint64_t{width} * static_cast<unsigned>(image.Height);
    std::vector<uint8_t> line(width), pixels;
    bool isWell = pixelCount <= kMostPixels;
    for (int row : RowOrder(image.Height, image.Interlace)) {
        isWell = isWell && width > 0 && DGifGetLine(gif, line.data(), image.Width) == GIF_OK;
        if (!isWell) break;
        pixels.resize(pixelCount);
        memcpy(pixels.data() + static_cast<size_t>(row) * width, line.data(), width);
        ++rows;
    }
    if (pixelCount == 0) {  // nothing to read a line into: step over the data as it is
        int codeSize;
        GifByteType* codes;
        isWell = DGifGetCode(gif, &codeSize, &codes) == GIF_OK;
        while (isWell && codes) isWell = DGifGetCodeNext(gif, &codes) == GIF_OK;
    }
    printf("image %d %d %d %d %d %zu", image.Left, image.Top, image.Width, image.Height, image.Interlace, rows);
    PrintPalette(image.ColorMap);
    return fwrite(pixels.data(), 1, pixels.size(), indices) == pixels.size() && isWell;
}

bool DumpExtension(GifFileType* gif) {
    int label;
    GifByteType* data;
    if (DGifGetExtension(gif, &label, &data) != GIF_OK) return false;
    printf("extension %d %s", label, data ? "" : "-");
    bool isWell = true;
    while (isWell && data) {
        for (int i = 1; i <= data[0]; ++i) printf("%02x", data[i]);
        isWell = DGifGetExtensionNext(gif, &data) == GIF_OK;
    }
    printf("\n");
    return isWell;
}

// True when the trailer was reached.
bool Dump(GifFileType* gif, FILE* indices) {
    printf("screen %d %d %d", gif->SWidth, gif->SHeight, gif->SBackGroundColor);
    PrintPalette(gif->SColorMap);
    GifRecordType type;
    while (DGifGetRecordType(gif, &type) == GIF_OK) {
        if (type == TERMINATE_RECORD_TYPE) return true;
        if (!(type == IMAGE_DESC_RECORD_TYPE ? DumpImage(gif, indices) : DumpExtension(gif))) return false;
    }
    return false;
}

}  // namespace

int main(int count, char** words) {
    if (count != 3) return fprintf(stderr, "usage: giflib_frames FILE INDICES\n"), 2;
    FILE* indices = fopen(words[2], "wb");
    if (!indices) return perror(words[2]), 1;
    int error = 0;
    GifFileType* gif = DGifOpenFileName(words[1], &error);
    if (gif && Dump(gif, indices))
        puts("end");
    else
        printf("error %d\n", gif ? gif->Error : error);
    if (gif) DGifCloseFile(gif, &error);
    return fclose(indices) == 0 ? 0 : 1;
}
