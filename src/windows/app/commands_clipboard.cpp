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
#include "imaging/picture_bitmap.h"
#include "imaging/picture_reader.h"
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
    size_t opacityBytes = 0, dibBytes = 0;
    const MemoryLock withOpacity(MakeDibWithOpacityOfImage(document, index, &opacityBytes));
    if (withOpacity) parts.push_back({CF_DIBV5, {withOpacity.Bytes(), opacityBytes}});
    const MemoryLock dib(MakeDibOfImage(document, index, &dibBytes));
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

bool IsPng(UINT format) {
    return format == RegisterClipboardFormatW(kPngFormat);
}

// The forms in which the picture there can be taken, the best first. PNG says for sure what is transparent; of the
// bitmaps that one which its program put there, as the system makes the other of it.
std::vector<UINT> PictureForms(HWND window) {
    std::vector<UINT> forms = FormatsOnClipboard(window);
    std::erase_if(forms, [](UINT format) { return !IsPng(format) && format != CF_DIB && format != CF_DIBV5; });
    std::stable_partition(forms.begin(), forms.end(), IsPng);
    return forms;
}

Result<Picture> TakeForm(HWND window, UINT format) {
    size_t bytes = 0;
    const MemoryHandle content = TakeFromClipboard(window, format, &bytes);
    const MemoryLock lock(content);
    if (!lock) return Failure::kDamaged;
    return IsPng(format) ? ReadPicture({lock.Bytes(), bytes}) : ReadDib({lock.Bytes(), bytes});
}

// The picture on the clipboard as blocks that can join the document.
Result<std::vector<Block>> TakePicture(HWND window) {
    Result<Picture> picture = Failure::kDamaged;
    for (UINT format : PictureForms(window)) {
        picture = TakeForm(window, format);
        if (picture) break;
    }
    if (!picture) return picture.Why();
    const Result<PictureBitmap> made = MakePictureBitmap(*picture);
    if (!made) return made.Why();
    PasteAnswers answers(window);
    return ImportPicture(&document, *made, answers);
}

bool PastePicture(HWND window, uint32_t line) {
    const Result<std::vector<Block>> blocks = TakePicture(window);
    int selection = static_cast<int>(line);
    if (blocks && InsertBlocks(&document, &selection, *blocks)) return true;
    switch (blocks.Why()) {
        case Failure::kCancelled:
        case Failure::kStopped: break;
        case Failure::kNone:
        case Failure::kNoMemory: TellOutOfMemory(window); break;
        default: MessageBox(window, kCantPaste);
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
    if (!hasHeader) return false;
    const UINT forms[] = {BlocksFormat(), RegisterClipboardFormatW(kPngFormat), CF_DIB, CF_DIBV5};
    return std::ranges::any_of(forms, [](UINT format) { return IsClipboardFormatAvailable(format) != FALSE; });
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
