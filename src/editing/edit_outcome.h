// What an operation on a document answers.
#pragma once

#include <new>
#include <string>
#include <utility>
#include <vector>

// Either the document was changed as asked for, or it is as it was.
struct [[nodiscard]] EditOutcome {
    std::string refusal;             // why nothing was changed, in one line; empty when it was done
    std::vector<std::string> notes;  // what came out otherwise than one may expect, a line each

    explicit operator bool() const { return refusal.empty(); }

    static EditOutcome Refused(std::string why) { return {std::move(why), {}}; }
    static EditOutcome OutOfMemory() { return Refused("not enough memory"); }
};

// What `work` answers; also when a container in it finds no memory.
template <typename Work>
EditOutcome WithinMemory(Work work) {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return EditOutcome::OutOfMemory();
    }
}
