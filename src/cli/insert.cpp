// zephyr insert: new blocks, as the editor's Insert command makes them.
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/edit_command.h"
#include "cli/foreign_colours.h"
#include "editing/palette_match.h"
#include "gif/default_blocks.h"
#include "texts/string_ids.h"
#include "texts/strings.h"

namespace {

struct KindName {
    const char* name;
    uint16_t kind;
};

constexpr KindName kKindNames[] = {
    {"image", kImageBlock},         {"control", kControlBlock}, {"comment", kCommentBlock},
    {"plaintext", kPlainTextBlock}, {"loop", kLoopBlock},
};

class InsertAnswers : public Questions {
public:
    explicit InsertAnswers(ForeignColours colours) : colours_(colours) {}
    PaletteChoice ChoosePalette(const Block&) override {
        if (colours_ == ForeignColours::kRemap) return PaletteChoice::kRemap;
        return colours_ == ForeignColours::kDither ? PaletteChoice::kDither : PaletteChoice::kCancel;
    }
    bool KeepsColours() override { return colours_ == ForeignColours::kKeep; }
    bool MayLeaveOut(const std::string&, Failure) override { return false; }

private:
    ForeignColours colours_;
};

// What the words ask for.
struct InsertOrder {
    uint16_t kind = kEmptyBlock;
    ForeignColours colours = ForeignColours::kRefuse;
    Selection place;  // the block behind which the new ones come
    Words files;      // the images
};

// Fills `order`; returns what is wrong with the words, or an empty text.
std::string ReadOrder(const Options& options, const Words& operands, InsertOrder* order) {
    order->files = operands;
    const std::string* kind = options.Value("--kind");
    for (const KindName& known : kKindNames)
        if (kind && *kind == known.name) order->kind = known.kind;
    if (order->kind == kEmptyBlock) return "give --kind and image, control, comment, plaintext or loop";

    if (std::string wrong = ReadForeignColours(options, &order->colours); !wrong.empty()) return wrong;
    bool images = order->kind == kImageBlock;
    if (images && order->files.empty()) return "give at least one PICTURE";
    if (!images && !order->files.empty()) return "a PICTURE is for --kind image only";
    if (!images && order->colours != ForeignColours::kRefuse) return "--remap, --dither and --keep are for images only";
    const std::string* at = options.Value("--at");
    return at || order->kind != kLoopBlock ? ReadPlace(options, &order->place) : order->place.Parse("0");
}

// Why the image of the file can't join the document.
std::string WhyNotInserted(const std::string& path, const Result<std::vector<Block>>& image) {
    switch (image.Why()) {
        case Failure::kCancelled: return "its colours are not the document's: give --remap, --dither or --keep";
        case Failure::kNoMemory: return "out of memory";
        default: return WhyNoPicture(path, image.Why(), image.Reason());
    }
}

// Why the document can't take a block of the kind, or an empty text.
std::string WhyNotAllowed(const BlockList& list, uint16_t kind) {
    if (kind == kLoopBlock && HasLoopBlock(list)) return LoadStr(IDS_SECOND_LOOP);
    if (kind == kPlainTextBlock && FindGlobalPalette(list).depth == 0)
        return "there is no global palette, whose colours a plain text block needs";
    return "";
}

// Makes the blocks that are to be inserted.
EditAnswer MakeBlocks(BlockList* list, const InsertOrder& order, ForeignColours colours, std::vector<Block>* blocks) {
    EditAnswer answer;
    InsertAnswers answers(colours);
    for (const std::string& file : order.files) {
        const Result<std::vector<Block>> image = ImportImage(list, file, answers);
        if (!image) {
            answer.refusal = WhyNotInserted(file, image);
            answer.file = file;
            return answer;
        }
        blocks->insert(blocks->end(), image->begin(), image->end());
    }
    if (order.kind == kImageBlock) return answer;
    answer.refusal = WhyNotAllowed(*list, order.kind);
    if (!answer) return answer;
    Result<Block> block = MakeBlock(list, order.kind);
    if (!block) return EditOutcome::OutOfMemory();
    blocks->push_back(*block);
    return answer;
}

class Insertion : public Edit {
public:
    std::string Read(const Options& options, const Words& operands) override {
        return ReadOrder(options, operands, &order_);
    }

    // All at once, so that the blocks behind them move only once.
    EditAnswer Change(LoadedFile* file) override {
        BlockList& list = file->list;
        uint32_t place = 0;
        std::string why;
        if (!FindPlace(order_.place, list, &place, &why)) return EditOutcome::Refused(why);
        // Nothing to choose from: without a global palette nobody could show the image in other colours than its own.
        const bool isFree = (list.flags & kReadWhole) && FindGlobalPalette(list).depth == 0;
        std::vector<Block> blocks;
        EditAnswer answer = MakeBlocks(&list, order_, isFree ? ForeignColours::kKeep : order_.colours, &blocks);
        if (!answer) return answer;
        int selection = order_.kind == kLoopBlock ? 0 : static_cast<int>(place);
        answer.touched = BlocksFrom(static_cast<uint32_t>(selection) + 1, static_cast<uint32_t>(blocks.size()));
        if (!InsertBlocks(&list, &selection, blocks)) return EditOutcome::OutOfMemory();
        return answer;
    }

private:
    InsertOrder order_;
};

}  // namespace

const char kInsertHelp[] =
    "Usage: zephyr insert [OPTION...] IN OUT --at INDEX --kind KIND [PICTURE...]\n"
    "       zephyr insert --in-place [OPTION...] --at INDEX --kind KIND [PICTURE...]\n"
    "                     -- FILE...\n"
    "\n"
    "Loads the GIF file IN, inserts new blocks after block number INDEX (0 is the\n"
    "header; or the last one of a selection) and writes the result to OUT, all other\n"
    "blocks as they were. Kinds:\n"
    "\n"
    "  image      the picture of each PICTURE (PNG, JPEG, BMP, or the first image of\n"
    "             a GIF file), in the order given; one that is transparent somewhere\n"
    "             comes with a control block that says so\n"
    "  control    a control block without flags, with a delay of 1/100 second\n"
    "  comment    a comment with a text to be replaced\n"
    "  plaintext  a plain text block with such a text; IN needs a global palette\n"
    "  loop       a loop block, right after the header whatever INDEX is (and --at\n"
    "             may be left out); only one is allowed\n"
    "\n"
    "What to do with an image whose colours are not IN's global palette:\n"
    "\n"
    "  --remap    show each pixel in the nearest colour of that palette\n"
    "  --dither   show it in mixtures of those colours\n"
    "  --keep     keep its colours, as a local palette\n"
    "\n"
    "In a document without a global palette there is nothing to remap or dither to,\n"
    "and an inserted image keeps its colours.\n"
    "\n"
    "When one of several images can't be inserted, nothing is written.\n"
    "\n"
    "With --classic an image of other colours needs --keep also in a document without\n"
    "a global palette.\n";

int RunInsert(const Words& words) {
    Insertion insertion;
    return RunEdit({"insert", {"--remap", "--dither", "--keep"}, {"--at", "--kind"}}, words, &insertion);
}
