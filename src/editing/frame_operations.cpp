#include "editing/frame_operations.h"

#include <algorithm>
#include <numeric>

#include "animation/animation.h"
#include "editing/block_operations.h"
#include "editing/keep_looks.h"
#include "editing/list_draft.h"
#include "editing/selection.h"
#include "editing/timing.h"
#include "gif/default_blocks.h"
#include "gif/descriptor.h"

namespace {

constexpr uint32_t kNoFrame = UINT32_MAX;

EditOutcome NoFrames() {
    return EditOutcome::Refused("there is no frame");
}

// The order of blocks in which the place of frame i has frame places[i], or none. One that comes to another place
// stands with all its controls where that one's image stood.
std::vector<uint32_t> OrderOf(const BlockList& list, std::span<const FrameBlocks> frames,
                              std::span<const uint32_t> places) {
    std::vector<uint32_t> frameOf(list.count, kNoFrame);
    for (uint32_t i = 0; i < frames.size(); ++i)
        for (uint32_t block : frames[i].blocks) frameOf[block] = i;
    std::vector<uint32_t> order;
    for (uint32_t index = 0; index < list.count; ++index) {
        const uint32_t frame = frameOf[index];
        if (frame == kNoFrame || places[frame] == frame) {
            order.push_back(index);
        } else if (list.blocks[index].kind == kImageBlock && places[frame] != kNoFrame) {
            const std::vector<uint32_t>& blocks = frames[places[frame]].blocks;
            order.insert(order.end(), blocks.begin(), blocks.end());
        }
    }
    return order;
}

ControlFields FieldsOf(const BlockList& list, const Frame& frame) {
    return frame.control < 0 ? ControlFields{} : GetControlFields(list.blocks[static_cast<uint32_t>(frame.control)]);
}

// Gives a control to each frame for which another one counts than it had in `old`.
bool KeepControls(const BlockList& old, std::span<const Look> looks, BlockList* list) {
    Animation before, after;
    if (!before.Open(old, Texts::kLeftOut) || !after.Open(*list, Texts::kLeftOut)) return false;
    ListDraft draft(*list);
    for (uint32_t number = 0; number < looks.size(); ++number) {
        const Frame& frame = after.Frames()[number];
        const ControlFields fields = FieldsOf(old, before.Frames()[looks[number].frame]);
        if (fields == FieldsOf(*list, frame)) continue;
        Block control = MakeControlBlock(list);
        PutControlFields(&control, fields);
        draft.InsertBefore(frame.block, control);
    }
    return draft.Make(list);
}

// Puts other frames into the places of frames, see OrderOf, and makes `*made` of that.
EditOutcome Arrange(const BlockList& list, std::span<const uint32_t> places, BlockList* made) {
    const std::vector<FrameBlocks> frames = FindFrames(list);
    std::vector<Look> looks;
    for (uint32_t place : places)
        if (place != kNoFrame) looks.push_back({&list, place});
    if (!TakeBlocks(list, OrderOf(list, frames, places), made) || !KeepControls(list, looks, made))
        return EditOutcome::OutOfMemory();
    EditOutcome outcome = KeepScreen(list, made);
    return outcome ? KeepLooks(looks, made) : outcome;
}

EditOutcome ArrangeIn(std::span<const uint32_t> places, BlockList* list) {
    bool isAsItWas = true;
    for (uint32_t i = 0; i < places.size(); ++i) isAsItWas &= places[i] == i;
    if (isAsItWas) return {};
    BlockList made;
    EditOutcome outcome = Arrange(*list, places, &made);
    if (outcome) *list = std::move(made);
    return outcome;
}

std::vector<uint32_t> PlacesAsTheyAre(const BlockList& list) {
    std::vector<uint32_t> places(FindFrames(list).size());
    std::iota(places.begin(), places.end(), 0u);
    return places;
}

// The delays of the frames that thinning keeps. One that goes alone keeps what it has.
std::vector<uint32_t> DelaysWhenThinned(const std::vector<uint32_t>& delays, uint32_t every) {
    std::vector<uint32_t> kept;
    for (size_t first = 0; first < delays.size(); first += every) {
        const size_t end = std::min<size_t>(delays.size(), first + every);
        uint64_t sum = 0;
        for (size_t i = first; i < end; ++i) sum += PlayedDelay(static_cast<uint16_t>(delays[i]));
        kept.push_back(end - first == 1 ? delays[first] : static_cast<uint32_t>(std::min<uint64_t>(sum, UINT32_MAX)));
    }
    return kept;
}

}  // namespace

EditOutcome ReverseFrames(std::span<const uint32_t> frames, BlockList* list) {
    return WithinMemory([&] {
        if (frames.empty()) return NoFrames();
        std::vector<uint32_t> inOrder(frames.begin(), frames.end());
        std::ranges::sort(inOrder);
        std::vector<uint32_t> places = PlacesAsTheyAre(*list);
        for (size_t i = 0; i < inOrder.size(); ++i) places[inOrder[i]] = inOrder[inOrder.size() - 1 - i];
        return ArrangeIn(places, list);
    });
}

EditOutcome ThinFrames(uint32_t every, BlockList* list) {
    return WithinMemory([&] {
        std::vector<uint32_t> places = PlacesAsTheyAre(*list);
        if (places.empty()) return NoFrames();
        for (uint32_t i = 0; i < places.size(); ++i)
            if (i % every != 0) places[i] = kNoFrame;
        if (every == 1) return EditOutcome();
        BlockList made;
        const std::vector<uint32_t> delays = DelaysWhenThinned(DelaysOf(*list), every);
        EditOutcome outcome = Arrange(*list, places, &made);
        const std::vector<std::string> notes = outcome.notes;
        if (outcome) outcome = SetDelays(delays, &made);
        outcome.notes = notes;
        if (outcome) *list = std::move(made);
        return outcome;
    });
}

EditOutcome CutFrames(std::span<const uint32_t> frames, BlockList* list) {
    return WithinMemory([&] {
        if (frames.empty()) return NoFrames();
        std::vector<uint32_t> places(FindFrames(*list).size(), kNoFrame);
        for (uint32_t frame : frames) places[frame] = frame;
        return ArrangeIn(places, list);
    });
}
