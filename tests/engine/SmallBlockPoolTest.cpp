#include "engine/SmallBlockPool.h"

#include <cstdint>
#include <cstring>
#include <map>

#include <gtest/gtest.h>

namespace {

TEST(SmallBlockPoolTest, BlocksAreAlignedDoNotOverlapAndAreUsedAgain) {
    SmallBlockPool pool;
    std::map<unsigned char*, std::size_t> blocks;
    for (std::size_t bytes = 1; bytes < 6000;
         bytes += 7) { // also more than the pool gives out of large blocks
        auto* const block = static_cast<unsigned char*>(pool.allocate(bytes));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0u) << bytes;
        std::memset(block, static_cast<int>(bytes % 251), bytes);
        blocks[block] = bytes;
    }
    for (const auto& [block, bytes] : blocks) {
        for (std::size_t i = 0; i < bytes; ++i)
            ASSERT_EQ(block[i], bytes % 251) << bytes;
        pool.deallocate(block, bytes);
    }
    for (const std::size_t bytes : {1u, 16u, 17u, 4096u}) {
        void* const block = pool.allocate(bytes);
        EXPECT_TRUE(blocks.contains(static_cast<unsigned char*>(block))) << bytes;
        pool.deallocate(block, bytes);
    }
}

} // namespace
