// A document with one block of every kind, to be edited by tests.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "gif/block_line.h"
#include "gif/block_list.h"

// Where its blocks are.
enum SampleBlock {
    kSampleHeader,     // 256 colours, the web palette
    kSampleImage,      // 40 x 30, "first.gif", 16 colours of its own: entry i is (i, 2 i, 3 i); pixel x, y is x % 16
    kSampleControl,    // before the second image
    kSamplePlainText,  // between the images
    kSampleComment,
    kSampleLoop,
    kSampleSecondImage,  // 20 x 10, no name, global palette; pixel x, y is 100 + x
    kSampleApplication,
    kSampleUnknown,
    kSampleEmpty,
    kSampleBlockNames,
    kSampleLastControl,  // behind all images
};

class SampleDocument {
public:
    SampleDocument();
    ~SampleDocument() { DestroyBlockList(&list_); }
    SampleDocument(const SampleDocument&) = delete;
    SampleDocument& operator=(const SampleDocument&) = delete;

    BlockList* List() { return &list_; }
    Block At(int index) const {
        Block block = {};
        EXPECT_TRUE(GetBlock(list_, &block, static_cast<uint32_t>(index)));
        return block;
    }
    void Put(const Block& block) { EXPECT_TRUE(PutBlock(&list_, block, block.position)); }
    std::string LineOf(int index) const {
        char line[kBlockLineBytes];
        FormatBlockLine(line, At(index));
        return line;
    }
    std::string TextOf(int index) const;

private:
    void Append(uint16_t kind);
    void AppendImage(int width, int height, int depth);

    BlockList list_ = {};
};
