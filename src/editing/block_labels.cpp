#include "editing/block_labels.h"

#include <cstring>
#include <new>

#include "editing/block_values.h"
#include "gif/descriptor.h"
#include "gif/source_bytes.h"

namespace {

// Mixes bytes into one number as FNV-1a does (Fowler, Noll, Vo), but eight at a time.
class Mixer {
public:
    void Add(uint64_t number) {
        sum_ = (sum_ ^ number) * 0x100000001B3;
        sum_ ^= sum_ >> 32;
    }
    void Add(std::span<const uint8_t> bytes) {
        Add(uint64_t{bytes.size()});
        uint64_t word = 0;
        for (; bytes.size() >= sizeof word; bytes = bytes.subspan(sizeof word)) {
            memcpy(&word, bytes.data(), sizeof word);
            Add(word);
        }
        word = 0;
        if (!bytes.empty()) memcpy(&word, bytes.data(), bytes.size());
        Add(word);
    }
    void Add(const std::string& text) { Add({reinterpret_cast<const uint8_t*>(text.data()), text.size()}); }
    uint64_t Sum() const { return sum_; }

private:
    uint64_t sum_ = 0xCBF29CE484222325;
};

void AddPixels(const Block& image, Mixer* mixer) {
    ImageLock bitmap(image.data);
    if (!bitmap) return;
    mixer->Add(uint64_t{bitmap->bitCount});
    mixer->Add({ImagePixels(bitmap), size_t{ImageRowBytes(bitmap)} * static_cast<size_t>(bitmap->height)});
}

void AddBody(const Block& block, Mixer* mixer) {
    if (block.kind == kImageBlock) return AddPixels(block, mixer);
    BlockData data;
    if (!GetBlockBytes(block, &data)) throw std::bad_alloc();
    mixer->Add(data.All());
}

Mixer MixerOfShape(const Block& block) {
    Mixer mixer;
    mixer.Add(uint64_t{block.kind});
    if (block.kind == kImageBlock) {
        const ImageFields image = GetImageFields(block);
        mixer.Add(uint64_t{image.width} << 16 | image.height);
    } else if (HasBlockData(block)) {
        for (const BlockValue& value : GetBlockValues(block)) mixer.Add(value.value);
    }
    return mixer;
}

}  // namespace

uint64_t LabelOfSource(const Block& block) {
    if (!HasSource(block)) return LabelOfContent(block);
    SourceLock source(block);
    if (!source) throw std::bad_alloc();
    Mixer mixer;
    mixer.Add(uint64_t{block.kind});
    mixer.Add(source.Own());
    return mixer.Sum();
}

uint64_t LabelOfContent(const Block& block) {
    Mixer mixer = MixerOfShape(block);
    for (const BlockValue& value : GetBlockValues(block)) mixer.Add(value.value);
    mixer.Add(GetBlockName(block).value_or(""));
    const auto colours = static_cast<size_t>(CountOwnColours(block));
    mixer.Add({reinterpret_cast<const uint8_t*>(block.palette.Colours()), colours * sizeof(RgbTriple)});
    AddBody(block, &mixer);
    return mixer.Sum();
}

uint64_t LabelOfBody(const Block& block) {
    Mixer mixer = MixerOfShape(block);
    AddBody(block, &mixer);
    return mixer.Sum();
}

uint64_t LabelOfShape(const Block& block) {
    return MixerOfShape(block).Sum();
}

uint64_t LabelOfKind(const Block& block) {
    return block.kind;
}
