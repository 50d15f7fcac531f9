// Whole code sequences for an image, by where they clear the dictionary.
#pragma once

#include <atomic>
#include <cstdint>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "size/code_parser.h"
#include "size/code_sequence.h"

// Sequences for one form of the pixels. All procedures answer false when memory runs out, when the sequence
// would take more than `mostBits` bits, and when they were stopped; containers throw std::bad_alloc when memory runs
// out.
class AnyCodePasses {
public:
    virtual ~AnyCodePasses() = default;

    // Clears when the table is full, as most encoders do.
    virtual bool ClearWhenFull(const LookAhead& look, uint64_t mostBits, CodeSequence* made) = 0;

    // Keeps the full table as long as a fresh one, tried beside it, does not overtake it (deferred clear).
    virtual bool ClearWhenOvertaken(const LookAhead& look, uint64_t mostBits, CodeSequence* made) = 0;

    // Clears at those of the `points` that make the sequence shortest: a shortest path along them. `points` are pixels
    // in increasing order, 0 the first. From each the parser runs on, once with each look, past the filling of its
    // table too, until it is `slack` bits behind the best way to where it is. The last code before a clear is cut short
    // at the point, since the beginning of a string that is known is known.
    virtual bool ClearAtPoints(std::span<const LookAhead> looks, const std::vector<size_t>& points, uint64_t slack,
                               uint64_t mostBits, CodeSequence* made) = 0;
};

template <typename Pixels>
class CodePasses final : public AnyCodePasses {
public:
    // `pixels` must outlive this.
    CodePasses(const Pixels& pixels, unsigned codeSize, const std::atomic<bool>* stop)
        : pixels_(pixels), codeSize_(codeSize), stop_(stop) {}

    bool ClearWhenFull(const LookAhead& look, uint64_t mostBits, CodeSequence* made) override {
        Parser& parser = parsers_[0];
        Prepare(&parser, look);
        Begin(made);
        parser.Restart(0);
        while (parser.Step()) {
            made->codes.push_back(static_cast<uint16_t>(parser.Code()));
            if (!parser.IsFull() || parser.At() == pixels_.Count()) continue;
            made->bits += parser.Bits() + parser.NextWidth();
            made->codes.push_back(ClearCode());
            parser.Restart(parser.At());
            if (made->bits > mostBits || Stopped()) return false;
        }
        made->bits += parser.Bits() + parser.NextWidth();
        return made->bits <= mostBits;
    }

    bool ClearWhenOvertaken(const LookAhead& look, uint64_t mostBits, CodeSequence* made) override {
        Parser *kept = &parsers_[0], *fresh = &parsers_[1];
        Prepare(kept, look);
        Begin(made);
        uint64_t keptBefore = made->bits, freshBefore = 0;  // bits that stand before the parsers' first codes
        size_t clearAt = 0;                                 // where in the codes the fresh table would begin
        std::vector<uint16_t> freshCodes;
        bool isTrying = false;
        kept->Restart(0);
        for (;;) {
            const bool isFreshDue = isTrying && fresh->At() <= kept->At();
            Parser* due = isFreshDue ? fresh : kept;
            if (!due->Step()) break;
            (isFreshDue ? freshCodes : made->codes).push_back(static_cast<uint16_t>(due->Code()));
            if (!isTrying && kept->IsFull()) {
                if (keptBefore + kept->Bits() > mostBits || Stopped()) return false;
                isTrying = true;
                clearAt = made->codes.size();
                freshBefore = keptBefore + kept->Bits() + kept->NextWidth();
                freshCodes.clear();
                Prepare(fresh, look);
                fresh->Restart(kept->At());
            }
            if (!isTrying || fresh->At() < kept->At()) continue;
            const uint64_t keptBits = keptBefore + kept->Bits(), freshBits = freshBefore + fresh->Bits();
            if (freshBits <= keptBits) {
                made->codes.resize(clearAt);
                made->codes.push_back(ClearCode());
                made->codes.insert(made->codes.end(), freshCodes.begin(), freshCodes.end());
                std::swap(kept, fresh);
                keptBefore = freshBefore;
                isTrying = false;
            } else if (freshBits > keptBits + kTooFarBehind || fresh->IsFull()) {
                isTrying = false;
            }
        }
        made->bits = keptBefore + kept->Bits() + kept->NextWidth();
        return made->bits <= mostBits;
    }

    bool ClearAtPoints(std::span<const LookAhead> looks, const std::vector<size_t>& points, uint64_t slack,
                       uint64_t mostBits, CodeSequence* made) override {
        std::vector<Way> ways(points.size() + 1);
        ways[0].bits = codeSize_ + 1;
        for (size_t i = 0; i < points.size(); ++i) {
            if (Stopped()) return false;
            for (const LookAhead& look : looks) ExtendWay(i, look, points, slack, &ways);
        }
        if (ways.back().bits > mostBits) return false;
        std::vector<size_t> clears;  // backwards
        for (size_t i = points.size(); i != 0; i = ways[i].from) clears.push_back(ways[i].from);
        Begin(made);
        made->codes.clear();
        for (size_t i = clears.size(); i-- > 0;) {
            const size_t next = i ? clears[i - 1] : points.size();
            const size_t end = i ? points[next] : pixels_.Count();
            AppendRun(points[clears[i]], end, *ways[next].look, made);
        }
        made->bits = ways.back().bits;
        return true;
    }

private:
    using Parser = CodeParser<Pixels>;
    static constexpr uint64_t kTooFarBehind = 6000;  // bits

    // The best way to a point that ends with a clear code.
    struct Way {
        uint64_t bits = UINT64_MAX;
        size_t from = 0;                  // the point of the clear code before
        const LookAhead* look = nullptr;  // of the parser from there on
    };

    uint16_t ClearCode() const { return static_cast<uint16_t>(1u << codeSize_); }
    bool Stopped() const { return stop_ && stop_->load(std::memory_order_relaxed); }

    void Prepare(Parser* parser, const LookAhead& look) {
        if (!parser->Prepare(&pixels_, codeSize_, look)) throw std::bad_alloc();
    }

    void Begin(CodeSequence* made) {
        made->codes.assign(1, ClearCode());
        made->bits = codeSize_ + 1;
    }

    void ExtendWay(size_t from, const LookAhead& look, const std::vector<size_t>& points, uint64_t slack,
                   std::vector<Way>* ways) {
        Parser& parser = parsers_[0];
        const uint64_t before = (*ways)[from].bits;
        if (before == UINT64_MAX) return;
        Prepare(&parser, look);
        parser.Restart(points[from]);
        size_t next = from + 1;
        while (parser.Step()) {
            const uint64_t bits = before + parser.Bits() + parser.NextWidth();
            for (; next < ways->size(); ++next) {
                if ((next < points.size() ? points[next] : pixels_.Count()) > parser.At()) break;
                Way& way = (*ways)[next];
                if (way.bits != UINT64_MAX && bits > way.bits + slack) return;
                if (bits < way.bits) way = {bits, from, &look};
            }
        }
    }

    void AppendRun(size_t start, size_t end, const LookAhead& look, CodeSequence* made) {
        Parser& parser = parsers_[0];
        made->codes.push_back(ClearCode());
        Prepare(&parser, look);
        parser.Restart(start);
        while (parser.At() < end && parser.Step())
            made->codes.push_back(static_cast<uint16_t>(parser.At() > end ? parser.CodeUpTo(end) : parser.Code()));
    }

    const Pixels& pixels_;
    unsigned codeSize_;
    const std::atomic<bool>* stop_;
    Parser parsers_[2];
};
