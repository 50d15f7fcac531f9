#include "editing/findings.h"

#include <algorithm>
#include <cstring>

#include "animation/flashes.h"
#include "animation/stage.h"
#include "gif/descriptor.h"
#include "platform/text_encoding.h"

namespace {

// Where the checks put what they find.
class Finder {
public:
    Finder(const Animation& played, const ReadReport& load, std::vector<Finding>* findings)
        : animation(played), list(played.List()), report(load), findings_(findings) {}

    void Found(const char* check, int64_t block, std::string what, Mending mend = {}) {
        findings_->push_back({check, block, std::move(what), std::move(mend)});
    }

    const Animation& animation;
    const BlockList& list;
    const ReadReport& report;

private:
    std::vector<Finding>* findings_;
};

Mending Set(int64_t block, const std::string& fields) {
    return {"set", std::to_string(block) + " " + fields};
}

Mending Delete(int64_t block) {
    return {"delete", std::to_string(block)};
}

Mending Repair() {
    return {"repair", ""};
}

bool IsImageFrame(const Finder& finder, const Frame& frame) {
    return finder.list.blocks[frame.block].kind == kImageBlock;
}

void CheckDamages(Finder* finder) {
    for (const Damage& damage : finder->report.damages)
        finder->Found("damage", damage.block,
                      "at byte " + std::to_string(damage.offset) + " " + DescribeDamage(damage) +
                          (IsHarmless(damage) ? "; players do not mind" : "; players differ in what they show of it"),
                      Repair());
}

void CheckScreen(Finder* finder) {
    const Block* header = FindHeader(finder->list);
    if (!header) return;
    const HeaderFields screen = GetHeaderFields(*header);
    const std::string size =
        "width=" + std::to_string(finder->animation.Width()) + " height=" + std::to_string(finder->animation.Height());
    if (finder->animation.Frames().empty())
        finder->Found("empty", kWholeFile, "there is no image; players show nothing");
    if (screen.screenWidth == 0 || screen.screenHeight == 0)
        finder->Found("screen", 0, "the screen has no pixels; players take the size of the first image or show nothing",
                      Set(0, size));
    if (!FitsCanvas(finder->animation))
        finder->Found("screen", 0,
                      "the screen is so large that players run out of memory; its frames were not looked at");
    if (screen.aspect != 0)
        finder->Found("aspect", 0, "pixels are not square by the header; browsers show them square");
}

void CheckPlaces(Finder* finder) {
    int right = finder->animation.Width(), bottom = finder->animation.Height();
    std::vector<uint32_t> beyond;
    for (const Frame& frame : finder->animation.Frames()) {
        if (!IsImageFrame(*finder, frame)) continue;
        const ImageFields image = GetImageFields(finder->list.blocks[frame.block]);
        if (image.left + image.width > finder->animation.Width() ||
            image.top + image.height > finder->animation.Height())
            beyond.push_back(frame.block);
        right = std::max(right, image.left + image.width);
        bottom = std::max(bottom, image.top + image.height);
    }
    const std::string size =
        "width=" + std::to_string(std::min(right, 65535)) + " height=" + std::to_string(std::min(bottom, 65535));
    for (uint32_t block : beyond)
        finder->Found("place", block,
                      "the image reaches beyond the screen; browsers cut it off, Chrome and Firefox enlarge the screen "
                      "when it is the first one",
                      Set(0, size));
}

void CheckImages(Finder* finder) {
    for (const Frame& frame : finder->animation.Frames()) {
        const ImageFields image = GetImageFields(finder->list.blocks[frame.block]);
        if (IsImageFrame(*finder, frame) && (image.width == 0 || image.height == 0))
            finder->Found("size", frame.block, "the image has no pixels; some players stop here or refuse the file",
                          Delete(frame.block));
    }
}

void CheckDelays(Finder* finder) {
    if (finder->animation.Frames().size() < 2) return;
    for (const Frame& frame : finder->animation.Frames()) {
        if (frame.length == frame.delay) continue;
        const bool hasControl = frame.control >= 0;
        finder->Found("delay", hasControl ? frame.control : int64_t{frame.block},
                      (hasControl ? "a delay of " + std::to_string(frame.delay) : std::string("no delay")) +
                          "; Chrome, Edge, Firefox and Safari show the frame for 10 hundredths of a second, other "
                          "players as briefly as they can",
                      hasControl ? Set(frame.control, "delay=10") : Mending());
    }
}

// Whether `next` repaints all that `frame` clears.
bool IsPaintedOver(const Finder& finder, const Frame& frame, const Frame& next) {
    const Block& block = finder.list.blocks[next.block];
    return IsImageFrame(finder, next) && block.data && next.transparentIndex == kNoTransparency &&
           next.disposal != kDisposePrevious && Common(frame.area, next.area) == frame.area;
}

void CheckDisposals(Finder* finder) {
    const std::span<const Frame> frames = finder->animation.Frames();
    for (size_t i = 0; i < frames.size(); ++i) {
        const Frame& frame = frames[i];
        if (frame.control < 0) continue;
        const uint8_t packed = GetControlFields(finder->list.blocks[static_cast<uint32_t>(frame.control)]).packed;
        const int disposal = (packed & kControlDisposal) >> kControlDisposalShift;
        if (disposal == kDisposePreviousOfOld)
            finder->Found("disposal", frame.control,
                          "disposal 4 is not defined; browsers take it for 3 (previous), ImageMagick for nothing",
                          Set(frame.control, "disposal=previous"));
        else if (disposal > kDisposePreviousOfOld)
            finder->Found(
                "disposal", frame.control,
                std::string("disposal ") + std::to_string(disposal) + " is not defined; players take it for nothing",
                Set(frame.control, "disposal=leave"));
        if (i == 0 && frame.disposal == kDisposePrevious && frames.size() > 1)
            finder->Found("disposal", frame.control,
                          "there is nothing before the first frame to bring back; browsers clear the screen, others "
                          "leave the frame or show the background",
                          Set(frame.control, "disposal=background"));
        if (disposal == kDisposeBackground && i + 1 < frames.size() && !frame.area.IsEmpty() &&
            IsPaintedOver(*finder, frame, frames[i + 1]))
            finder->Found(
                "flicker", frame.control,
                "the frame is cleared although the next one covers it; players that show the clearing flicker",
                Set(frame.control, "disposal=leave"));
    }
}

void CheckControls(Finder* finder) {
    std::vector<bool> counts(finder->list.count);
    for (const Frame& frame : finder->animation.Frames())
        if (frame.control >= 0) counts[static_cast<size_t>(frame.control)] = true;
    for (uint32_t index = 0; index < finder->list.count; ++index) {
        const Block& block = finder->list.blocks[index];
        if (block.kind != kControlBlock) continue;
        if (!counts[index])
            finder->Found("control", index, "no image follows before the next control; players do not heed it",
                          Delete(index));
        else if (GetControlFields(block).packed & kControlUserInput)
            finder->Found("input", index, "it waits for the user; browsers go on after the delay",
                          Set(index, "input=no"));
    }
}

void CheckLoops(Finder* finder) {
    int64_t counted = kWholeFile;
    const int firstImage = FindBlock(finder->list, kImageBlock);
    for (uint32_t index = 0; index < finder->list.count; ++index) {
        const int repeats = RepeatsOf(finder->list.blocks[index]);
        if (repeats == Animation::kNoLoop) continue;
        if (counted != kWholeFile)
            finder->Found("loop", counted, "another loop block follows; browsers heed the last one, others the first",
                          Delete(counted));
        if (firstImage >= 0 && index > static_cast<uint32_t>(firstImage))
            finder->Found("loop", index, "the loop block stands behind an image; some players heed it only before all");
        counted = index;
    }
    const int repeats = finder->animation.Repeats();
    if (repeats <= 0 || finder->animation.Frames().size() < 2) return;
    const bool isOurs = finder->list.blocks[static_cast<uint32_t>(counted)].kind == kLoopBlock;
    finder->Found("loop", counted,
                  "a loop count of " + std::to_string(repeats) + "; browsers play the frames " +
                      std::to_string(repeats + 1) + " times, others " + std::to_string(repeats),
                  isOurs ? Set(counted, "iterations=0") : Mending());
}

bool HasPalette(const Block& image) {
    return (GetImageFields(image).packed & kHasPalette) != 0;
}

void CheckPalettes(Finder* finder) {
    const GlobalPalette global = FindGlobalPalette(finder->list);
    bool isUsed = false, hasImages = false;
    for (uint32_t index = 0; index < finder->list.count; ++index) {
        const Block& block = finder->list.blocks[index];
        hasImages |= block.kind == kImageBlock;
        isUsed |= block.kind == kPlainTextBlock || (block.kind == kImageBlock && !HasPalette(block));
        if (block.kind != kImageBlock || !HasPalette(block)) continue;
        const int colours = ColoursOfPacked(GetImageFields(block).packed);
        if (global.depth > 0 && colours <= 1 << global.depth &&
            std::equal(block.palette.Colours(), block.palette.Colours() + colours, global.colours.Colours()))
            finder->Found("palette", index,
                          "the local palette is the global one once more: " + std::to_string(3 * colours) + " bytes");
    }
    if (global.depth > 0 && hasImages && !isUsed)
        finder->Found("palette", 0,
                      "no image uses the global palette: " + std::to_string(3 << global.depth) + " bytes");
}

void CheckTexts(Finder* finder) {
    for (uint32_t index = 0; index < finder->list.count; ++index)
        if (finder->list.blocks[index].kind == kPlainTextBlock)
            finder->Found("text", index, "browsers do not show plain texts", Delete(index));
}

void CheckForeignBlocks(Finder* finder) {
    for (uint32_t index = 0; index < finder->list.count; ++index) {
        const Block& block = finder->list.blocks[index];
        const bool isForeign = block.kind == kApplicationBlock && RepeatsOf(block) == Animation::kNoLoop;
        if (isForeign) {
            const std::string name(reinterpret_cast<const char*>(block.descriptor) + kIdentifierOffset,
                                   kIdentifierBytes + kAuthenticationBytes);
            finder->Found("foreign", index,
                          "a block of another program, " + Utf8FromWindows1252(name) +
                              "; players skip it, the editor's classic manner ends the document here",
                          Delete(index));
        } else if (block.kind == kUnknownBlock) {
            finder->Found("foreign", index, "a block of an unknown kind; players skip it or stop here", Delete(index));
        }
    }
}

void AddFlashing(Finder* finder, BlockNaming naming, const Flashing& flashing) {
    const std::span<const Frame> frames = finder->animation.Frames();
    const uint32_t first = frames[flashing.firstFrame].block, last = frames[flashing.lastFrame].block;
    finder->Found("flash", first,
                  std::string(flashing.kind == FlashKind::kRed ? "red flashes" : "flashes") + " up to " + naming(last) +
                      ", " + std::to_string(flashing.flashes) +
                      " in a second over more than a quarter of the picture; they can cause seizures (WCAG 2.3.1), "
                      "delays of 17 and more prevent them");
}

using Check = void (*)(Finder* finder);
constexpr Check kChecks[] = {CheckDamages,  CheckScreen, CheckPlaces,   CheckImages, CheckDelays,       CheckDisposals,
                             CheckControls, CheckLoops,  CheckPalettes, CheckTexts,  CheckForeignBlocks};

}  // namespace

bool FindSurprises(const Animation& animation, const ReadReport& report, BlockNaming naming, const WorkWatch& watch,
                   std::vector<Finding>* findings) {
    Finder finder(animation, report, findings);
    for (Check check : kChecks) check(&finder);
    if (!FitsCanvas(animation)) return true;  // which CheckScreen has told
    std::vector<Flashing> flashes;
    if (!FindFlashes(animation, &flashes, watch)) return false;
    for (const Flashing& flashing : flashes) AddFlashing(&finder, naming, flashing);
    return true;
}
