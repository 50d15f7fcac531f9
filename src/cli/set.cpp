// zephyr set: changing the fields of one block.
#include <algorithm>

#include "cli/block_fields.h"
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/edit_command.h"
#include "gif/application_data.h"
#include "gif/descriptor.h"
#include "gif/source_bytes.h"

namespace {

struct Assignment {
    std::string field, value;
};

// The first malformed one of the words, or an empty text.
std::string ReadAssignments(std::span<const std::string> words, std::vector<Assignment>* assignments) {
    for (const std::string& word : words) {
        size_t equals = word.find('=');
        if (equals == 0 || equals == std::string::npos) return word;
        assignments->push_back({word.substr(0, equals), word.substr(equals + 1)});
    }
    return "";
}

// Puts the changed copy of a block back. One whose content is as before keeps the bytes of its file; with data it knows
// that itself, and in the classic manner there are none. False when memory runs out.
bool Store(BlockList* list, const Block& edited, uint32_t index) {
    const bool comparesContent = (list->flags & kReadWhole) && !HasBlockData(edited);
    bool differs;
    return comparesContent ? StoreEdited(list, edited, index, &differs) : PutBlock(list, edited, index);
}

// The same, with `*edited` the block as it stands then.
bool StoreAndReload(BlockList* list, uint32_t index, Block* edited) {
    return Store(list, *edited, index) && GetBlock(*list, edited, index);
}

// Tells when the screen was set to something else than what the images need.
void WarnOfScreen(const HeaderFields& kept, const HeaderFields& wanted, const std::vector<Assignment>& assignments,
                  const std::string& path) {
    auto warn = [&](const char* field, uint16_t wish, uint16_t fact) {
        bool isAsked = std::any_of(assignments.begin(), assignments.end(),
                                   [field](const Assignment& given) { return given.field == field; });
        if (isAsked && wish != fact)
            Complain(path, std::string("warning: ") + field + " became " + std::to_string(fact) + ", not " +
                               std::to_string(wish) + ": saving fits the screen to the images");
    };
    warn("width", wanted.screenWidth, kept.screenWidth);
    warn("height", wanted.screenHeight, kept.screenHeight);
}

class Setting : public Edit {
public:
    std::string Read(const Options& options, const Words& operands) override {
        manner_ = options.DocumentManner();
        const std::string malformed = ReadAssignments(std::span(operands).subspan(1), &assignments_);
        if (!malformed.empty()) return "give FIELD=VALUE, not " + malformed;
        return blocks_.Parse(operands[0]);
    }

    EditAnswer Change(LoadedFile* file) override {
        std::string why;
        const std::vector<uint32_t> blocks = blocks_.Find(file->list, &why);
        if (blocks.empty()) return EditOutcome::Refused(why);
        isSet_.assign(assignments_.size(), false);
        noSuchField_.assign(assignments_.size(), "");
        EditAnswer answer;
        for (uint32_t index : blocks) {
            answer = SetFields(&file->list, index);
            if (!answer) return answer;
        }
        for (size_t i = 0; i < isSet_.size(); ++i)
            if (!isSet_[i]) return EditOutcome::Refused(noSuchField_[i]);
        wanted_ = GetHeaderFields(file->list.blocks[0]);
        answer.touched = blocks;
        return answer;
    }

    void Report(const LoadedFile& file, const std::string&, const std::string& out) override {
        WarnOfScreen(GetHeaderFields(file.list.blocks[0]), wanted_, assignments_, NameOfOutput(out));
    }

    bool ReadsStandardInput() const override {
        return std::ranges::any_of(assignments_, [](const Assignment& given) { return given.value == "@-"; });
    }

private:
    // Sets those of the fields that the block has.
    EditAnswer SetFields(BlockList* list, uint32_t index) {
        const std::string place = "block " + std::to_string(index) + ": ";
        Block edited = list->blocks[index];
        EditAnswer answer;
        for (size_t i = 0; i < assignments_.size(); ++i) {
            const bool makesSource = MakesSource(edited, assignments_[i].field);
            if (makesSource && !StoreAndReload(list, index, &edited)) return EditOutcome::Refused("out of memory");
            const FieldRefusal refusal = SetBlockField(&edited, assignments_[i].field, assignments_[i].value, manner_);
            if (refusal.noSuchField) {
                noSuchField_[i] = place + refusal.text;
                continue;
            }
            isSet_[i] = true;
            if (makesSource) PutBlock(list, edited, index);
            if (refusal.text.empty()) continue;
            answer.refusal = refusal.wrongWords || !refusal.file.empty() ? refusal.text : place + refusal.text;
            answer.wrongWords = refusal.wrongWords;
            answer.file = refusal.file;
            return answer;
        }
        if (!Store(list, edited, index)) answer.refusal = "out of memory";
        return answer;
    }

    Manner manner_ = Manner::kWhole;
    Selection blocks_;
    std::vector<Assignment> assignments_;
    std::vector<bool> isSet_;               // which of them some block had
    std::vector<std::string> noSuchField_;  // what is said when none has them
    HeaderFields wanted_ = {};
};

}  // namespace

const char kSetHelp[] =
    "Usage: zephyr set [OPTION...] IN OUT SELECTION FIELD=VALUE...\n"
    "       zephyr set --in-place [OPTION...] SELECTION FIELD=VALUE... -- FILE...\n"
    "\n"
    "Loads the GIF file IN, changes fields of the blocks of SELECTION (0 is the\n"
    "header) and writes the result to OUT, all other blocks as they were. Of several\n"
    "blocks those are changed that have the field. Fields of each kind of block:\n"
    "\n"
    "  HEADER      width height background sorted\n"
    "              colour:N (N counts the global colours from 0)\n"
    "              colours (of the palette: 2, 4, 8 ... 256, or 0 for none)\n"
    "  IMAGE       left top interlaced\n"
    "              colours (of its own palette: 2, 4, 8 ... 256)\n"
    "              palette (global: the document's, where the picture stays the same)\n"
    "              encoding (new: the picture is encoded anew)\n"
    "  CONTROL     delay (1/100 seconds) input\n"
    "              disposal (nothing, leave, background, previous, or 0 to 7)\n"
    "              transparent (a colour's number or none)\n"
    "  PLAIN TEXT  text left top foreground background\n"
    "              grid-width grid-height cell-width cell-height\n"
    "  COMMENT     text\n"
    "  LOOP        iterations (0: for ever)\n"
    "  APPLICATION-DEFINED, UNKNOWN TYPE\n"
    "              data (@FILE: what that file holds; @-: standard input)\n"
    "\n"
    "Colours of the palette are given as #rrggbb, other colours by their number;\n"
    "sorted, interlaced and input are yes or no. A text may have several lines; it\n"
    "is kept in Windows-1252. XMP data goes in as the format's authors want it.\n"
    "With --classic there is no field data, and a block whose text is made empty is\n"
    "left out.\n";

int RunSet(const Words& words) {
    Setting setting;
    return RunEdit({"set", {}, {}, 2, SIZE_MAX, ", SELECTION and at least one FIELD=VALUE"}, words, &setting);
}
