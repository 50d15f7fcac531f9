// zephyr frames: what the animation looks like, frame by frame.
#include <numeric>

#include "animation/animated_png.h"
#include "animation/canvas_png.h"
#include "animation/contact_sheet.h"
#include "animation/encoded_frames.h"
#include "cli/commands.h"
#include "cli/complaints.h"
#include "cli/frame_times.h"
#include "cli/frame_words.h"
#include "cli/options.h"
#include "cli/output_file.h"
#include "cli/played_file.h"
#include "cli/progress.h"
#include "cli/usage.h"
#include "gif/descriptor.h"

namespace {

constexpr unsigned kMostColumns = 65535;
constexpr char kNoMemory[] = "not enough memory";

// The command's words, taken apart.
struct FrameOrder {
    std::string in, out, selection;
    NumberedName names;  // of `out`
    const std::string* sheet = nullptr;
    const std::string* apng = nullptr;
    bool raw = false;
    bool times = false, asJson = false;
    unsigned columns = 0;  // 0: as it comes
    PngStyle style;
};

bool ParseColour(const std::string& text, uint32_t* pixel) {
    uint32_t number = 0;
    if (text.size() != 7 || text[0] != '#') return false;
    for (char digit : text.substr(1)) {
        const size_t value = std::string_view("0123456789abcdef").find(static_cast<char>(digit | 0x20));
        if (value == std::string_view::npos) return false;
        number = number << 4 | static_cast<uint32_t>(value);
    }
    *pixel =
        PixelOf({static_cast<uint8_t>(number >> 16), static_cast<uint8_t>(number >> 8), static_cast<uint8_t>(number)});
    return true;
}

std::string ReadStyle(const Options& options, PngStyle* style) {
    const std::string* colour = options.Value("--background");
    if (colour && options.Has("--transparent")) return "give --background or --transparent, not both";
    if (colour && !ParseColour(*colour, &style->background)) return "give --background #rrggbb, not " + *colour;
    unsigned level = kDefaultPngLevel;
    const std::string* given = options.Value("--level");
    if (given && !ParseNumber(*given, kMostPngLevel, &level)) return "give --level 0 to 9, not " + *given;
    style->level = static_cast<int>(level);
    return "";
}

std::string ReadOperands(const Options& options, FrameOrder* wanted) {
    const Words& operands = options.Operands();
    const bool isOneFile = wanted->sheet || wanted->apng || wanted->times;
    const size_t files = isOneFile ? 1 : 2;
    if (operands.size() < files || operands.size() > files + 1)
        return isOneFile ? "give IN, and a SELECTION if you want" : "give IN, OUT and a SELECTION if you want";
    wanted->in = operands[0];
    if (operands.size() > files) wanted->selection = operands[files];
    if (isOneFile) return "";
    wanted->out = operands[1];
    return wanted->names.Parse(wanted->out);
}

// Returns what is wrong with the words, or an empty text.
std::string ReadWords(const Options& options, FrameOrder* wanted) {
    if (!options.Error().empty()) return options.Error();
    wanted->sheet = options.Value("--sheet");
    wanted->apng = options.Value("--apng");
    wanted->raw = options.Has("--raw");
    wanted->times = options.Has("--times");
    wanted->asJson = options.Has("--json");
    if (wanted->sheet && wanted->apng) return "give --sheet or --apng, not both";
    if (wanted->times && (wanted->sheet || wanted->apng || wanted->raw)) return "--times writes no pictures";
    if (wanted->asJson && !wanted->times) return "--json is for --times";
    if (wanted->raw && (wanted->sheet || wanted->apng)) return "--raw writes files of their own, no sheet or animation";
    const std::string* columns = options.Value("--columns");
    if (columns && !wanted->sheet) return "--columns is for --sheet";
    if (columns && (!ParseNumber(*columns, kMostColumns, &wanted->columns) || wanted->columns == 0))
        return "give --columns 1 to 65535, not " + *columns;
    if (std::string wrong = ReadStyle(options, &wanted->style); !wrong.empty()) return wrong;
    return ReadOperands(options, wanted);
}

bool WriteBytes(const std::string& path, std::span<const uint8_t> bytes) {
    return WriteOutputFile(path, [&](File& file) {
        file.NeedNotOutliveCrash();
        return file.Write(bytes.data(), bytes.size());
    });
}

// What the end of the work means for the command; whoever delivers has complained already.
bool Report(FrameResult result, const std::string& path) {
    if (result == FrameResult::kNoMemory) Complain(path, kNoMemory);
    return result == FrameResult::kDone;
}

// Shows how far the work is, and never stops it.
class ShownFrames {
public:
    WorkWatch Watch() {
        return [this](size_t done, size_t count) { return progress_.OnFrame(done, count), true; };
    }

private:
    Progress progress_;
};

bool WriteComposed(const Animation& animation, std::span<const uint32_t> frames, const FrameOrder& wanted) {
    ShownFrames shown;
    FrameWork work;
    work.watch = shown.Watch();
    work.encode = [&](const CanvasView& canvas, const Rectangle& area, ByteBuffer* png) {
        return EncodeCanvas(canvas, area, wanted.style, png);
    };
    work.deliver = [&](uint32_t frame, const Rectangle&, std::span<const uint8_t> png) {
        return WriteBytes(wanted.names.For(frame), png);
    };
    return Report(EncodeFrames(animation, frames, work), wanted.in);
}

bool WriteImage(const Animation& animation, uint32_t number, const FrameOrder& wanted) {
    const Frame& frame = animation.Frames()[number];
    const Block& image = animation.List().blocks[frame.block];
    const ImageFields fields = GetImageFields(image);
    const std::string where = "block " + std::to_string(frame.block);
    if (fields.width == 0 || fields.height == 0 || !image.data) {
        Complain(wanted.in, where + " has no pixels, so there is no picture of frame " + std::to_string(number));
        return false;
    }
    ByteBuffer png;
    const Palette colours = ColoursOf(image, FindGlobalPalette(animation.List()));
    if (EncodeImage(image, colours, frame.transparentIndex, wanted.style, &png))
        return WriteBytes(wanted.names.For(number), png.Content());
    Complain(wanted.in, kNoMemory);
    return false;
}

bool WriteRaw(const Animation& animation, std::span<const uint32_t> frames, const FrameOrder& wanted) {
    bool done = true;
    for (uint32_t frame : frames) done = WriteImage(animation, frame, wanted) && done;
    return done;
}

bool WriteSheet(const Animation& animation, std::span<const uint32_t> frames, const FrameOrder& wanted) {
    const std::string& path = *wanted.sheet;
    const SheetLayout layout = LayOutSheet(animation, frames.size(), wanted.columns);
    if (!layout.Fits()) {
        Complain(path, "a sheet of " + std::to_string(layout.width) + " x " + std::to_string(layout.height) +
                           " pixels can't be made: a row of frames has at most " + std::to_string(kMostCanvasPixels));
        return false;
    }
    ByteBuffer png;
    ShownFrames shown;
    if (!Report(EncodeSheet(animation, frames, layout, wanted.style, shown.Watch(), &png), path)) return false;
    return WriteOutputFile(path, [&](File& file) { return file.Write(png.Content().data(), png.Content().size()); });
}

bool WriteApng(const Animation& animation, std::span<const uint32_t> frames, const FrameOrder& wanted) {
    ShownFrames shown;
    return WriteOutputFile(*wanted.apng, [&](File& file) {
        return WriteAnimatedPng(animation, frames, wanted.style, shown.Watch(), file) == FrameResult::kDone;
    });
}

bool Print(const Animation& animation, std::span<const uint32_t> frames, const FrameOrder& wanted) {
    (wanted.asJson ? PrintTimesAsJson : PrintTimes)(animation, frames);
    return FlushOutput();
}

bool Write(const Animation& animation, std::span<const uint32_t> frames, const FrameOrder& wanted) {
    if (wanted.times) return Print(animation, frames, wanted);
    if (wanted.raw) return WriteRaw(animation, frames, wanted);
    if (animation.Screen().IsEmpty()) {
        Complain(wanted.in, "its screen has no pixels");
        return false;
    }
    if (!CanCompose(animation, wanted.in)) return false;
    if (wanted.sheet) return WriteSheet(animation, frames, wanted);
    return wanted.apng ? WriteApng(animation, frames, wanted) : WriteComposed(animation, frames, wanted);
}

}  // namespace

