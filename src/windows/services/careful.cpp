#include "windows/services/careful.h"

#include <iterator>

#include "windows/services/settings.h"

namespace {

constexpr CareRow kCares[] = {
    {Care::kWholeDocuments,
     "kQuirkForeignApplicationEndsLoad kQuirkScreenShrinks kQuirkSavedFileIsSigned kQuirkAlwaysGif89a "
     "kQuirkSaveOverTarget",
     "Documents are read and saved whole: nothing of the file is dropped, and nothing in it changes but what you "
     "change."},
    {Care::kFailedSaveStops, "",
     "A save that you cancel, or that fails, also stops the command that asked whether to save."},
    {Care::kCloseBoxAsks, "kQuirkCloseBoxIgnoresCancel",
     "Cancel at the question whether to save keeps the window open, however it was to be closed."},
    {Care::kNewDocumentAsksForName, "kQuirkNameOutlivesDocument",
     "The first save of a new document, or of one that the wizard made, asks for a name."},
    {Care::kSaveAsProposesName, "", "Save as proposes the name that the document has."},
    {Care::kStartNameTrimmed, "",
     "A file named on the command line opens also when its name stands in quotation marks or between blanks."},
    {Care::kNumbersRefused, "", "A number that a field can't hold is refused, not bent into one that it can."},
    {Care::kMissingRecentFileLeaves, "",
     "A recent file that is gone says so and leaves the list; the open document stays."},
    {Care::kGoesOnPastBadImages, "",
     "Of several images to insert, those that can't be read are named at the end; the others go in."},
    {Care::kRecentFilesMerged, "", "Two editors that run at the same time keep the recent files of both."},
    {Care::kPaletteQuestionRemembers, "", "The palette question begins with the answer that you gave last."},
    {Care::kWizardQuestionNamesFile, "", "The wizard's question about a file that can't be read names the file."},
    {Care::kPlainTextKeepsCells, "kQuirkSizesTakenWithoutFields",
     "Plain text keeps the sizes of its grid and its cells."},
    {Care::kImageKeepsName, "kQuirkImageNameField", "An image keeps its name when it is edited."},
    {Care::kCancelUndoesAll, "kQuirkCancelKeepsColours kQuirkPaletteCopiedAtOnce",
     "Cancel in a block's dialog undoes all that was done in it."},
    {Care::kRefusalChangesNothing, "kQuirkUneditedCountsAsChanged kQuirkChosenImagesMarkChanged",
     "A block that can't be edited, or an image that can't be inserted, leaves the document unchanged."},
    {Care::kUnchangedStaysUnchanged, "", "OK in a block's dialog without a change leaves the document unchanged."},
    {Care::kUndoneIsUnchanged, "", "A document that is taken back to what was saved counts as unchanged again."},
    {Care::kListsAllPictures, "",
     "The file dialogs of Insert and of the wizard list pictures of all kinds, not GIF files alone."},
    {Care::kLongNamesShortened, "", "A long name among the recent files loses its middle, not the menu its place."},
    {Care::kAmpersandsShown, "", "An & in the name of a recent file is shown as it is, and underlines nothing."},
    {Care::kWizardListsNames, "",
     "The wizard's list shows the name of a file whose path is too long for it, and the path as a tip."},
    {Care::kColourGridTakesKeys, "",
     "The colour grid marks the colour that you have, and takes the arrow keys, Home, End and Enter."},
    {Care::kColourButtonsShowFocus, "", "The buttons for colours and the eyedropper show when they have the focus."},
    {Care::kSecondWindowAside, "", "A second window does not lie on the first."},
};

constexpr bool EveryCareHasItsRow() {
    for (size_t i = 0; i < std::size(kCares); ++i)
        if (kCares[i].care != static_cast<Care>(i)) return false;
    return true;
}
static_assert(std::size(kCares) == static_cast<size_t>(Care::kCount));
static_assert(EveryCareHasItsRow());

}  // namespace

std::span<const CareRow> Cares() {
    return kCares;
}

bool Careful(Care) {
    return settings.carefulMode != 0;
}
