// The operations on a document that tell their user why they fail, and the questions that they ask: the editor's face
// of the core.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "editing/questions.h"
#include "gif/block_list.h"
#include "platform/windows_api.h"

// Answers of the palette dialog, and what is remembered of them.
constexpr int kAskForPalette = -1;
constexpr int kPaletteCancel = 2;
constexpr int kPaletteRemap = 102;
constexpr int kPaletteDither = 103;
constexpr int kPaletteKeep = 108;  // what the Animation Wizard leaves; any other number keeps the image as it is, too

// The answer for further images. An Insert command forgets it before its first image; the palette dialog sets it.
extern int paletteChoiceForInsert;

// Says that memory has run out.
void TellOutOfMemory(HWND owner);

constexpr size_t kNameUnits = 28;  // of a file's name in a message

// The name of the file at `path` (UTF-8): one of more than `units` letters, or half as many of a wide script, without
// its middle.
std::wstring ShortFileName(const std::string& path, size_t units = kNameUnits);

// The remembered answer, or else what the user chooses in the palette dialog.
int AskPaletteChoice(HWND owner, const Block& image, const std::string& path = {});

// The palette dialog for `image`, whose bitmap and owning document decide which answers are open. Returns
// kPaletteRemap, kPaletteDither or kPaletteCancel and, unless cancelled, sets `paletteChoiceForInsert`. In careful mode
// it names the file at `path` and proposes what the user chose the last time.
int RunPaletteDialog(HWND owner, const Block& image, const std::string& path = {});

// The editor's answers to the core, given by its user.
class UserAnswers : public Questions {
public:
    // `path` is the file of the image that ChoosePalette will be asked about, if it is one from a file.
    explicit UserAnswers(HWND owner, std::string path = {}) : owner_(owner), path_(std::move(path)) {}
    bool StopRequested() override;
    PaletteChoice ChoosePalette(const Block& image) override;
    bool MayLeaveOut(const std::string& path, Failure why) override;

private:
    HWND owner_;
    std::string path_;
};

// Makes a default block of `kind`; an IMAGE from the file at `path`, fitted to the document's palette, behind the
// CONTROL that a transparent picture needs. What fails is told, but for an image that the user did not want.
Result<std::vector<Block>> MakeDefaultBlock(HWND owner, BlockList* list, uint16_t kind, const std::string& path);

// Inserts what MakeDefaultBlock makes right after the selected block (after the header when `*selection` is 0 or less)
// and selects it. False, with nothing changed, when that fails or memory runs out, which has been told then.
bool InsertBlock(HWND owner, BlockList* list, int* selection, uint16_t kind, const std::string& path = {});

// Deletes the selected block. `*selection` stays, or becomes the last block when it was deleted. False when there is no
// such block or it is the header, which the user is told.
bool DeleteBlock(HWND owner, BlockList* list, int* selection);
