// Careful mode: the editor as one that never loses what a person did. Off by default; then it behaves as it always has.
#pragma once

#include <cstdint>
#include <span>

// Everything that careful mode changes; Cares() says what each means.
enum class Care : uint8_t {
    kWholeDocuments,
    kFailedSaveStops,
    kCloseBoxAsks,
    kNewDocumentAsksForName,
    kSaveAsProposesName,
    kStartNameTrimmed,
    kNumbersRefused,
    kMissingRecentFileLeaves,
    kGoesOnPastBadImages,
    kRecentFilesMerged,
    kPaletteQuestionRemembers,
    kWizardQuestionNamesFile,
    kPlainTextKeepsCells,
    kImageKeepsName,
    kCancelUndoesAll,
    kRefusalChangesNothing,
    kUnchangedStaysUnchanged,
    kUndoneIsUnchanged,
    kListsAllPictures,
    kLongNamesShortened,
    kAmpersandsShown,
    kWizardListsNames,
    kColourGridTakesKeys,
    kColourButtonsShowFocus,
    kSecondWindowAside,
    kCount,
};

// What one care is about.
struct CareRow {
    Care care;
    const char* quirks;   // the constants of the quirks that it lifts, with blanks between; empty for none
    const char* meaning;  // a sentence for users, as the help has it
};

// The whole table, in the order of the enumeration.
std::span<const CareRow> Cares();

// Whether the editor takes this care: all of them, or none, as settings.carefulMode says.
bool Careful(Care care);
