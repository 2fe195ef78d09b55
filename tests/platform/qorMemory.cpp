#include <cstdint>
#include <cstring>
#include <set>

#include <gtest/gtest.h>

#include "platform/qor/BlockPool.h"
#include "platform/qor/Containers.h"
#include "platform/qor/Log.h"
#include "platform/qor/RandomObject.h"
#include "platform/qor/SmallVector.h"
#include "tests/support/HeapScope.h"
#include "tests/support/LogCapture.h"

namespace {

TEST(Memory, tellsOfAnAllocationWhereNoneIsAllowed) {
    support::LogCapture log;
    qor::vector<int> numbers;
    numbers.reserve(4);
    size_t const before = qor::getAllocationCounts().forbidden;
    {
        qor::ForbidAllocations const forbid;
        numbers.assign({1, 2, 3, 4});
        EXPECT_EQ(qor::getAllocationCounts().forbidden, before);
        numbers.push_back(5);
        {
            qor::AllowAllocations const allow;
            numbers.reserve(1000);
        }
        EXPECT_EQ(qor::getAllocationCounts().forbidden, before + 1);
    }
    numbers.reserve(5000);
    EXPECT_EQ(log.count("allocation is forbidden"), 1u) << log.dump();
}

TEST(Memory, countsWhatContainersTakeAndGiveBack) {
    auto const before = qor::getAllocationCounts();
    {
        qor::AllocationScope const scope;
        support::HeapScope const heap;
        qor::list<qor::wstring> texts;
        texts.emplace_back(100, L'x');
        qor::set<int> numbers = {1, 2, 3};
        qor::small_vector<int, 4> few = {1, 2, 3, 4};
        EXPECT_EQ(scope.getCount(), 5u);
        few.push_back(5);
        EXPECT_EQ(scope.getCount(), 6u);
        EXPECT_EQ(heap.getAllocations(), 6u);
    }
    auto const after = qor::getAllocationCounts();
    EXPECT_EQ(after.allocations - before.allocations, after.frees - before.frees);
}

TEST(MemoryDeathTest, endsTheProgramWhereNoMemoryIsLeft) {
    EXPECT_DEATH(qor::fatal_out_of_memory("qor_malloc", 12345), "");
    EXPECT_DEATH(qor::allocator<double>().allocate(~size_t(0) / 4), "");
}

TEST(BlockPool, givesAlignedBlocksThatDoNotOverlapAndReusesThem) {
    qor::BlockPool pool(24, 10, "test", 16);
    std::set<char*> blocks;
    for (int i = 0; i < 35; ++i) {
        auto* const block = static_cast<char*>(pool.alloc());
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % 16, 0u);
        std::memset(block, i, 24);
        blocks.insert(block);
    }
    ASSERT_EQ(blocks.size(), 35u);
    for (auto it = std::next(blocks.begin()); it != blocks.end(); ++it)
        EXPECT_GE(*it - *std::prev(it), 24);
    EXPECT_EQ(pool.getChunkCount(), 4u);

    for (char* block : blocks)
        pool.free(block);
    pool.free(nullptr);
    EXPECT_EQ(pool.getUsedCount(), 0u);
    for (int i = 0; i < 35; ++i) {
        auto* const block = static_cast<char*>(pool.alloc());
        EXPECT_EQ(blocks.count(block), 1u);
    }
    EXPECT_EQ(pool.getChunkCount(), 4u);
    for (char* block : blocks)
        pool.free(block);
}

TEST(BlockPool, makesRoomForItsOwnListInTinyBlocks) {
    qor::BlockPool pool(1, 0, "tiny", 1);
    void* const first = pool.alloc();
    void* const second = pool.alloc();
    EXPECT_NE(first, second);
    pool.free(first);
    EXPECT_EQ(pool.alloc(), first);
    pool.free(first);
    pool.free(second);
}

TEST(BlockPool, namesItselfWhenBlocksAreStillOut) {
    support::LogCapture log;
    {
        qor::BlockPool pool(8, 8, "leaky", 8);
        pool.alloc();
    }
    EXPECT_TRUE(log.contains("leaky")) << log.dump();
}

TEST(Log, passesLongMessagesWholeAndMessagesOfTheSinkItselfToStderr) {
    std::string longest;
    auto const before = qor::setLogSink([&](char const*, int, char const* text) {
        longest = text;
        qor_logf("VORLEX", 64, "from inside");
    });
    testing::internal::CaptureStderr();
    qor_logf("VORLEX", 8, "%s", std::string(5000, 'y').c_str());
    std::string const written = testing::internal::GetCapturedStderr();
    qor::setLogSink(before);
    EXPECT_EQ(longest, std::string(5000, 'y'));
    EXPECT_NE(written.find("from inside"), std::string::npos);
}

std::vector<float> draw(RandomObject& object) {
    std::vector<float> numbers;
    for (int i = 0; i < 50; ++i)
        numbers.push_back(object.get());
    return numbers;
}

TEST(RandomObject, repeatsForASeedAndDiffersBetweenObjects) {
    RandomObject::setProgramSeed(7);
    RandomObject first;
    RandomObject second;
    auto const one = draw(first);
    auto const two = draw(second);
    EXPECT_NE(one, two);
    RandomObject::setProgramSeed(7);
    EXPECT_EQ(draw(first), one);
    EXPECT_EQ(draw(second), two);
    RandomObject own(3);
    RandomObject twin(3);
    EXPECT_EQ(draw(own), draw(twin));
}

TEST(RandomObject, spreadsEvenlyBelowOne) {
    RandomObject object(1);
    int buckets[10] = {};
    for (int i = 0; i < 10000; ++i) {
        float const number = object.get();
        ASSERT_GE(number, 0.0f);
        ASSERT_LT(number, 1.0f);
        ++buckets[int(number * 10)];
    }
    for (int const count : buckets)
        EXPECT_NEAR(count, 1000, 150);
}

}  // namespace
