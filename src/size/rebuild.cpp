#include "size/rebuild.h"

#include <algorithm>

#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "gif/source_bytes.h"

namespace {

class Rebuilder {
public:
    Rebuilder(const CodingTask& task, const std::vector<CodedFrame>& coded, BlockList* rebuilt)
        : task_(task), coded_(coded), old_(task.animation->List()), new_(*rebuilt) {}

    bool Run() {
        if (!CreateBlockList(&new_)) return false;
        new_.flags = old_.flags;
        new_.before = old_.before;
        new_.after = old_.after;
        uint32_t next = 0;
        for (size_t i = 0; i < coded_.size(); ++i) {
            const PlannedFrame& frame = task_.plan->frames[i];
            for (uint32_t old = frame.firstFrame; old <= frame.lastFrame; ++old) {
                const bool isShown = old == frame.firstFrame;
                if (!CopyUpTo(&next, task_.animation->Frames()[old]) || (isShown && !AppendFrame(i))) return false;
            }
        }
        return CopyBlocks(next, old_.count) && PutHeader();
    }

private:
    bool CopyBlocks(uint32_t from, uint32_t to) {
        for (; from < to; ++from)
            if (!AppendBlock(&new_, old_.blocks[from])) return false;
        return true;
    }

    // Copies what stands before the frame's image, but for controls: the last one is written anew, and others have no
    // effect, unless it is on a text behind them.
    bool CopyUpTo(uint32_t* next, const Frame& frame) {
        hasOtherControl_ = false;
        for (uint32_t index = *next; index < frame.block; ++index) {
            const Block& block = old_.blocks[index];
            const bool isLeftOut = block.kind == kControlBlock && !IsOfText(index);
            if (!isLeftOut && !AppendBlock(&new_, block)) return false;
            hasOtherControl_ = hasOtherControl_ || (block.kind == kControlBlock && !isLeftOut);
        }
        *next = frame.block + 1;
        return true;
    }

    // Whether the next text, control or image behind a control is a text.
    bool IsOfText(uint32_t control) const {
        for (uint32_t index = control + 1; index < old_.count; ++index) {
            const uint16_t kind = old_.blocks[index].kind;
            if (kind == kPlainTextBlock || kind == kControlBlock || kind == kImageBlock) return kind == kPlainTextBlock;
        }
        return false;
    }

    bool AppendFrame(size_t number);
    bool AppendControl(const PlannedFrame& frame, int transparent);
    bool PutHeader();

    const CodingTask& task_;
    const std::vector<CodedFrame>& coded_;
    const BlockList& old_;
    BlockList& new_;
    bool hasOtherControl_ = false;  // before the image at hand, that is not for it
};

// Gives the image these bytes.
bool TakeBytes(const std::vector<uint8_t>& bytes, Block* image) {
    image->aux = AllocateMemory(bytes.size());
    WriteLock lock(&image->aux);
    if (!lock) return false;
    std::ranges::copy(bytes, lock.Bytes());
    image->source = {0, 0, static_cast<uint32_t>(bytes.size())};
    image->data = nullptr;  // the bytes alone count
    return true;
}

bool Rebuilder::AppendFrame(size_t number) {
    const PlannedFrame& frame = task_.plan->frames[number];
    const CodedFrame& coded = coded_[number];
    Block image = old_.blocks[task_.animation->Frames()[frame.firstFrame].block];
    if (!coded.block.empty() && !TakeBytes(coded.block, &image)) return false;
    return AppendControl(frame, coded.transparent) && AppendBlock(&new_, image);
}

// A control that says what is needed, and none where nothing is.
bool Rebuilder::AppendControl(const PlannedFrame& frame, int transparent) {
    const Frame& old = task_.animation->Frames()[frame.firstFrame];
    Block control = old.control < 0 ? MakeControlBlock(&new_) : old_.blocks[static_cast<uint32_t>(old.control)];
    ControlFields fields = old.control < 0 ? ControlFields{0, 0, 0} : GetControlFields(control);
    const ControlFields before = fields;
    fields.delay = static_cast<uint16_t>(frame.delay);
    // What leaves the picture says so as it did before.
    const int said = (fields.packed & kControlDisposal) >> kControlDisposalShift;
    const bool leaves = frame.disposal == kDisposeLeave;
    const int disposal = leaves && old.disposal != kDisposeBackground && old.disposal != kDisposePrevious
                             ? said
                             : static_cast<int>(frame.disposal);
    fields.packed = static_cast<uint8_t>((fields.packed & ~(kControlDisposal | kControlTransparent)) |
                                         disposal << kControlDisposalShift);
    if (transparent != kNoTransparency) {
        fields.packed |= kControlTransparent;
        fields.transparentIndex = static_cast<uint8_t>(transparent);
    }
    const bool isNeeded =
        hasOtherControl_ || fields.delay || !leaves || (fields.packed & (kControlTransparent | kControlUserInput));
    if (!isNeeded) return true;
    if (old.control >= 0 && fields == before) return AppendBlock(&new_, control);
    if (old.control < 0) SignForExtensions(&new_);
    PutControlFields(&control, fields);
    return MarkChanged(&control) && AppendBlock(&new_, control);
}

bool Rebuilder::PutHeader() {
    if (task_.keepsGlobal) return true;
    constexpr uint8_t kSorted = 0x08;
    Block& header = new_.blocks[0];
    const HeaderFields before = GetHeaderFields(header);
    const GlobalPalette old = PaletteOfHeader(header);
    HeaderFields fields = before;
    RgbTriples colours = {};
    for (size_t index = 0; index < task_.global.size(); ++index) {
        const uint32_t pixel = task_.plan->colours.Pixels()[task_.global[index]];
        const auto* bytes = reinterpret_cast<const uint8_t*>(&pixel);
        colours[index] = {bytes[0], bytes[1], bytes[2]};
    }
    fields.packed = static_cast<uint8_t>(fields.packed & ~(kHasPalette | kSorted));
    if (!task_.global.empty()) fields.packed = WithDepth(fields.packed | kHasPalette, task_.globalDepth);
    if (old.depth && fields.backgroundIndex < 1 << old.depth) {
        const RgbTriple background = old.colours[fields.backgroundIndex];
        const auto* found = std::ranges::find(colours, background);
        fields.backgroundIndex = static_cast<uint8_t>(found - std::begin(colours));
    } else if (!old.depth && fields.backgroundIndex >= task_.global.size()) {
        fields.backgroundIndex = 0;  // it was of no palette; some readers refuse one that is beyond the new one
    }
    PutHeaderFields(&header, fields);
    return header.palette.Set({colours, task_.global.size()}) && MarkChanged(&header);
}

}  // namespace

bool Rebuild(const CodingTask& task, const std::vector<CodedFrame>& coded, BlockList* rebuilt) {
    return Rebuilder(task, coded, rebuilt).Run();
}
