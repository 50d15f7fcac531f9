#include "animation/flashes.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <deque>

#include "animation/stage.h"

namespace {

constexpr uint64_t kSecond = 100;         // hundredths
constexpr uint32_t kMostFlashes = 3;      // within it
constexpr float kLuminanceChange = 0.1f;  // of the maximum, 1
constexpr float kDarkerBelow = 0.8f;
constexpr float kRedChange = 20;  // of (R - G - B) x 320
constexpr float kRedScale = 320;
constexpr float kSaturatedRed = 0.8f;  // R / (R + G + B)
constexpr uint64_t kQuarter = 4;
constexpr uint64_t kMostFlashSamples = uint64_t{1} << 20;  // pixels that are looked at; of larger pictures every nth

// Linear light of an sRGB channel.
struct LinearTable {
    float of[256];

    LinearTable() {
        for (int i = 0; i < 256; ++i) {
            const double value = i / 255.0;
            of[i] = static_cast<float>(value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4));
        }
    }
};

// What of a pixel counts.
struct Light {
    float luminance = 0;  // 0 to 1
    float red = 0;        // 0 to 320
    bool isSaturated = false;
};

Light LightOf(uint32_t pixel, const LinearTable& linear) {
    uint8_t bytes[4];
    memcpy(bytes, &pixel, sizeof bytes);
    if (pixel == kTransparent) return {1, 0, false};
    const float red = linear.of[bytes[0]], green = linear.of[bytes[1]], blue = linear.of[bytes[2]];
    return {0.2126f * red + 0.7152f * green + 0.0722f * blue, std::max(0.0f, (red - green - blue) * kRedScale),
            red > 0 && red >= kSaturatedRed * (red + green + blue)};
}

enum Direction : int8_t { kDown = -1, kStill = 0, kUp = 1 };

// Follows one value up and down. A change counts from the last turning point, however many frames it takes.
template <typename IsChange>
Direction Follow(float value, float* extreme, Direction* direction, IsChange isChange) {
    const Direction now = value > *extreme ? kUp : kDown;
    if (value == *extreme) return kStill;
    if (now == *direction) {  // farther the same way
        *extreme = value;
        return kStill;
    }
    if (!isChange(*extreme, value)) return kStill;
    *extreme = value;
    *direction = now;
    return now;
}

// One pixel that is looked at.
struct Sample {
    float luminance, red;  // at the last turning point, or as far as it went since
    Direction luminanceWay, redWay;
    bool redWasSaturated;

    void Start(const Light& light) { *this = {light.luminance, light.red, kStill, kStill, light.isSaturated}; }

    Direction FollowLuminance(const Light& light) {
        return Follow(light.luminance, &luminance, &luminanceWay, [](float before, float now) {
            // Values of eight bits meet the tenth or miss it by far more than this.
            return std::abs(now - before) >= kLuminanceChange - 1e-6f && std::min(now, before) < kDarkerBelow;
        });
    }

    Direction FollowRed(const Light& light) {
        const float before = red;
        const Direction way = Follow(light.red, &red, &redWay, [&](float old, float now) {
            return std::abs(now - old) > kRedChange && (light.isSaturated || redWasSaturated);
        });
        if (red != before) redWasSaturated = light.isSaturated;
        return way;
    }
};

// The changes of enough of the picture at once, in the order of time, each against the one before.
class FlashCounter {
public:
    explicit FlashCounter(FlashKind kind) : kind_(kind) {}

    // More than a quarter went that way. Returns how many flashes there were within the last second.
    void Add(Direction way, uint64_t time, uint32_t frame, uint32_t round, std::vector<Flashing>* found) {
        if (!recent_.empty() && recent_.back().way == way) return;
        recent_.push_back({way, time, frame, round});
        while (time - recent_.front().time >= kSecond) recent_.pop_front();
        const auto flashes = static_cast<uint32_t>(recent_.size() / 2);
        if (flashes > kMostFlashes) Report(flashes, found);
    }

private:
    struct Change {
        Direction way;
        uint64_t time;
        uint32_t frame, round;
    };

    // Frames of two rounds are not one range: it ends with the first of them.
    void Report(uint32_t flashes, std::vector<Flashing>* found) {
        const Change &first = recent_.front(), &last = recent_.back();
        const bool wraps = first.round != last.round;
        Flashing flashing = {kind_, wraps ? 0 : first.frame, wraps ? UINT32_MAX : last.frame, flashes};
        for (Flashing& known : *found) {
            if (known.kind != kind_ || known.firstFrame > flashing.lastFrame || known.lastFrame < flashing.firstFrame)
                continue;
            known.firstFrame = std::min(known.firstFrame, flashing.firstFrame);
            known.lastFrame = std::max(known.lastFrame, flashing.lastFrame);
            known.flashes = std::max(known.flashes, flashes);
            return;
        }
        found->push_back(flashing);
    }

