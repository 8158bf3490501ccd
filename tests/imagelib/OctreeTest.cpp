#include "imagelib/OctreeQuantEngine.h"
#include "tests/imagelib/Pictures.h"

#include <gtest/gtest.h>

#include <cstdlib>

using namespace ImageLib;

namespace {

struct Rgb {
    std::uint8_t red, green, blue;
};

std::vector<std::uint8_t> Pack(const std::vector<Rgb>& pixels) {
    std::vector<std::uint8_t> bytes;
    for (const Rgb& pixel : pixels)
        bytes.insert(bytes.end(), {pixel.red, pixel.green, pixel.blue, 99});
    return bytes;
}

void Work(OctreeQuantEngine& engine, const std::vector<Rgb>& pixels, unsigned count) {
    engine.work(Pack(pixels).data(), static_cast<unsigned>(pixels.size()), 1, count);
}

Pixel32 Opaque(double red, double green, double blue) {
    return {1.0f, static_cast<float>(red / 255), static_cast<float>(green / 255),
            static_cast<float>(blue / 255)};
}

TEST(OctreeTest, OneColourGivesOneEntry) {
    OctreeQuantEngine engine;
    Work(engine, std::vector<Rgb>(300, Rgb{10, 200, 33}), 8);
    ASSERT_EQ(engine.Length(), 1u);
    EXPECT_EQ(engine.Palette()[0], Opaque(10, 200, 33));
    EXPECT_EQ(engine.Palette()[1], Pixel32{});
}

TEST(OctreeTest, NoPixelsGiveNoEntriesAndNoHeap) {
    OctreeQuantEngine engine;
    engine.work(nullptr, 0, 0, 8);
    EXPECT_EQ(engine.Length(), 0u);
    EXPECT_EQ(engine.Heap().entries, nullptr);
}

TEST(OctreeTest, FewColoursAreKeptInTheOrderOfAppearance) {
    OctreeQuantEngine engine;
    Work(engine, {{200, 0, 0}, {0, 200, 0}, {0, 0, 200}, {0, 200, 0}}, 8);
    ASSERT_EQ(engine.Length(), 3u);
    EXPECT_EQ(engine.Palette()[0], Opaque(200, 0, 0));
    EXPECT_EQ(engine.Palette()[1], Opaque(0, 200, 0));
    EXPECT_EQ(engine.Palette()[2], Opaque(0, 0, 200));
}

// 128 pixels raise a leaf's key from 0 to 1, so the leaf is swapped with the smaller of its children.
TEST(OctreeTest, AFrequentColourSinksInTheHeap) {
    OctreeQuantEngine engine;
    std::vector<Rgb> pixels = {{200, 0, 0}, {0, 200, 0}, {0, 0, 200}};
    pixels.resize(3 + 127, Rgb{200, 0, 0});
    Work(engine, pixels, 8);
    ASSERT_EQ(engine.Length(), 3u);
    EXPECT_EQ(engine.Palette()[0], Opaque(0, 200, 0));
    EXPECT_EQ(engine.Palette()[1], Opaque(200, 0, 0));
    EXPECT_EQ(engine.Palette()[2], Opaque(0, 0, 200));
}

TEST(OctreeTest, ColoursThatDifferInTheLowestBitAreAveraged) {
    OctreeQuantEngine engine;
    Work(engine, {{10, 20, 31}, {11, 21, 30}, {11, 20, 30}, {11, 20, 30}}, 8);
    ASSERT_EQ(engine.Length(), 1u);
    EXPECT_EQ(engine.Palette()[0], Opaque(10.75, 20.25, 30.25));
    const oct_node_t& leaf = *engine.Heap().entries[1].node;
    EXPECT_EQ(leaf.sum[0], 11u);
    EXPECT_EQ(leaf.sum[1], 20u);
    EXPECT_EQ(leaf.sum[2], 30u);
}

// Worked out by hand for two colours. A and B have the parent P, C has the parent Q, all keys are (children,
// 0).
//   A B C    A is removed: C moves to the front, then B; P has one child left and is added at the end.
//   C B P    C is removed: P sinks below B; Q has no child left and is added at the end.
//   B P Q    B is removed: Q moves to the front; P, now without children and with the pixels of A and B, is
//   not less. Q P
TEST(OctreeTest, NodesAreMergedInTheOrderOfTheHeap) {
    OctreeQuantEngine engine;
    Work(engine, {{0, 0, 0}, {2, 0, 0}, {255, 255, 255}}, 2);
    ASSERT_EQ(engine.Length(), 2u);
    EXPECT_EQ(engine.Palette()[0], Opaque(255, 255, 255));
    EXPECT_EQ(engine.Palette()[1], Opaque(1, 0, 0));
    EXPECT_EQ(engine.Heap().entries[1].node->depth, 6);
    EXPECT_EQ(engine.Heap().entries[2].node->child_count, 0);
}

TEST(OctreeTest, InsertingAPixelMakesAPathByItsBitsOfGreenRedAndBlue) {
    OctreeQuantEngine engine;
    engine.work(nullptr, 0, 0, 8);
    const std::uint8_t pixel[4] = {0x80, 0x41, 0x03, 0};
    oct_node_t* node = node_insert(engine.Root(), pixel);
    EXPECT_EQ(node, node_insert(engine.Root(), pixel));
    EXPECT_EQ(node->count, 2u);
    EXPECT_EQ(node->sum[1], 0x82u);
    const std::uint8_t slots[] = {2, 4, 0, 0, 0, 0, 1};
    for (int depth = 7; depth > 0; --depth, node = node->parent) {
        EXPECT_EQ(node->depth, depth);
        EXPECT_EQ(node->slot, slots[depth - 1]);
        EXPECT_EQ(node->parent->children[node->slot], node);
        EXPECT_EQ(node->parent->child_count, 1);
    }
    EXPECT_EQ(node, engine.Root());
}

TEST(OctreeTest, TheHeapOrdersByChildrenThenByShiftedCount) {
    struct Row {
        std::uint8_t children;
        std::uint32_t count;
        std::uint8_t depth;
    };
    // In the expected order. The count of the first row has its sign bit set.
    const Row rows[] = {{0, 0x80000000u, 0}, {0, 255, 7}, {0, 128, 6}, {0, 3, 0}, {1, 0, 7}, {2, 0, 0}};
    std::vector<oct_node_t> nodes(std::size(rows));
    node_heap heap{};
    for (std::size_t i = nodes.size(); i-- > 0;) {
        nodes[i] = {};
        nodes[i].child_count = rows[i].children;
        nodes[i].count = rows[i].count;
        nodes[i].depth = rows[i].depth;
        heap_add(&heap, &nodes[i]);
    }
    EXPECT_EQ(heap.size, nodes.size() + 1);
    for (oct_node_t& expected : nodes) {
        ASSERT_EQ(heap.entries[1].node, &expected);
        oct_node_t* const last = heap.entries[--heap.size].node;
        last->heap_index = 1;
        down_heap(&heap, last);
    }
    std::free(heap.entries);
}

TEST(OctreeTest, PalettesOfLargePicturesEqualTheReference) {
    for (const Pictures::Kind kind : {Pictures::Kind::Photo, Pictures::Kind::Ties, Pictures::Kind::Wild}) {
        const std::vector<std::uint8_t> bytes = Reference::ToBytes(Pictures::Make(kind, 301, 203));
        for (const unsigned count : {1u, 8u, 64u, 256u}) {
            OctreeQuantEngine engine;
            engine.work(bytes.data(), 301, 203, count);
            const Reference::Palette expected = Reference::OctreePalette(bytes, count);
            ASSERT_EQ(engine.Length(), expected.size());
            for (std::size_t i = 0; i < expected.size(); ++i)
                ASSERT_EQ(engine.Palette()[i], (Pixel32{1, expected[i].r, expected[i].g, expected[i].b}))
                    << Pictures::Name(kind) << ' ' << count << ' ' << i;
        }
    }
}

TEST(OctreeTest, AnEngineCanWorkAgainWhileAnotherIsAlive) {
    OctreeQuantEngine first;
    Work(first, {{1, 2, 3}}, 8);
    {
        OctreeQuantEngine second;
        Work(second, {{90, 90, 90}, {4, 4, 4}}, 8);
        EXPECT_EQ(second.Length(), 2u);
    }
    Work(first, {{200, 2, 3}, {1, 1, 1}, {60, 60, 60}}, 8);
    EXPECT_EQ(first.Length(), 3u);
    EXPECT_EQ(first.Palette()[0], Opaque(200, 2, 3));
}

} // namespace