const char kFramesHelp[] =
    "Usage: zephyr frames [--raw] [--transparent | --background #rrggbb] [--no-text]\n"
    "                     [--level N] [--classic] [--strict] IN OUT [SELECTION]\n"
    "       zephyr frames --sheet OUT.png [--columns N] ... IN [SELECTION]\n"
    "       zephyr frames --apng OUT.png ... IN [SELECTION]\n"
    "       zephyr frames --times [--json] IN [SELECTION]\n"
    "\n"
    "Writes what the GIF file IN shows, frame by frame, as PNG files: the canvas as\n"
    "browsers compose it. In OUT, %d stands for the number of the frame, counted from\n"
    "0, and %03d for three places of it; without, there must be one frame only.\n"
    "SELECTION says which frames: 3, 3-9, last, last-2 (two before the last) or\n"
    "several of these with commas between; by default all.\n"
    "\n"
    "  --raw              each image as it is: its own rectangle and palette\n"
    "  --transparent      what shows nothing stays transparent; the default\n"
    "  --background #rrggbb\n"
    "                     what shows nothing gets this colour\n"
    "  --no-text          leaves out plain texts, as browsers do\n"
    "  --level N          how hard PNG files are compressed: 0 (fast) to 9 (small), 6\n"
    "                     by default; Windows decides by itself\n"
    "  --sheet OUT.png    all frames on one picture, from left to right and top to\n"
    "                     bottom\n"
    "  --columns N        so many in a row of the sheet; by default as many as rows\n"
    "  --apng OUT.png     the animation as an animated PNG file, with its times\n"
    "  --times            no pictures, but a line for each frame: its blocks, when it\n"
    "                     starts and how long browsers show it, in hundredths of a\n"
    "                     second, its delay as written, and its rectangle; then how\n"
    "                     long all frames take, and how often they are played\n"
    "  --json             the times as one JSON object\n"
    "  --classic          reads IN as the editor does by default\n"
    "  --strict           fails when IN is damaged\n";

int RunFrames(const Words& words) {
    Options options(words, {"--raw", "--transparent", "--no-text", "--strict", "--times", "--json"},
                    {"--background", "--level", "--sheet", "--columns", "--apng"});
    FrameOrder wanted;
    if (std::string wrong = ReadWords(options, &wanted); !wrong.empty()) return WrongUsage("frames", wrong);
    PlayedFile file;
    if (!file.OpenAnimation(wanted.in, options)) return kExitFailed;
    const auto count = static_cast<uint32_t>(file.animation.Frames().size());
    if (count == 0) {
        Complain(wanted.in, "there are no frames in it");
        return kExitFailed;
    }
    std::vector<uint32_t> frames;
    const std::string selection = wanted.selection.empty() ? "0-last" : wanted.selection;
    if (std::string wrong = ParseFrameSelection(selection, count, &frames); !wrong.empty())
        return WrongUsage("frames", wrong);
    if (!wanted.sheet && !wanted.apng && !wanted.times && frames.size() > 1 && !wanted.names.HasNumber())
        return WrongUsage("frames", "give %d in " + wanted.out + " for the number of each frame");
    return Write(file.animation, frames, wanted) ? kExitDone : kExitFailed;
}
