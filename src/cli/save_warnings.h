// What a saved file does not keep, or keeps from others.
#pragma once

#include <string>

#include "gif/block_list.h"

// Tells on standard error, in one line for each kind of trouble, which blocks of the document just saved to `path` will
// not be read back as they are.
void WarnOfLosses(const BlockList& list, const std::string& path);
