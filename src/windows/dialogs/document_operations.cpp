#include "windows/dialogs/document_operations.h"

#include <algorithm>

#include "editing/palette_match.h"
#include "gif/default_blocks.h"
#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/services/careful.h"
#include "windows/services/messages.h"
#include "windows/services/user_abort.h"

int paletteChoiceForInsert = kAskForPalette;

namespace {

constexpr wchar_t kWideLetters = 0x1100;  // from here on most are twice as wide

std::wstring FileName(const std::string& path) {
    return WideFromUtf8(path.substr(path.find_last_of('\\') + 1));  // all of it without a folder
}

// The system's failure message with the file's name in front, as one of several may be meant.
void TellUnreadable(HWND owner, const std::string& path) {
    MessageBox(owner, FileName(path) + L": " + WideFrom1252(LoadStr(IDS_OPEN_FAILED)));
}

void TellNoDecoder(HWND owner) {
    MessageBox(owner,
               "This Windows lacks the Windows Imaging Component, which reads PNG and JPEG files. Pictures in BMP and "
               "GIF files can be read without it.");
}

void TellFailure(HWND owner, Failure failure, const std::string& path) {
    switch (failure) {
        case Failure::kNoMemory: return TellOutOfMemory(owner);
        case Failure::kCantOpen:
        case Failure::kCantRead:
        case Failure::kNotGif:
        case Failure::kNotPicture:
        case Failure::kNotSupported:
        case Failure::kTooLarge:
        case Failure::kDamaged: return TellUnreadable(owner, path);
        case Failure::kNoDecoder: return TellNoDecoder(owner);
        default: return;
    }
}

bool Refuse(HWND owner, unsigned message) {
    MessageBox(owner, LoadStr(message));
    return false;
}

}  // namespace

void TellOutOfMemory(HWND owner) {
    MessageBox(owner, LoadStr(IDS_OUT_OF_MEMORY));
}

std::wstring ShortFileName(const std::string& path, size_t units) {
    std::wstring name = FileName(path);
    const bool isWide = std::ranges::any_of(name, [](wchar_t letter) { return letter >= kWideLetters; });
    const size_t half = units / (isWide ? 4 : 2);
    if (name.size() <= 2 * half) return name;
    size_t end = half, from = name.size() - half;
    if (IS_HIGH_SURROGATE(name[end - 1])) --end;
    if (IS_LOW_SURROGATE(name[from])) ++from;
    return name.substr(0, end) + L"..." + name.substr(from);
}

int AskPaletteChoice(HWND owner, const Block& image, const std::string& path) {
    return paletteChoiceForInsert != kAskForPalette ? paletteChoiceForInsert : RunPaletteDialog(owner, image, path);
}

bool UserAnswers::StopRequested() {
    return UserAbortRequested();
}

PaletteChoice UserAnswers::ChoosePalette(const Block& image) {
    switch (AskPaletteChoice(owner_, image, path_)) {
        case kPaletteCancel: return PaletteChoice::kCancel;
        case kPaletteRemap: return PaletteChoice::kRemap;
        case kPaletteDither: return PaletteChoice::kDither;
        default: return PaletteChoice::kKeepPixels;
    }
}

bool UserAnswers::MayLeaveOut(const std::string& path, Failure why) {
    if (why == Failure::kNoDecoder) TellNoDecoder(owner_);
    std::wstring question = WideFrom1252(LoadStr(IDS_CORRUPTED_FILE));
    if (Careful(Care::kWizardQuestionNamesFile)) question = ShortFileName(path) + L": " + question;
    return YesnoBox(owner_, question) == IDYES;
}

Result<std::vector<Block>> MakeDefaultBlock(HWND owner, BlockList* list, uint16_t kind, const std::string& path) {
    if (kind == kImageBlock) {
        UserAnswers answers(owner, path);
        Result<std::vector<Block>> blocks = ImportImage(list, path, answers);
        if (!blocks) TellFailure(owner, blocks.Why(), path);
        return blocks;
    }
    Result<Block> block = MakeBlock(list, kind);
    if (block) return std::vector{*block};
    TellFailure(owner, block.Why(), path);
    return block.Why();
}

bool InsertBlock(HWND owner, BlockList* list, int* selection, uint16_t kind, const std::string& path) {
    const Result<std::vector<Block>> blocks = MakeDefaultBlock(owner, list, kind, path);
    if (!blocks) return false;
    return InsertBlocks(list, selection, *blocks) || Refuse(owner, IDS_OUT_OF_MEMORY);
}

bool DeleteBlock(HWND owner, BlockList* list, int* selection) {
    auto index = static_cast<uint32_t>(*selection);
    if (*selection < 0 || index >= list->count) return Refuse(owner, IDS_BLOCK_ACCESS);
    if (list->blocks[index].kind == kHeaderBlock) return Refuse(owner, IDS_HEADER_FIXED);
    RemoveBlocks(list, {&index, 1});
    if (index >= list->count) *selection = static_cast<int>(list->count) - 1;
    return true;
}
