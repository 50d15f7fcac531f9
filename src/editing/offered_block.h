// A block of a document in the forms in which other programs, and other editors, take it.
#pragma once

#include "gif/block_list.h"
#include "platform/byte_buffer.h"
#include "platform/file.h"

// Writes the block `index` of `list` into `file`, which is made one in memory: a GIF file of the document's header,
// whose colours it may need, and the block with all that it has but its name. False when memory runs out, without a
// header, and for a block that no file can hold.
[[nodiscard]] bool WriteBlockFile(const BlockList& list, uint32_t index, File* file);

// Of an image with pixels, in the colours that it is shown in: the memory of a device-independent bitmap
// (imaging/dib.h), `*bytes` long, without what is transparent. None for other blocks and when memory runs out.
[[nodiscard]] MemoryHandle MakeDibOfImage(const BlockList& list, uint32_t index, size_t* bytes);

// The same with what is transparent. None also for an image without it.
[[nodiscard]] MemoryHandle MakeDibWithOpacityOfImage(const BlockList& list, uint32_t index, size_t* bytes);

// The same as a PNG file, which is added to `out`, with what is transparent.
[[nodiscard]] bool EncodePngOfImage(const BlockList& list, uint32_t index, ByteBuffer* out);
