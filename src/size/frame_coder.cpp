#include "size/frame_coder.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "gif/descriptor.h"
#include "gif/lzw_limits.h"
#include "platform/bytes.h"
#include "size/code_guess.h"
#include "size/colour_distance.h"
#include "size/old_image.h"
#include "size/recode.h"

namespace {

// A palette that a frame may be written with.
struct FramePalette {
    PaletteIds ids;
    int depth = 0;
    bool isLocal = false;

    size_t Entries() const { return size_t{1} << depth; }
    size_t LocalBytes() const { return isLocal ? 3 * Entries() : 0; }
};

// Pixels that show the frame, ready to be encoded.
struct Form {
    const FramePalette* palette = nullptr;
    Rectangle box;
    std::vector<uint8_t> pixels, free;
    int transparent = kNoTransparency;
    int codeSize = 0;
    bool isFromPlan = false;  // its pixels are those of the plan: some may be free
    uint64_t guess = 0;       // bytes of the block, once it was encoded in a hurry
};

int CodeSizeFor(int largestIndex) {
    return std::max(DepthForColours(static_cast<size_t>(largestIndex) + 1), kLeastCodeSize);
}

class FrameCoder {
public:
    FrameCoder(const CodingTask& task, const PlannedFrame& frame, CodedFrame* coded)
        : task_(task), frame_(frame), coded_(*coded), indexOf_(task.plan->colours.Pixels().size(), kNone) {
        coded_ = {};
        coded_.bytes = UINT64_MAX;
    }

    CodingResult Run() {
        old_ = FindOldImage(*task_.animation, task_.plan->colours, frame_);
        MakePalettes();
        KeepOldBlock();
        for (const FramePalette& palette : palettes_) RecodeOld(palette);
        for (const FramePalette& palette : palettes_) MakeForms(palette);
        SearchForms();
        if (outOfMemory_) return CodingResult::kNoMemory;
        return coded_.bytes == UINT64_MAX ? CodingResult::kCantBeShown : CodingResult::kDone;
    }

private:
    static constexpr int kNone = -1;

    void MakePalettes();
    void AddLocal(const std::vector<ColourId>& colours, size_t further);
    void KeepOldBlock();
    void RecodeOld(const FramePalette& palette);
    void MakeForms(const FramePalette& palette);
    void Number(const FramePalette& palette);
    int Largest(const std::vector<ColourId>& ids) const;
    using Uses = std::array<uint32_t, 256>;

    Uses CountUses(const FramePalette& palette) const;
    int ChooseTransparent(const FramePalette& palette, int* codeSize) const;
    void MakeForm(const FramePalette& palette, int codeSize);
    void AddForms(Form form);
    static auto Clearing(const Form& form);
    bool LooksBetterCleared(const Form& form) const;
    void MakeOldForm(const FramePalette& palette);
    void SearchForms();
    std::unique_ptr<AlikeColours> FindAlike(const Form& form) const;
    bool Search(const Form& form, Effort effort, EncodedPixels* codes);
    bool IsClose(const Form& form) const;
    void Offer(const Form& form, EncodedPixels* codes);
    void Build(const FramePalette& palette, const Rectangle& box, uint8_t flags, const std::vector<uint8_t>& data);

