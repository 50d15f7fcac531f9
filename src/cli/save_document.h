// How the commands that save a document end.
#pragma once

#include "cli/options.h"
#include "cli/save_warnings.h"
#include "gif/block_list.h"

// Writes the document to `path` in the manner that `options` ask for. In the classic one the screen is fitted to the
// images and the names that `options` give (cli/names.h) go into the file-identity comment. In the whole one the
// comment is added only when names are given, and the screen is fitted only when the document was made here or
// "--fit-screen" is given; images among `touched` that it does not hold are told of. Returns the program's exit status;
// a failure is reported on standard error.
int SaveDocument(BlockList* list, const std::string& path, const Options& options, const TouchedBlocks& touched = {});

// Prints instead what the document that SaveDocument would write differs in from `before`, which was read in the same
// manner. Throws when memory runs out.
int PrintChanges(const BlockList& before, BlockList* list, const std::string& path, const Options& options,
                 const TouchedBlocks& touched);
