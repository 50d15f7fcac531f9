// Cut, Copy and Paste: blocks between editors as small GIF files, pictures from and for every program.
#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "editing/block_copy.h"
#include "editing/offered_block.h"
#include "editing/palette_match.h"
#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "gif/gif_reader.h"
#include "imaging/dib.h"
#include "imaging/remap.h"
#include "imaging/shared_palette.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/app/block_list_view.h"
#include "windows/app/commands.h"
#include "windows/app/document_history.h"
#include "windows/app/shell_state.h"
#include "windows/dialogs/document_operations.h"
#include "windows/services/clipboard.h"
#include "windows/services/messages.h"
#include "windows/services/wait_cursor.h"

namespace {

constexpr wchar_t kBlocksFormat[] = L"Kelmor Zephyr blocks";  // a GIF file of the blocks
constexpr wchar_t kPngFormat[] = L"PNG";                      // by which programs exchange what is transparent

constexpr char kCantCopy[] = "This block can't be copied.";
constexpr char kClipboardBusy[] = "The clipboard can't be used at the moment.";
constexpr char kCantPaste[] = "What is in the clipboard can't be read.";

UINT BlocksFormat() {
    return RegisterClipboardFormatW(kBlocksFormat);
}

// Tells the user why nothing came of it.
bool Refuse(HWND window, const char* why) {
    MessageBox(window, why);
    return false;
}

// Puts the block of the line on the clipboard. False when it can't be, which the user has been told.
bool CopyLine(HWND window, int line) {
    WaitCursor wait;
    const auto index = static_cast<uint32_t>(line);
    File file;
    if (!WriteBlockFile(document, index, &file)) return Refuse(window, kCantCopy);
    std::vector<ClipboardPart> parts = {{BlocksFormat(), file.Written()}};
    ByteBuffer png;
    if (EncodePngOfImage(document, index, &png)) parts.push_back({RegisterClipboardFormatW(kPngFormat), png.Content()});
    size_t dibBytes = 0;
    MemoryLock dib(MakeDibOfImage(document, index, &dibBytes));
    if (dib) parts.push_back({CF_DIB, {dib.Bytes(), dibBytes}});
    return PutOnClipboard(window, parts) || Refuse(window, kClipboardBusy);
}

// Without a global palette there are no colours to be fitted to: images keep theirs.
class PasteAnswers : public UserAnswers {
public:
    using UserAnswers::UserAnswers;
    bool KeepsColours() override { return FindGlobalPalette(document).depth == 0; }
};

// Images with local palettes need none of the document.
bool BringOwnPalettes(const BlockList& list) {
    return std::ranges::all_of(list.All(), [](const Block& block) {
        return block.kind != kImageBlock || (GetImageFields(block).packed & kHasPalette) != 0;
    });
}

// What is to become of colours that the document does not have. False when the user wants none of it.
bool AskForeignColours(HWND window, const BlockList& other, ForeignColours* colours) {
    PasteAnswers answers(window);
    const int first = FindBlock(other, kImageBlock);
    const bool keeps = answers.KeepsColours() || (first >= 0 && BringOwnPalettes(other));
    *colours = keeps ? ForeignColours::kKeep : ForeignColours::kRemap;
    if (keeps || first < 0) return true;
    Block image = other.blocks[static_cast<uint32_t>(first)];
    image.owner = &document;
    const PaletteChoice choice = answers.ChoosePalette(image);
    if (choice == PaletteChoice::kDither) *colours = ForeignColours::kDither;
    return choice != PaletteChoice::kCancel;
}

// An operation names the block by its number in the document that it comes from, which nobody sees here.
EditOutcome WithoutNumber(EditOutcome outcome) {
    constexpr char kNumbered[] = "block ";
    const size_t end = outcome.refusal.find(": ");
    if (outcome.refusal.starts_with(kNumbered) && end != std::string::npos) outcome.refusal.erase(0, end + 2);
    return outcome;
}

// Puts the blocks of the small GIF file behind the line. False when nothing comes of it, which has been told then.
bool PasteBlocks(HWND window, uint32_t line) {
    size_t bytes = 0;
    const MemoryHandle content = TakeFromClipboard(window, BlocksFormat(), &bytes);
    MemoryLock lock(content);
    File file;
    if (lock) file.OpenMemory(lock.Bytes(), bytes);
    BlockList other;
    if (!lock || !CreateBlockList(&other) || ReadGif(&other, file, nullptr, Manner::kWhole) != kReadDone ||
        other.count < 2)
        return Refuse(window, kCantPaste);
    std::vector<uint32_t> blocks(other.count - 1);
    std::iota(blocks.begin(), blocks.end(), 1u);
    auto paste = [&](ForeignColours colours) {
        return CopyBlocks(other, blocks, line, colours, Looks::kLeft, &document);
    };
    CopyOutcome outcome = paste(ForeignColours::kRefuse);
    if (outcome.wantsChoice) {
        ForeignColours colours;
        if (!AskForeignColours(window, other, &colours)) return false;
        outcome = paste(colours);
    }
    TellOutcome(window, WithoutNumber(outcome));
    return static_cast<bool>(outcome);
}

// The picture in the colours that are the best for it alone, 256 at most.
Result<MemoryHandle> InOwnColours(const MemoryHandle& picture) {
    Result<SharedPalette> palette = BuildSharedPalette(kPaletteEntries, {&picture, 1});
    if (!palette) return palette.Why();
    constexpr int kDepth = 8;
    Result<MemoryHandle> image = RemapImage(picture, palette->colours, kDepth);
    if (!image) return image;
    ImageWriteLock bitmap(&*image);
    if (!bitmap) return Failure::kNoMemory;
    SetImagePalette(bitmap, palette->colours);
    return image;
}

// The picture on the clipboard as an image that can join the document.
Result<Block> TakePicture(HWND window) {
    size_t bytes = 0;
    const MemoryHandle content = TakeFromClipboard(window, CF_DIB, &bytes);
    MemoryLock lock(content);
    if (!lock) return Failure::kDamaged;
    Result<MemoryHandle> picture = ReadDib({lock.Bytes(), bytes});
    if (!picture) return picture.Why();
    PasteAnswers answers(window);
    const std::optional<ImageInfo> info = GetImageInfo(*picture);
    if (info && info->bitCount > 8 && answers.KeepsColours()) picture = InOwnColours(*picture);
    if (!picture) return picture.Why();
    Result<Block> image = MakeImageBlock(&document, *picture);
    if (!image) return image;
    const Failure failure = MatchImportedPalette(document, &*image, answers);
    if (failure != Failure::kNone) return failure;
    return image;
}

bool PastePicture(HWND window, uint32_t line) {
    Result<Block> image = TakePicture(window);
    int selection = static_cast<int>(line);
    if (image && InsertBlocks(&document, &selection, {&*image, 1})) return true;
    switch (image.Why()) {
        case Failure::kCancelled:
        case Failure::kStopped: break;
        case Failure::kDamaged: MessageBox(window, kCantPaste); break;
        default: TellOutOfMemory(window);
    }
    return false;
}

}  // namespace

