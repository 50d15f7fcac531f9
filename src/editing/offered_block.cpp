#include "editing/offered_block.h"

#include "animation/animation.h"
#include "animation/canvas_png.h"
#include "gif/descriptor.h"
#include "gif/gif_reader.h"
#include "gif/gif_writer.h"
#include "imaging/dib.h"

namespace {

// Without what stood before it in its file and starts no block.
Block WithoutStray(Block block) {
    block.source.start += block.source.stray;
    block.source.stray = 0;
    return block;
}

bool HasPixels(const Block& block) {
    const ImageFields fields = GetImageFields(block);
    return block.kind == kImageBlock && block.data && fields.width > 0 && fields.height > 0;
}

int TransparentIndexOf(const BlockList& list, uint32_t index) {
    Animation animation;
    if (!animation.Open(list, Texts::kLeftOut)) return kNoTransparency;
    for (const Frame& frame : animation.Frames())
        if (frame.block == index) return frame.transparentIndex;
    return kNoTransparency;
}

}  // namespace

bool WriteBlockFile(const BlockList& list, uint32_t index, File* file) {
    const Block* header = FindHeader(list);
    const Block& block = list.blocks[index];
    BlockList piece, back;
    if (!header || !CreateBlockList(&piece) || !AppendBlock(&piece, WithoutStray(*header)) ||
        !AppendBlock(&piece, WithoutStray(block)))
        return false;
    if (!file->CreateMemory() || !WriteWholeGif(piece, *file, nullptr)) return false;
    // Not every kind of block can be written; what is read from there has to be this one.
    File written;
    written.OpenMemory(file->Written().data(), file->Written().size());
    return CreateBlockList(&back) && ReadGif(&back, written, nullptr, Manner::kWhole) == kReadDone && back.count == 2 &&
           back.blocks[1].kind == block.kind;
}

MemoryHandle MakeDibOfImage(const BlockList& list, uint32_t index, size_t* bytes) {
    const Block& image = list.blocks[index];
    if (!HasPixels(image)) return nullptr;
    return MakeDib(image.data, ColoursOf(image, FindGlobalPalette(list)), bytes);
}

MemoryHandle MakeDibWithOpacityOfImage(const BlockList& list, uint32_t index, size_t* bytes) {
    const Block& image = list.blocks[index];
    const int transparent = HasPixels(image) ? TransparentIndexOf(list, index) : kNoTransparency;
    if (transparent == kNoTransparency) return nullptr;
    return MakeDibWithOpacity(image.data, ColoursOf(image, FindGlobalPalette(list)), transparent, bytes);
}

bool EncodePngOfImage(const BlockList& list, uint32_t index, ByteBuffer* out) {
    const Block& image = list.blocks[index];
    if (!HasPixels(image)) return false;
    return EncodeImage(image, ColoursOf(image, FindGlobalPalette(list)), TransparentIndexOf(list, index), {}, out);
}
