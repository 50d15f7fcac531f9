#include "editing/history.h"

#include <random>

#include "platform/faults.h"
#include "tests/support/operations.h"
#include "tests/support/test_blocks.h"

namespace {

GifBytes Document(int images) {
    GifBytes bytes = GifBytes().Header("GIF87a", 5, 4, 0x81);
    for (int i = 0; i < images; ++i) bytes.SmallImage(i % 2 ? 0x81 : 0);
    return bytes.Add({0x3B});
}

// One of the things that people do to a document, or nothing.
void ChangeSomething(BlockList* list, std::mt19937* random) {
    auto any = [&](uint32_t below) { return static_cast<uint32_t>((*random)() % below); };
    uint32_t index = any(list->count);
    int selection = static_cast<int>(index);
    bool differs;
    switch (any(6)) {
        case 0: {
            std::vector<Block> blocks(1 + any(3), MakeText(kCommentBlock, std::to_string((*random)())));
            ASSERT_TRUE(InsertBlocks(list, &selection, blocks));
            break;
        }
        case 1: {
            std::vector<uint32_t> gone;
            for (uint32_t i = 1; i < list->count; ++i)
                if (any(4) == 0) gone.push_back(i);
            RemoveBlocks(list, gone);
            break;
        }
        case 2: {
            Block moved = list->blocks[index];
            if (index == 0) break;
            RemoveBlocks(list, {&index, 1});
            selection = static_cast<int>(any(list->count));
            ASSERT_TRUE(InsertBlocks(list, &selection, {&moved, 1}));
            break;
        }
        case 3: {
            Block edited = list->blocks[index];
            if (edited.kind == kImageBlock) SetImagePixel(ImageWriteLock(&edited.data), 0, 0, any(4));
            ASSERT_TRUE(StoreEdited(list, edited, index, &differs));
            break;
        }
        case 4: {
            Block edited = list->blocks[0];
            PutHeaderFields(&edited, {static_cast<uint16_t>(any(9)), 4, 0x81, 0, 0});
            ASSERT_TRUE(StoreEdited(list, edited, 0, &differs));
            break;
        }
        default:
            for (Block& block : list->All())
                if (block.kind == kImageBlock) (void)SetBlockName("n", &block);
    }
}

}  // namespace

TEST(History, TheVeryBytesComeBack) {
    std::mt19937 random(7);
    LoadedGif list(Document(6), Manner::kWhole);
    History history(UINT64_MAX);
    std::vector<Bytes> states = {SavedBytes(list)};
    for (int i = 0; i < 200; ++i) {
        BlockList before = CopyOf(list);
        ChangeSomething(&list, &random);
        size_t steps = history.Steps();
        history.Record("step " + std::to_string(i), before, list);
        if (history.Steps() > steps)
            states.push_back(SavedBytes(list));
        else
            ASSERT_EQ(SavedBytes(list), states.back()) << "no step, but a change";
    }
    ASSERT_EQ(history.Steps() + 1, states.size());
    ASSERT_GT(states.size(), 100u);
    size_t at = history.Steps();
    for (int i = 0; i < 600; ++i) {
        bool back = random() % 2;
        ASSERT_EQ(back ? history.Undo(&list) : history.Redo(&list), back ? at > 0 : at < history.Steps());
        if (back && at > 0)
            --at;
        else if (!back && at < history.Steps())
            ++at;
        ASSERT_EQ(SavedBytes(list), states[at]) << at;
        for (uint32_t k = 0; k < list.count; ++k) {
            ASSERT_EQ(list.blocks[k].position, k);
            ASSERT_EQ(list.blocks[k].owner, &list);
        }
    }
    while (history.Undo(&list)) {
    }
    EXPECT_EQ(SavedBytes(list), states[0]);
}

TEST(History, NamesSavedStateAndNewSteps) {
    LoadedGif list(Document(2), Manner::kWhole);
    History history;
    auto deleteSecond = [&](const char* name) {
        BlockList before = CopyOf(list);
        uint32_t index = 1;
        RemoveBlocks(&list, {&index, 1});
        history.Record(name, before, list);
    };
    history.Record("nothing", list, list);
    EXPECT_EQ(history.UndoName(), nullptr);
    EXPECT_TRUE(history.IsSaved());
    deleteSecond("one");
    EXPECT_FALSE(history.IsSaved());
    history.MarkSaved();
    deleteSecond("two");
    EXPECT_EQ(*history.UndoName(), "two");
    ASSERT_TRUE(history.Undo(&list));
    EXPECT_TRUE(history.IsSaved());
    EXPECT_EQ(*history.UndoName(), "one");
    EXPECT_EQ(*history.RedoName(), "two");
    ASSERT_TRUE(history.Undo(&list));
    deleteSecond("three");
    EXPECT_EQ(history.RedoName(), nullptr);
    EXPECT_FALSE(history.IsSaved()) << "the saved state can't be reached any more";
    ASSERT_TRUE(history.Undo(&list));
    EXPECT_FALSE(history.IsSaved());
    EXPECT_FALSE(history.Undo(&list));
}