bool CanCopy(HWND window) {
    const int line = SelectedBlock(window);
    if (line == kNoLine || !FindHeader(document)) return false;
    const uint16_t kind = document.blocks[static_cast<uint32_t>(line)].kind;
    return kind != kHeaderBlock && kind != kEmptyBlock;
}

bool CanPaste(HWND) {
    const bool hasHeader = document.count > 0 && document.blocks[0].kind == kHeaderBlock;
    return hasHeader && (IsClipboardFormatAvailable(BlocksFormat()) || IsClipboardFormatAvailable(CF_DIB));
}

void OnCopy(HWND window) {
    CopyLine(window, SelectedBlock(window));
}

void OnCut(HWND window) {
    int line = SelectedBlock(window);
    RecordedStep step(IDS_STEP_CUT);
    step.Concerns(line, 1);
    if (CopyLine(window, line) && DeleteBlock(window, &document, &line)) ShowChangedDocument(window, line);
}

void OnPaste(HWND window) {
    paletteChoiceForInsert = kAskForPalette;
    const int selected = SelectedBlock(window);
    const uint32_t count = document.count;
    const uint32_t line = selected == kNoLine ? count - 1 : static_cast<uint32_t>(selected);
    RecordedStep step(IDS_STEP_PASTE);
    WaitCursor wait;
    const bool isPasted =
        IsClipboardFormatAvailable(BlocksFormat()) ? PasteBlocks(window, line) : PastePicture(window, line);
    if (!isPasted) return;
    const uint32_t added = document.count - count;
    step.Concerns(static_cast<int>(line) + 1, added);
    ShowChangedDocument(window, static_cast<int>(line + added));
    RevealLine(window, static_cast<int>(line + added));
}
