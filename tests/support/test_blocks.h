// What tests of blocks and documents share: making them and looking at them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "gif/gif_reader.h"
#include "gif/gif_writer.h"
#include "tests/support/gif_bytes.h"

// What is read from the bytes of a GIF file.
struct LoadedGif : BlockList {
    explicit LoadedGif(const Bytes& bytes, Manner manner = Manner::kClassic);
    ReadResult result;
    ReadReport report;
};

// A block of that kind with nothing in it.
Block OfKind(uint16_t kind);

// A bitmap of one row with these pixels.
MemoryHandle MakeRow(int bitCount, const std::vector<uint32_t>& pixels, const RgbTriple* colours = nullptr);

// An IMAGE block with a bitmap of index 0; `flags` are bits of its packed byte above the size code.
Block MakeImage(int width, int height, int depth, int flags = 0);

// A block of a text kind with that text, or of another kind without.
Block MakeText(uint16_t kind, std::string_view text);

// Makes the block one read from a file in which these were its bytes, `stray` those that start no block before them.
void GiveSource(Block* block, std::string_view own, std::string_view stray = {});

// The text of a block, or "(none)".
std::string TextOf(const Block& block);

// The descriptor bytes of a block without the zeros at their end, and its name.
std::string DescriptorOf(const Block& block);
std::string NameOf(const Block& block);

// The block at the index; an empty record when there is none.
Block BlockAt(const BlockList& list, uint32_t index);

// Appends the block to `list`, making that a list first if need be.
void Append(BlockList* list, Block block);

// One digit per block: its kind.
std::string KindsOf(const BlockList& list);

// The image's pixels as hexadecimal digits, rows from the top, with a blank between two rows.
std::string PixelsOf(const Block& image);
