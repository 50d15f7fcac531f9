// The smallest document that plays the same.
#pragma once

#include <atomic>
#include <optional>

#include "gif/gif_reader.h"
#include "platform/identity.h"
#include "size/code_search.h"
#include "size/plays_alike.h"

struct OptimiseOptions {
    Effort effort = Effort::kNormal;
    bool keepFrames = false;  // as many frames with the same times as before
    size_t threads = 0;       // that work at a time; 0: as many as there are processors
    int lossy = 0;            // how far a pixel may be from its colour (ColourDistance), in any frame; 0: not at all
    const std::atomic<bool>* stop = nullptr;  // becomes true to give up, also in the midst of a frame
};

// What goes on meanwhile.
class OptimiseWatch {
public:
    virtual ~OptimiseWatch() = default;
    // What becomes of the first `done` frames of `count` is being decided; this ends before the first one is encoded.
    virtual void OnPlanned(size_t done, size_t count) = 0;
    // `done` frames of `count` are encoded. Comes from any thread, from one at a time.
    virtual void OnFrame(size_t done, size_t count) = 0;
    // Whether to give up; asked from any thread.
    virtual bool StopRequested() { return false; }
};

enum class OptimiseResult : uint8_t {
    kSmaller,
    kNothingGained,  // whatever was tried
    kLeftAlone,      // what is damaged, or what players disagree about, is not touched
    kNoMemory,
    kStopped,
};

// What there is to tell beside the result.
struct OptimiseNotes {
    Loss loss;                        // of colours, of kSmaller
    const char* leftAlone = nullptr;  // of kLeftAlone: why, for behind "because"
};

// Makes `*smaller` a document that plays the same as `list`, which was read whole with that report, and takes fewer
// bytes. Before it is handed over it is written, read again, composed and compared with `list`, canvas by canvas. Any
// other result than kSmaller leaves `*smaller` alone. The number of threads changes nothing of it. `watch` and `notes`
// may be null.
OptimiseResult Optimise(const BlockList& list, const ReadReport& report, const OptimiseOptions& options,
                        OptimiseWatch* watch, BlockList* smaller, OptimiseNotes* notes = nullptr);

// The same, but what loses colours is taken only where it takes fewer bytes than what loses none.
OptimiseResult OptimiseWithin(const BlockList& list, const ReadReport& report, const OptimiseOptions& options,
                              OptimiseWatch* watch, BlockList* smaller, OptimiseNotes* notes);

// The bytes of the file that `list`, a whole document, is written as, signed with the names unless they are null;
// nothing when memory runs out.
std::optional<uint64_t> WrittenBytes(const BlockList& list, const Identity* names = nullptr);
