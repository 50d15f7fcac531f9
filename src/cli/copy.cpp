// zephyr copy: blocks a second time, or those of another document.
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/edit_command.h"
#include "cli/foreign_colours.h"

namespace {

// What the words ask for.
struct CopyOrder {
    Selection blocks, place;
    ForeignColours colours = ForeignColours::kRefuse;
    Looks looks = Looks::kLeft;
};

// Returns what is wrong with the words, or an empty text.
std::string ReadColours(const Options& options, CopyOrder* order) {
    if (std::string wrong = ReadForeignColours(options, &order->colours); !wrong.empty()) return wrong;
    if (order->colours != ForeignColours::kRefuse && !options.Value("--from"))
        return "--remap, --dither and --keep are for blocks of another file (--from)";
    if (order->looks == Looks::kLeft) return "";
    if (order->colours != ForeignColours::kRefuse && order->colours != ForeignColours::kKeep)
        return "frames that keep their looks keep their colours: give --keep-looks without --remap and --dither";
    order->colours = ForeignColours::kKeep;
    return "";
}

class Copying : public Edit {
public:
    std::string Read(const Options& options, const Words& operands) override {
        options_ = &options;
        if (options.Has("--keep-looks")) order_.looks = Looks::kKept;
        if (std::string wrong = ReadColours(options, &order_); !wrong.empty()) return wrong;
        std::string wrong = ReadSelection(operands, "", &order_.blocks);
        return wrong.empty() ? ReadPlace(options, &order_.place) : wrong;
    }

    EditAnswer Change(LoadedFile* file) override {
        std::string why;
        uint32_t at = 0;
        if (!FindPlace(order_.place, file->list, &at, &why)) return EditOutcome::Refused(why);
        return Other() ? CopyFrom(*Other(), at, &file->list) : CopyWithin(at, &file->list);
    }

    bool ReadsStandardInput() const override { return Other() && *Other() == kStandardStream; }

private:
    const std::string* Other() const { return options_->Value("--from"); }

    EditAnswer CopyWithin(uint32_t at, BlockList* list) const {
        std::string why;
        const std::vector<uint32_t> blocks = order_.blocks.Find(*list, &why);
        if (blocks.empty()) return EditOutcome::Refused(why);
        EditAnswer answer = DuplicateBlocks(blocks, at, order_.looks, list);
        answer.touched = BlocksFrom(at + 1, static_cast<uint32_t>(blocks.size()));
        return answer;
    }

    EditAnswer CopyFrom(const std::string& path, uint32_t at, BlockList* list) const {
        LoadedFile other;
        EditAnswer answer;
        if (!other.Open(path, *options_)) {
            answer.isTold = true;
            return answer;
        }
        std::string why;
        const std::vector<uint32_t> blocks = order_.blocks.Find(other.list, &why);
        if (blocks.empty()) {
            answer.refusal = why;
        } else {
            CopyOutcome outcome = CopyBlocks(other.list, blocks, at, order_.colours, order_.looks, list);
            if (outcome.wantsChoice) outcome.refusal += ": give --remap, --dither or --keep";
            answer = EditAnswer(outcome);
            answer.touched = BlocksFrom(outcome.first, outcome.copied);
        }
        answer.file = NameOfInput(path);
        return answer;
    }

    const Options* options_ = nullptr;
    CopyOrder order_;
};

}  // namespace

const char kCopyHelp[] =
    "Usage: zephyr copy [OPTION...] IN OUT SELECTION... --at INDEX\n"
    "       zephyr copy [OPTION...] IN OUT SELECTION... --from OTHER --at INDEX\n"
    "       zephyr copy --in-place [OPTION...] SELECTION... --at INDEX -- FILE...\n"
    "\n"
    "Loads the GIF file IN, puts copies of the blocks of SELECTION, in the order of\n"
    "its words, behind block number INDEX of IN and writes the result to OUT. With\n"
    "--from they are blocks of the GIF file OTHER. The header is never copied, and\n"
    "there is one loop block at most.\n"
    "\n"
    "What to do with images and plain texts of OTHER whose colours IN does not have\n"
    "at the same places of its global palette:\n"
    "\n"
    "  --remap    show each pixel in the nearest colour of that palette\n"
    "  --dither   show images in mixtures of those colours\n"
    "  --keep     keep the colours of images, as local palettes\n"
    "\n"
    "In a document without a global palette an image keeps its colours unasked. What\n"
    "is transparent stays so; where the palette has no index left for that, nothing\n"
    "is written.\n"
    "\n"
    "  --keep-looks\n"
    "             frames look as they did in their documents: those that stand behind\n"
    "             others than before and would look different are composed anew\n";

int RunCopy(const Words& words) {
    Copying copying;
    return RunEdit({"copy",
                    {"--keep-looks", "--remap", "--dither", "--keep"},
                    {"--at", "--from"},
                    1,
                    SIZE_MAX,
                    " and the blocks to be copied"},
                   words, &copying);
}
