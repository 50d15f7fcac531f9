#include "editing/timing.h"

#include <algorithm>
#include <numeric>

#include "animation/animation.h"
#include "editing/list_draft.h"
#include "gif/default_blocks.h"
#include "gif/descriptor.h"

namespace {

// Shares `total` out in the proportions of `parts`, whose sum is `sum`. What rounding takes from one the next ones get.
void ShareOut(uint64_t total, uint64_t sum, std::span<uint64_t> parts) {
    uint64_t before = 0, given = 0;
    for (uint64_t& part : parts) {
        before += part;
        const uint64_t upToHere = (before * total + sum / 2) / sum;
        part = upToHere - given;
        given = upToHere;
    }
}

void ApplyRetiming(const Retiming& how, std::span<uint64_t> delays) {
    const uint64_t sum = std::accumulate(delays.begin(), delays.end(), uint64_t{0});
    switch (how.kind) {
        case Retiming::kDelay: std::ranges::fill(delays, how.value); break;
        case Retiming::kScale: ShareOut(how.value, how.divisor, delays); break;
        case Retiming::kLeast:
            for (uint64_t& delay : delays) delay = std::max<uint64_t>(delay, how.value);
            break;
        case Retiming::kTotal:
            if (sum == 0) std::ranges::fill(delays, 1);
            ShareOut(how.value, sum ? sum : delays.size(), delays);
            break;
    }
}

// Players show a frame of these delays for longer than it says.
std::string NoteOfShortDelays(std::span<const uint32_t> old, std::span<const uint32_t> fresh) {
    size_t count = 0;
    for (size_t i = 0; i < old.size(); ++i) count += old[i] >= kShortestPlayedDelay && fresh[i] < kShortestPlayedDelay;
    if (count == 0) return "";
    return "of " + std::to_string(count) + (count == 1 ? " frame" : " frames") + " the delay is now below " +
           std::to_string(kShortestPlayedDelay) + ", for which players take " + std::to_string(kDelayInstead);
}

}  // namespace

std::vector<uint32_t> DelaysOf(const BlockList& list) {
    Animation animation;
    if (!animation.Open(list, Texts::kLeftOut)) throw std::bad_alloc();
    std::vector<uint32_t> delays;
    for (const Frame& frame : animation.Frames()) delays.push_back(frame.delay);
    return delays;
}

EditOutcome SetDelays(std::span<const uint32_t> delays, BlockList* list) {
    return WithinMemory([&] {
        Animation animation;
        if (!animation.Open(*list, Texts::kLeftOut)) return EditOutcome::OutOfMemory();
        ListDraft draft(*list);
        for (uint32_t number = 0; number < delays.size(); ++number) {
            const Frame& frame = animation.Frames()[number];
            if (delays[number] == frame.delay) continue;
            if (delays[number] > kMostDelay)
                return EditOutcome::Refused("frame " + std::to_string(number) + " would have a delay of " +
                                            std::to_string(delays[number]) + " hundredths of a second; " +
                                            std::to_string(kMostDelay) + " is the most");
            const bool hasControl = frame.control >= 0;
            Block control = hasControl ? list->blocks[static_cast<uint32_t>(frame.control)] : MakeControlBlock(list);
            ControlFields fields = GetControlFields(control);
            fields.delay = static_cast<uint16_t>(delays[number]);
            PutControlFields(&control, fields);
            if (!hasControl)
                draft.InsertBefore(frame.block, control);
            else if (!draft.Replace(static_cast<uint32_t>(frame.control), control))
                return EditOutcome::OutOfMemory();
        }
        return draft.Make(list) ? EditOutcome() : EditOutcome::OutOfMemory();
    });
}

EditOutcome Retime(std::span<const uint32_t> frames, const Retiming& how, BlockList* list) {
    if (frames.empty()) return EditOutcome::Refused("there is no frame");
    return WithinMemory([&] {
        const std::vector<uint32_t> old = DelaysOf(*list);
        std::vector<uint32_t> inOrder(frames.begin(), frames.end());
        std::ranges::sort(inOrder);
        std::vector<uint64_t> chosen;
        std::ranges::transform(inOrder, std::back_inserter(chosen), [&old](uint32_t frame) { return old[frame]; });
        ApplyRetiming(how, chosen);
        std::vector<uint32_t> fresh = old;
        for (size_t i = 0; i < inOrder.size(); ++i)
            fresh[inOrder[i]] = static_cast<uint32_t>(std::min<uint64_t>(chosen[i], UINT32_MAX));
        EditOutcome outcome = SetDelays(fresh, list);
        std::string note = outcome ? NoteOfShortDelays(old, fresh) : "";
        if (!note.empty()) outcome.notes.push_back(note);
        return outcome;
    });
}
