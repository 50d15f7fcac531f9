// The document with its frames written anew.
#pragma once

#include <vector>

#include "size/frame_coder.h"

// Makes `*rebuilt` the planned document with those frames, one for each of the plan. Blocks that are no part of a frame
// stay as they are, in their places. False when memory runs out.
[[nodiscard]] bool Rebuild(const CodingTask& task, const std::vector<CodedFrame>& coded, BlockList* rebuilt);
