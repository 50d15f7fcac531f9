// Blocks of a document, chosen by words: "7", "3-9", "last-2", "comment", "image:0", "frame:3-last", and lists of them
// with commas.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "gif/block_list.h"

// The blocks of one frame: an image and the controls that stand before it, behind the picture or text before those.
struct FrameBlocks {
    std::vector<uint32_t> blocks;  // in the order of the list; the last one is the image
};

// The frames of a document, in its order.
std::vector<FrameBlocks> FindFrames(const BlockList& list);

// A selection in words, before it is known what document it is about.
//
//   7, 3-9       blocks by their numbers, from 0; a range has both its ends
//   last         the last one; last-2 is two before it, and stands wherever a number does
//   comment      all blocks of a kind: header, image, control, plaintext, application, comment, loop, names, unknown
//   image:0      the first of a kind; ranges as above: image:1-last
//   frame:4      the fifth frame with its controls; frame alone is all of them
class Selection {
public:
    // What is wrong with the words, in one line; empty when they can be a selection.
    [[nodiscard]] std::string Parse(std::string_view text);

    // The numbers of the blocks in the order of the words, each once. Without any, `*why` says in one line what the
    // document lacks: a number that it does not have, or all the kinds.
    std::vector<uint32_t> Find(const BlockList& list, std::string* why) const;

    // The same for frames alone, of which there are `count`: their numbers. A plain number or range means frames here.
    std::vector<uint32_t> FindFrameNumbers(size_t count, std::string* why) const;

private:
    struct Place {
        bool fromEnd = false;
        uint32_t number = 0;
    };
    struct Term {
        std::string text;
        int kind = kAnyBlock;  // or a BlockKind, or kFrame
        bool isAll = false;
        Place first, last;
    };
    static constexpr int kAnyBlock = -1;
    static constexpr int kFrame = -2;

    static bool TakePlace(std::string_view* text, Place* place);
    static bool TakeRange(std::string_view text, Term* term);
    static bool ParseTerm(std::string_view text, Term* term);
    static bool Resolve(const Term& term, size_t count, uint32_t* first, uint32_t* last, std::string* why);
    static std::string UnitOf(const Term& term);
    static std::vector<std::vector<uint32_t>> UnitsOf(const Term& term, const BlockList& list);

    std::vector<Term> terms_;
};