    FlashKind kind_;
    std::deque<Change> recent_;  // within a second
};

class FlashFinder {
public:
    FlashFinder(const Animation& animation, const WorkWatch& watch) : animation_(animation), watch_(watch) {}

    bool Run(std::vector<Flashing>* found) {
        PlaceSamples();
        samples_ = AllocateScratchArray<Sample>(columns_ * rows_);
        if (!samples_ || !stage_.Open(animation_, 0)) return false;
        // A second round and the second behind it show whatever may come.
        enough_ = 2 * animation_.Length() + 2 * kSecond;
        for (uint32_t round = 0; start_ < enough_ && (animation_.Plays() == 0 || round < animation_.Plays()); ++round)
            if (!PlayOnce(round, found)) return false;
        const auto last = static_cast<uint32_t>(animation_.Frames().size() - 1);
        for (Flashing& flashing : *found) flashing.lastFrame = std::min(flashing.lastFrame, last);
        return true;
    }

private:
    void PlaceSamples() {
        do {
            ++step_;
            columns_ = (static_cast<uint64_t>(animation_.Width()) + step_ - 1) / step_;
            rows_ = (static_cast<uint64_t>(animation_.Height()) + step_ - 1) / step_;
        } while (columns_ * rows_ > kMostFlashSamples);
    }

    bool PlayOnce(uint32_t round, std::vector<Flashing>* found) {
        const std::span<const Frame> frames = animation_.Frames();
        for (uint32_t frame = 0; frame < frames.size(); ++frame) {
            if (!stage_.Show(frame)) return false;
            const uint64_t time = start_ + frames[frame].start;
            Look(time, frame, round, found);
            if (!GoesOn(watch_, static_cast<size_t>(std::min(time, enough_) * kParts / enough_), kParts)) return false;
        }
        start_ += animation_.Length();
        return true;
    }

    void Look(uint64_t time, uint32_t frame, uint32_t round, std::vector<Flashing>* found) {
        uint64_t luminance[3] = {}, red[3] = {};  // samples that went down, stood still, went up
        const Rectangle changed = stage_.Changed();
        for (uint64_t row = FirstAt(changed.top); row * step_ < static_cast<uint64_t>(changed.bottom); ++row) {
            const uint32_t* pixels = stage_.Canvas().Row(static_cast<int>(row * step_));
            for (uint64_t column = FirstAt(changed.left); column * step_ < static_cast<uint64_t>(changed.right);
                 ++column) {
                Sample& sample = samples_[static_cast<size_t>(row * columns_ + column)];
                const Light light = LightOf(pixels[column * step_], linear_);
                if (!started_) {
                    sample.Start(light);
                    continue;
                }
                ++luminance[1 + sample.FollowLuminance(light)];
                ++red[1 + sample.FollowRed(light)];
            }
        }
        started_ = true;
        for (Direction way : {kDown, kUp}) {
            if (IsEnough(luminance[1 + way])) general_.Add(way, time, frame, round, found);
            if (IsEnough(red[1 + way])) red_.Add(way, time, frame, round, found);
        }
    }

    uint64_t FirstAt(int edge) const { return (static_cast<uint64_t>(edge) + step_ - 1) / step_; }
    bool IsEnough(uint64_t samples) const { return samples * kQuarter > columns_ * rows_; }

    static constexpr size_t kParts = 1000;  // of the work, as the watch is told of them

    const Animation& animation_;
    const WorkWatch& watch_;
    Stage stage_;
    const LinearTable linear_;
    uint64_t step_ = 0, columns_ = 0, rows_ = 0;
    std::unique_ptr<Sample[]> samples_;
    bool started_ = false;
    uint64_t start_ = 0;   // of the round
    uint64_t enough_ = 0;  // so long it is played
    FlashCounter general_{FlashKind::kGeneral}, red_{FlashKind::kRed};
};

}  // namespace

bool FindFlashes(const Animation& animation, std::vector<Flashing>* found, const WorkWatch& watch) {
    if (animation.Frames().size() < 2 || animation.Screen().IsEmpty()) return true;
    return FlashFinder(animation, watch).Run(found);
}
