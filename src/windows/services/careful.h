// Careful mode: the editor as one that never loses what a person did. Off by default; then it behaves as it always has.
#pragma once

#include <cstdint>

// Everything that careful mode changes. careful.cpp says what each means, and which quirk it lifts.
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
};

// Whether the editor takes this care: all of them, or none, as settings.carefulMode says.
bool Careful(Care care);
