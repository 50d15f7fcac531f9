#include "editing/selection.h"

#include <algorithm>
#include <charconv>

namespace {

struct KindName {
    const char* name;
    uint16_t kind;
};
constexpr KindName kKindNames[] = {
    {"header", kHeaderBlock},       {"image", kImageBlock},      {"control", kControlBlock},
    {"plaintext", kPlainTextBlock}, {"comment", kCommentBlock},  {"application", kApplicationBlock},
    {"loop", kLoopBlock},           {"names", kBlockNamesBlock}, {"unknown", kUnknownBlock},
};
constexpr std::string_view kLastWord = "last";
constexpr std::string_view kFrameName = "frame";

bool TakePrefix(std::string_view prefix, std::string_view* text) {
    if (!text->starts_with(prefix)) return false;
    text->remove_prefix(prefix.size());
    return true;
}

bool TakeNumber(std::string_view* text, uint32_t* number) {
    auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), *number);
    if (error != std::errc()) return false;
    text->remove_prefix(static_cast<size_t>(end - text->data()));
    return true;
}

// Adds what is not there yet. `isThere` has a place for every number.
void AddOnce(uint32_t number, std::vector<bool>* isThere, std::vector<uint32_t>* numbers) {
    if ((*isThere)[number]) return;
    (*isThere)[number] = true;
    numbers->push_back(number);
}

}  // namespace

std::vector<FrameBlocks> FindFrames(const BlockList& list) {
    std::vector<FrameBlocks> frames;
    std::vector<uint32_t> controls;
    for (uint32_t index = 0; index < list.count; ++index) {
        const uint16_t kind = list.blocks[index].kind;
        if (kind == kControlBlock) controls.push_back(index);
        if (kind == kImageBlock) {
            controls.push_back(index);
            frames.push_back({controls});
        }
        if (kind == kImageBlock || kind == kPlainTextBlock) controls.clear();
    }
    return frames;
}

// A number, or "last" with what stands between it and the end. "last-" is followed by another place, in a range.
bool Selection::TakePlace(std::string_view* text, Place* place) {
    *place = {};
    if (!TakePrefix(kLastWord, text)) return TakeNumber(text, &place->number);
    place->fromEnd = true;
    std::string_view rest = *text;
    if (TakePrefix("-", &rest) && TakeNumber(&rest, &place->number)) *text = rest;
    return true;
}

bool Selection::TakeRange(std::string_view text, Term* term) {
    if (!TakePlace(&text, &term->first)) return false;
    term->last = term->first;
    if (TakePrefix("-", &text) && !TakePlace(&text, &term->last)) return false;
    return text.empty();
}

bool Selection::ParseTerm(std::string_view text, Term* term) {
    term->text = text;
    const size_t colon = text.find(':');
    const std::string_view name = text.substr(0, colon);
    const auto* known = std::ranges::find(kKindNames, name, &KindName::name);
    if (name == kFrameName)
        term->kind = kFrame;
    else if (known != std::end(kKindNames))
        term->kind = known->kind;
    else
        return TakeRange(text, term);
    term->isAll = colon == std::string_view::npos;
    return term->isAll || TakeRange(text.substr(colon + 1), term);
}

std::string Selection::Parse(std::string_view text) {
    terms_.clear();
    for (bool isMore = true; isMore;) {
        const size_t comma = text.find(',');
        isMore = comma != std::string_view::npos;
        if (!ParseTerm(text.substr(0, comma), &terms_.emplace_back()))
            return "give blocks as in 7, 3-last, comment, image:0 or frame:2-4, not " + terms_.back().text;
        if (isMore) text.remove_prefix(comma + 1);
    }
    return "";
}

std::string Selection::UnitOf(const Term& term) {
    if (term.kind == kFrame) return std::string(kFrameName);
    const auto* known = std::ranges::find(kKindNames, term.kind, &KindName::kind);
    return known == std::end(kKindNames) ? "block" : known->name + std::string(" block");
}

bool Selection::Resolve(const Term& term, size_t count, uint32_t* first, uint32_t* last, std::string* why) {
    if (count == 0) {
        *why = "there is no " + UnitOf(term);
        return false;
    }
    const auto end = static_cast<uint32_t>(count) - 1;
    auto number = [end](const Place& place) {
        if (!place.fromEnd) return place.number;
        return place.number <= end ? end - place.number : UINT32_MAX;
    };
    *first = term.isAll ? 0 : number(term.first);
    *last = term.isAll ? end : number(term.last);
    if (*first > end || *last > end) {
        const bool isNamed = term.text.find(':') != std::string::npos;
        *why = "there is no " + (isNamed ? term.text : UnitOf(term) + " " + term.text) + "; they are numbered 0 to " +
               std::to_string(end);
        return false;
    }
    if (*first > *last) *why = "the range " + term.text + " runs backwards";
    return *first <= *last;
}

// What a term counts, each with its blocks.
std::vector<std::vector<uint32_t>> Selection::UnitsOf(const Term& term, const BlockList& list) {
    std::vector<std::vector<uint32_t>> units;
    if (term.kind == kFrame) {
        for (const FrameBlocks& frame : FindFrames(list)) units.push_back(frame.blocks);
        return units;
    }
    for (uint32_t i = 0; i < list.count; ++i)
        if (term.kind == kAnyBlock || list.blocks[i].kind == term.kind) units.push_back({i});
    return units;
}

std::vector<uint32_t> Selection::Find(const BlockList& list, std::string* why) const {
    std::vector<uint32_t> found;
    std::vector<bool> isThere(list.count);
    std::string lacking;
    for (const Term& term : terms_) {
        const std::vector<std::vector<uint32_t>> units = UnitsOf(term, list);
        uint32_t first = 0, last = 0;
        if (!Resolve(term, units.size(), &first, &last, &lacking)) {
            if (term.isAll) continue;
            *why = lacking;
            return {};
        }
        for (uint32_t i = first; i <= last; ++i)
            for (uint32_t block : units[i]) AddOnce(block, &isThere, &found);
    }
    if (found.empty()) *why = lacking;
    return found;
}

std::vector<uint32_t> Selection::FindFrameNumbers(size_t count, std::string* why) const {
    std::vector<uint32_t> found;
    std::vector<bool> isThere(count);
    for (const Term& term : terms_) {
        if (term.kind != kFrame && term.kind != kAnyBlock) {
            *why = "give frames as in 4, 2-last or frame:0, not " + term.text;
            return {};
        }
        Term frames = term;
        frames.kind = kFrame;
        uint32_t first = 0, last = 0;
        if (!Resolve(frames, count, &first, &last, why)) return {};
        for (uint32_t i = first; i <= last; ++i) AddOnce(i, &isThere, &found);
    }
    return found;
}
