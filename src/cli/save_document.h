// How the commands that save a document end.
#pragma once

#include "cli/options.h"
#include "gif/block_list.h"

// Writes the document to `path`, the screen fitted to its images. The names that `options` give (cli/names.h) go
// into its file-identity comment. Returns the program's exit status; a
// failure is reported on standard error.
int SaveDocument(BlockList* list, const std::string& path, const Options& options);
