#include "cli/printed_differences.h"

#include <algorithm>
#include <cstdio>

#include "cli/block_text.h"
#include "cli/json.h"
#include "cli/printable.h"
#include "gif/block_line.h"

namespace {

constexpr size_t kExcerptBytes = 60;
constexpr size_t kBytesBeforeChange = 12;
constexpr char kIndent[] = "        ";

std::string IndexText(int64_t index, const char* none) {
    return index == BlockDifference::kNone ? none : std::to_string(index);
}

// The words for what happened to the block.
std::vector<const char*> WordsFor(const BlockDifference& block) {
    std::vector<const char*> words;
    if (block.before == BlockDifference::kNone) words.push_back("added");
    if (block.after == BlockDifference::kNone) words.push_back("taken out");
    if (block.isMoved) words.push_back("moved");
    if (!block.fields.empty()) words.push_back("changed");
    if (block.isEncodedDifferently) words.push_back("encoded differently");
    return words;
}

std::string JoinedWordsFor(const BlockDifference& block) {
    std::string joined;
    for (const char* word : WordsFor(block)) joined.append(joined.empty() ? "" : ", ").append(word);
    return joined;
}

// The beginning of the first character at `at` or before, in UTF-8.
size_t CharacterStart(const std::string& text, size_t at) {
    while (at > 0 && at < text.size() && (text[at] & 0xC0) == 0x80) --at;
    return std::min(at, text.size());
}

// What of a long text stands about index `change`.
std::string Excerpt(const std::string& text, size_t change) {
    const size_t start = change > kBytesBeforeChange + 3 ? CharacterStart(text, change - kBytesBeforeChange) : 0;
    size_t end = text.size();
    if (end - start > kExcerptBytes) end = CharacterStart(text, start + kExcerptBytes);
    return (start ? "...\"" : "\"") + text.substr(start, end - start) + (end < text.size() ? "\"..." : "\"");
}

std::string ValuesOf(const FieldChange& change) {
    if (change.total) {
        std::string unit = change.after.substr(change.after.find(' ') + 1);
        if (change.field == "pixels") unit = change.total == 1 ? "pixel" : "pixels";
        const char* verb = change.differing == 1 ? " differs" : " differ";
        return std::to_string(change.differing) + " of " + std::to_string(change.total) + " " + unit + verb;
    }
    const bool isText = change.field == "text" || change.field == "name" || change.field == "identifier";
    if (!isText) return change.before + " -> " + change.after;
    const auto [one, other] = std::ranges::mismatch(change.before, change.after);
    const auto at = static_cast<size_t>(one - change.before.begin());
    return Excerpt(change.before, at) + " -> " + Excerpt(change.after, at);
}

void PrintChange(const char* indent, const std::string& field, const FieldChange& change) {
    printf("%s%s: %s\n", indent, field.c_str(), Printable(ValuesOf(change)).c_str());
}

void PrintDifference(const BlockDifference& block, const Block& shown) {
    const std::string places = IndexText(block.before, "-") + " -> " + IndexText(block.after, "-");
    printf("%s  %s: %s\n", places.c_str(), JoinedWordsFor(block).c_str(), Printable(LineOf(shown)).c_str());
    for (const FieldChange& change : block.fields) PrintChange(kIndent, change.field, change);
    if (block.bytesBefore != block.bytesAfter && block.isEncodedDifferently)
        printf("%sbytes: %u -> %u\n", kIndent, block.bytesBefore, block.bytesAfter);
}

// The block as it is now, or as it was.
const Block& ShownBlock(const BlockDifference& block, const BlockList& old, const BlockList& fresh) {
    if (block.after == BlockDifference::kNone) return old.blocks[static_cast<size_t>(block.before)];
    return fresh.blocks[static_cast<size_t>(block.after)];
}

std::string JsonOf(const FieldChange& change) {
    std::string json = "{\"field\": " + JsonText(change.field) + ", \"before\": " + JsonText(change.before) +
                       ", \"after\": " + JsonText(change.after);
    if (change.total)
        json += ", \"differing\": " + std::to_string(change.differing) + ", \"total\": " + std::to_string(change.total);
    return json + "}";
}

// `write` gives the JSON of one of the members.
template <typename Members, typename Write>
std::string JsonArray(const Members& members, Write write) {
    std::string json;
    for (const auto& member : members) json.append(json.empty() ? "" : ", ").append(write(member));
    return "[" + json + "]";
}

std::string JsonOfChanges(const std::vector<FieldChange>& changes) {
    return JsonArray(changes, [](const FieldChange& change) { return JsonOf(change); });
}

std::string JsonOf(const BlockDifference& block, const Block& shown) {
    return "{\"before\": " + IndexText(block.before, "null") + ", \"after\": " + IndexText(block.after, "null") +
           ", \"kindName\": " + JsonText(FormatKindName(shown.kind)) + ", \"line\": " + JsonText(LineOf(shown)) +
           ", \"differences\": " + JsonArray(WordsFor(block), [](const char* word) { return JsonText(word); }) +
           ", \"fields\": " + JsonOfChanges(block.fields) + ", \"bytesBefore\": " + std::to_string(block.bytesBefore) +
           ", \"bytesAfter\": " + std::to_string(block.bytesAfter) + "}";
}

}  // namespace

void PrintLines(const DocumentDifferences& differences, const BlockList& old, const BlockList& fresh) {
    for (const BlockDifference& block : differences.blocks) PrintDifference(block, ShownBlock(block, old, fresh));
    for (const FieldChange& change : differences.around)
        PrintChange("", change.field == "before" ? "before the signature" : "behind the last block", change);
}

void PrintJson(const DocumentDifferences& differences, const BlockList& old, const BlockList& fresh) {
    printf("{\"same\": %s, \"blocks\": [", differences.AreNone() ? "true" : "false");
    for (const BlockDifference& block : differences.blocks) {
        if (&block != &differences.blocks.front()) printf(", ");
        fputs(JsonOf(block, ShownBlock(block, old, fresh)).c_str(), stdout);
    }
    printf("], \"around\": %s}\n", JsonOfChanges(differences.around).c_str());
}