    const CodingTask& task_;
    const PlannedFrame& frame_;
    CodedFrame& coded_;
    std::vector<int16_t> indexOf_;  // by colour, in the palette at hand
    std::optional<OldImage> old_;
    std::vector<FramePalette> palettes_;
    std::vector<Form> forms_;
    bool outOfMemory_ = false;
};

// The global palette where it has the colours, and ones of the frame's own.
void FrameCoder::MakePalettes() {
    palettes_.reserve(4);
    if (!task_.global.empty()) {
        palettes_.push_back({task_.global, task_.globalDepth, false});
        Number(palettes_[0]);
        if (Largest(frame_.needed) == INT16_MAX) palettes_.clear();
    }
    const bool isCovered = !palettes_.empty();
    const size_t transparent = frame_.hasFree ? 1 : 0;
    const int localSize = std::max(DepthForColours(frame_.needed.size() + transparent), kLeastCodeSize);
    if (isCovered && localSize >= CodeSizeFor(Largest(frame_.needed))) return;
    if (isCovered && task_.effort == Effort::kFast) return;
    AddLocal(frame_.needed, transparent);
    if (isCovered || frame_.offered.empty()) return;
    std::vector<ColourId> all = frame_.needed;
    all.insert(all.end(), frame_.offered.begin(), frame_.offered.end());
    AddLocal(all, transparent);
    if (transparent && !frame_.needsTransparency) AddLocal(all, 0);
}

// A palette of the colours and `further` entries.
void FrameCoder::AddLocal(const std::vector<ColourId>& colours, size_t further) {
    const size_t entries = colours.size() + further;
    if (entries > kMostColours) return;
    palettes_.push_back({colours, DepthForColours(entries), true});
}

void FrameCoder::Number(const FramePalette& palette) {
    std::ranges::fill(indexOf_, int16_t{kNone});
    for (size_t index = palette.ids.size(); index-- > 0;) indexOf_[palette.ids[index]] = static_cast<int16_t>(index);
    indexOf_[kTransparentId] = kNone;
}

// The largest index of the colours; INT16_MAX when one has none.
int FrameCoder::Largest(const std::vector<ColourId>& ids) const {
    int largest = 0;
    for (ColourId id : ids) largest = std::max<int>(largest, indexOf_[id] == kNone ? INT16_MAX : indexOf_[id]);
    return largest;
}

void FrameCoder::KeepOldBlock() {
    if (!old_ || old_->blockBytes == 0 || (!old_->hasPalette && !task_.keepsGlobal)) return;
    coded_.bytes = old_->blockBytes;
    coded_.transparent = old_->transparent;
}

// The strings of the old data, in this palette.
void FrameCoder::RecodeOld(const FramePalette& palette) {
    if (!old_ || old_->data.empty()) return;
    Number(palette);
    IndexMap map = {};
    std::array<bool, 256> isTaken = {};
    int largest = 0;
    for (size_t index = 0; index < 256; ++index) {
        if (!old_->isUsed[index] || static_cast<int>(index) == old_->transparent) continue;
        const int to = indexOf_[old_->ids[index]];
        if (to == kNone) return;
        map[index] = static_cast<uint8_t>(to);
        isTaken[static_cast<size_t>(to)] = true;
        largest = std::max(largest, to);
    }
    int transparent = kNoTransparency;
    if (old_->transparent != kNoTransparency && old_->isUsed[static_cast<size_t>(old_->transparent)]) {
        transparent = static_cast<int>(std::ranges::find(isTaken, false) - isTaken.begin());
        if (transparent >= static_cast<int>(palette.Entries())) return;
        map[static_cast<size_t>(old_->transparent)] = static_cast<uint8_t>(transparent);
        largest = std::max(largest, transparent);
    }
    EncodedPixels codes;
    const int codeSize = CodeSizeFor(largest);
    if (!RecodeStrings(old_->data, old_->pixels.size(), map, codeSize, &codes)) return;
    const uint64_t bytes = kImageHeadBytes + palette.LocalBytes() + codes.data.size();
    if (bytes >= coded_.bytes) return;
    coded_.transparent = transparent;
    Build(palette, old_->place, old_->isInterlaced ? kImageInterlaced : uint8_t{0}, codes.data);
}

// How often free pixels show each index; those that are needed count as always.
FrameCoder::Uses FrameCoder::CountUses(const FramePalette& palette) const {
    Uses uses = {};
    for (ColourId id : frame_.needed) uses[static_cast<size_t>(indexOf_[id])] = UINT32_MAX;
    const bool hasRoom = frame_.needed.size() + frame_.offered.size() < palette.Entries();
    for (ColourId id : frame_.offered)
        if (indexOf_[id] != kNone) uses[static_cast<size_t>(indexOf_[id])] = 1;
    if (hasRoom) return uses;  // there is one that nothing shows: never mind how often the others are shown
    for (size_t i = 0; i < frame_.ids.size(); ++i) {
        const int index = frame_.free[i] ? indexOf_[frame_.ids[i]] : kNone;
        if (index != kNone && uses[static_cast<size_t>(index)] != UINT32_MAX) ++uses[static_cast<size_t>(index)];
    }
    return uses;
}

// The index below 1 << *codeSize that colours can do best without; one more bit is taken when there is none.
int FrameCoder::ChooseTransparent(const FramePalette& palette, int* codeSize) const {
    const Uses uses = CountUses(palette);
    for (; *codeSize <= kMostCodeSize; ++*codeSize) {
        const size_t room = std::min(palette.Entries(), size_t{1} << *codeSize);
        const auto* least = std::min_element(uses.begin(), uses.begin() + static_cast<ptrdiff_t>(room));
        if (*least != UINT32_MAX) return static_cast<int>(least - uses.begin());
        if (room == palette.Entries()) break;
    }
    return kNoTransparency;
}

// The frame in this palette with codes of at least that size: a free pixel shows its colour where it has an index, and
// may be transparent.
void FrameCoder::MakeForm(const FramePalette& palette, int codeSize) {
    Form form;
    form.palette = &palette;
    form.box = frame_.box;
    form.codeSize = codeSize;
    form.isFromPlan = true;
    if (frame_.hasFree) form.transparent = ChooseTransparent(palette, &form.codeSize);
    if (form.transparent == kNoTransparency) {
        if (frame_.needsTransparency) return;
        form.codeSize = std::max(codeSize, CodeSizeFor(std::max(Largest(frame_.needed), Largest(frame_.offered))));
        if (form.codeSize > kMostCodeSize) return;
    }
    std::vector<uint8_t> written(indexOf_.size());  // by colour
    for (size_t id = 0; id < written.size(); ++id) {
        const bool hasIndex = indexOf_[id] != kNone && indexOf_[id] < 1 << form.codeSize;
        written[id] = static_cast<uint8_t>(hasIndex ? indexOf_[id] : form.transparent);
    }
    form.pixels.resize(frame_.ids.size());
    const uint8_t* const index = written.data();  // a byte written might be the vector's, for all that is known
    std::ranges::transform(frame_.ids, form.pixels.begin(), [index](ColourId id) { return index[id]; });
    AddForms(std::move(form));
}

// What a pixel becomes where all free ones are transparent. Without a branch: free pixels come as they like.
auto FrameCoder::Clearing(const Form& form) {
    return [index = static_cast<unsigned>(form.transparent)](unsigned pixel, uint8_t isFree) {
        const unsigned mask = 0u - static_cast<unsigned>(isFree != 0);
        return static_cast<uint8_t>((pixel & ~mask) | (index & mask));
    };
}

// The form, and, where there is a choice, the one with all free pixels transparent. In a hurry only the better looking.
void FrameCoder::AddForms(Form form) {
    if (form.transparent == kNoTransparency) {
        forms_.push_back(std::move(form));
        return;
    }
    const bool isInHurry = task_.effort == Effort::kFast;
    if (!isInHurry) forms_.push_back(form);
    if (!isInHurry || LooksBetterCleared(form))
        std::transform(form.pixels.begin(), form.pixels.end(), frame_.free.begin(), form.pixels.begin(),
                       Clearing(form));
    forms_.push_back(std::move(form));
}

bool FrameCoder::LooksBetterCleared(const Form& form) const {
    const auto width = static_cast<size_t>(form.box.Width()), height = static_cast<size_t>(form.box.Height());
    const auto copy = [&](size_t y, uint8_t* row) { std::copy_n(&form.pixels[y * width], width, row); };
    const auto clear = [&, clearing = Clearing(form)](size_t y, uint8_t* row) {
        const uint8_t* pixels = &form.pixels[y * width];
        std::transform(pixels, pixels + width, &frame_.free[y * width], row, clearing);
    };
    return GuessCodeBits<uint8_t>(width, height, clear) < GuessCodeBits<uint8_t>(width, height, copy);
}

// The old image's own choice of what is transparent.
void FrameCoder::MakeOldForm(const FramePalette& palette) {
    Form form;
    form.palette = &palette;
    form.box = Common(old_->place, task_.animation->Screen());
    if (form.box != old_->place) return;
    std::array<uint8_t, 256> map = {};
    std::array<bool, 256> isTaken = {};
    int largest = 0;
    bool hasTransparent = false;
    for (size_t index = 0; index < 256; ++index) {
        if (!old_->isUsed[index]) continue;
        if (static_cast<int>(index) == old_->transparent) {
            hasTransparent = true;
            continue;
        }
        const int to = indexOf_[old_->ids[index]];
        if (to == kNone) return;
        map[index] = static_cast<uint8_t>(to);
        isTaken[map[index]] = true;
        largest = std::max(largest, to);
    }
    if (hasTransparent) {
        form.transparent = static_cast<int>(std::ranges::find(isTaken, false) - isTaken.begin());
        if (form.transparent >= static_cast<int>(palette.Entries())) return;
        map[static_cast<size_t>(old_->transparent)] = static_cast<uint8_t>(form.transparent);
        largest = std::max(largest, form.transparent);
    }
    form.codeSize = CodeSizeFor(largest);
    form.pixels.resize(old_->pixels.size());
    for (size_t i = 0; i < form.pixels.size(); ++i) form.pixels[i] = map[old_->pixels[i]];
    forms_.push_back(std::move(form));
}

void FrameCoder::MakeForms(const FramePalette& palette) {
    Number(palette);
    const int needed = CodeSizeFor(Largest(frame_.needed));
    MakeForm(palette, needed);
    if (task_.effort == Effort::kFast) return;
    int all = needed;
    for (ColourId id : frame_.offered)
        if (indexOf_[id] != kNone) all = std::max(all, CodeSizeFor(indexOf_[id]));
    if (frame_.hasFree && all > needed) MakeForm(palette, all);
    if (old_) MakeOldForm(palette);
}

// Encodes all forms in a hurry and those that came out best with effort.
void FrameCoder::SearchForms() {
    std::vector<EncodedPixels> quick(forms_.size());
    std::vector<size_t> order;
    for (size_t i = 0; i < forms_.size(); ++i) {
        if (!Search(forms_[i], Effort::kFast, &quick[i])) continue;
        forms_[i].guess = kImageHeadBytes + forms_[i].palette->LocalBytes() + quick[i].data.size();
        order.push_back(i);
    }
    std::ranges::stable_sort(order, [this](size_t a, size_t b) { return forms_[a].guess < forms_[b].guess; });
    if (order.empty()) return;
    Offer(forms_[order[0]], &quick[order[0]]);
    if (task_.effort == Effort::kFast) return;
    const size_t searched = task_.effort == Effort::kMax ? 2 : 1;
    for (size_t i = 0; i < std::min(searched, order.size()); ++i) {
        Form& form = forms_[order[i]];
        // Which of own colours and transparency is better is open where neither is much better.
        if (form.isFromPlan && form.transparent != kNoTransparency && IsClose(form)) form.free = frame_.free;
        EncodedPixels codes;
        if (Search(form, task_.effort, &codes)) Offer(form, &codes);
    }
}

// Which indices of the form's palette may be written for each other.
std::unique_ptr<AlikeColours> FrameCoder::FindAlike(const Form& form) const {
    auto alike = std::make_unique<AlikeColours>();
    const PaletteIds& ids = form.palette->ids;
    const size_t count = std::min(ids.size(), size_t{1} << form.codeSize);
    const auto isColour = [&](size_t index) {
        return ids[index] != kTransparentId && static_cast<int>(index) != form.transparent;
    };
    const std::span<const uint32_t> pixels = task_.plan->colours.Pixels();
    for (size_t p = 0; p < count; ++p)
        for (size_t q = 0; q < count; ++q)
            if (p != q && isColour(p) && isColour(q))
                (*alike)[p][q] = ColourDistance(pixels[ids[p]], pixels[ids[q]]) <= task_.alikeWithin;
    return alike;
}

bool FrameCoder::Search(const Form& form, Effort effort, EncodedPixels* codes) {
    PixelsToEncode image;
    std::unique_ptr<AlikeColours> alike;
    if (task_.alikeWithin) {
        alike = FindAlike(form);
        image.alike = alike.get();
    }
    image.pixels = form.pixels;
    image.free = form.free;
    image.transparent = form.transparent;
    image.codeSize = form.codeSize;
    image.stop = task_.stop;
    if (SearchCodes(image, effort, 0, codes)) return true;
    outOfMemory_ = true;  // or it was stopped, which its owner knows
    return false;
}

// Whether its sister, which treats free pixels in the other manner, came out about as well.
bool FrameCoder::IsClose(const Form& form) const {
    return std::ranges::any_of(forms_, [&form](const Form& other) {
        return &other != &form && other.isFromPlan && other.palette == form.palette &&
               other.codeSize == form.codeSize && other.transparent == form.transparent && other.guess &&
               other.guess * 3 < form.guess * 4;
    });
}

void FrameCoder::Offer(const Form& form, EncodedPixels* codes) {
    const uint64_t bytes = kImageHeadBytes + form.palette->LocalBytes() + codes->data.size();
    if (bytes >= coded_.bytes) return;
    coded_.transparent = form.transparent;
    Build(*form.palette, form.box, 0, codes->data);
}

// Puts the block together. `flags` are bits of its packed byte.
void FrameCoder::Build(const FramePalette& palette, const Rectangle& box, uint8_t flags,
                       const std::vector<uint8_t>& data) {
    std::vector<uint8_t> block(kImageHeadBytes);
    block[0] = kImageIntroducer;
    PutWord(&block[1], static_cast<unsigned>(box.left));
    PutWord(&block[3], static_cast<unsigned>(box.top));
    PutWord(&block[5], static_cast<unsigned>(box.Width()));
    PutWord(&block[7], static_cast<unsigned>(box.Height()));
    block[9] = palette.isLocal ? WithDepth(kHasPalette | flags, palette.depth) : flags;
    if (palette.isLocal) {
        for (size_t index = 0; index < palette.Entries(); ++index) {
            const uint32_t pixel =
                index < palette.ids.size() ? task_.plan->colours.Pixels()[palette.ids[index]] : kTransparent;
            const auto* bytes = reinterpret_cast<const uint8_t*>(&pixel);
            block.insert(block.end(), bytes, bytes + 3);
        }
    }
    block.insert(block.end(), data.begin(), data.end());
    coded_.bytes = block.size();
    coded_.block = std::move(block);
}

}  // namespace

CodingResult CodeFrame(const CodingTask& task, const PlannedFrame& frame, CodedFrame* coded) {
    return FrameCoder(task, frame, coded).Run();
}