TEST(History, AStepTellsWhereTheDocumentChanged) {
    enum { kInsert, kRemove, kEdit, kInsertFirstExtension };
    const std::tuple<int, std::vector<uint32_t>, ChangedPlace, ChangedPlace> rows[] = {
        // what is done to which blocks of a header and four images; the place when it is undone, and when it is redone
        {kInsert, {2}, {3, 2, 0}, {3, 0, 2}},
        {kRemove, {2}, {2, 0, 1}, {2, 1, 0}},
        {kRemove, {1, 3}, {1, 0, 1}, {1, 1, 0}},
        {kEdit, {2, 3}, {2, 2, 2}, {2, 2, 2}},
        {kEdit, {1}, {1, 1, 1}, {1, 1, 1}},                  // the third one is as this one was
        {kInsertFirstExtension, {2}, {3, 1, 0}, {3, 0, 1}},  // which also makes the header one of GIF89a
    };
    auto at = [](const ChangedPlace& place) { return std::tuple(place.at, place.taken, place.put); };
    for (const auto& [act, blocks, undone, redone] : rows) {
        SCOPED_TRACE(testing::Message() << act << " " << blocks[0]);
        LoadedGif list(Document(4), act == kEdit ? Manner::kClassic : Manner::kWhole);  // classic blocks can be alike
        BlockList before = CopyOf(list);
        int selection = static_cast<int>(blocks[0]);
        std::vector<Block> fresh;
        if (act == kInsert) fresh.assign(2, MakeImage(9, 9, 2));
        if (act == kInsertFirstExtension) fresh = {MakeText(kCommentBlock, "a")};
        EXPECT_TRUE(fresh.empty() || InsertBlocks(&list, &selection, fresh));
        if (act == kRemove) RemoveBlocks(&list, blocks);
        for (uint32_t index : blocks)
            if (act == kEdit) PutImageFields(&list.blocks[index], {7, 7, 9, 9, 0});
        History history;
        history.Record("", before, list);
        ChangedPlace place;
        ASSERT_TRUE(history.Undo(&list, &place));
        EXPECT_EQ(at(place), at(undone));
        ASSERT_TRUE(history.Redo(&list, &place));
        EXPECT_EQ(at(place), at(redone));
        EXPECT_FALSE(history.Redo(&list, &place));
        EXPECT_EQ(at(place), at(redone)) << "there was no step";
    }
}

TEST(History, StepsCostWhatTheyChange) {
    BlockList list;
    ASSERT_TRUE(NewDocument(&list));
    for (int i = 0; i < 50; ++i) {
        Append(&list, MakeImage(1000, 100, 8));
        PutImageFields(&list.blocks[list.count - 1], {static_cast<uint16_t>(i), 0, 1000, 100, 7});
    }
    const uint64_t image = MemorySize(list.blocks[1].data);
    auto bytesOf = [&](auto change) {
        History history;
        BlockList before = CopyOf(list);
        change();
        history.Record("", before, list);
        EXPECT_EQ(history.Steps(), 1u);
        return history.Bytes();
    };
    uint32_t index = 3;
    EXPECT_LT(bytesOf([&] { PutImageFields(&list.blocks[9], {1, 1, 1000, 100, 7}); }), image / 10);
    EXPECT_LT(bytesOf([&] { std::swap(list.blocks[5], list.blocks[20]); }), image / 10) << "what stays is no cost";
    uint64_t removed = bytesOf([&] { RemoveBlocks(&list, {&index, 1}); });
    EXPECT_GT(removed, image);
    EXPECT_LT(removed, 2 * image);
}

TEST(History, OldStepsGoAndShortMemoryForgets) {
    BlockList list;
    ASSERT_TRUE(NewDocument(&list));
    History history(5000000);
    for (int i = 0; i < 9; ++i) {
        BlockList before = CopyOf(list);
        Append(&list, MakeImage(1000, 1000, 8));
        history.Record(std::to_string(i), before, list);
        EXPECT_LE(history.Bytes(), 5000000u);
    }
    EXPECT_EQ(history.Steps(), 4u);
    history.LimitTo(2500000);
    EXPECT_EQ(history.Steps(), 4u) << "so far";
    history.Record("", CopyOf(list), list);
    EXPECT_EQ(history.Steps(), 4u) << "there was no step";
    history.LimitTo(5000000);
    while (history.Undo(&list)) {
    }
    EXPECT_EQ(list.count, 6u);
    EXPECT_FALSE(history.IsSaved());
    faults.allocationsUntilFailure = 0;
    EXPECT_FALSE(history.Redo(&list));
    faults = {};
    EXPECT_EQ(list.count, 6u);
    EXPECT_TRUE(history.Redo(&list));
    EXPECT_EQ(list.count, 7u);
    history.Clear();
    EXPECT_EQ(history.UndoName(), nullptr);
    EXPECT_TRUE(history.IsSaved());
    history.LimitTo(0);
    for (int i = 0; i < 2; ++i) {
        BlockList before = CopyOf(list);
        Append(&list, MakeImage(10, 10, 8));
        history.Record("", before, list);
        EXPECT_EQ(history.Steps(), 1u) << "the newest one stays";
    }
    history.Forget();
    EXPECT_EQ(history.UndoName(), nullptr);
    EXPECT_FALSE(history.IsSaved());
}
