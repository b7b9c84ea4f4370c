// The runtime contract's value types: AEArray's growth and element handling, AEError, and the
// kernel-allocated blocks behind them. The real kernel is loaded the way the launcher loads it.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "LMRuntimeKernel.h"
#include "ae/AEArray.h"
#include "ae/AEError.h"
#include "ae/AEString.h"

namespace {

class KernelEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        const char* argv[] = {"ae_contract_tests"};
        ASSERT_NE(LMAcquireKernel(1, argv), nullptr);
    }
    void TearDown() override { LMReleaseKernel(); }
};

const auto* const g_Kernel = ::testing::AddGlobalTestEnvironment(new KernelEnvironment);

// An element that knows whether it was moved or copied and whether it sits where it was built.
struct Tracked {
    static int moves;
    Tracked() : Tracked(0) {}
    explicit Tracked(int v) : value(v), self(this) {}
    Tracked(Tracked&& other) noexcept : value(other.value), self(this) {
        other.value = -1;
        ++moves;
    }
    Tracked& operator=(Tracked&& other) noexcept {
        value = other.value;
        other.value = -1;
        ++moves;
        return *this;
    }
    Tracked(const Tracked&) = delete;
    Tracked& operator=(const Tracked&) = delete;
    ~Tracked() { self = nullptr; }
    int value;
    Tracked* self;
};
int Tracked::moves = 0;

TEST(AEArray, GrowthRoundsToTheNextMultipleOfTwiceTheCapacityAboveTheRequest) {
    EXPECT_EQ(AEArray<int>::GrownCapacity(0, 3), 3u);
    EXPECT_EQ(AEArray<int>::GrownCapacity(4, 8), 16u);  // a request on a multiple gets the next one
    EXPECT_EQ(AEArray<int>::GrownCapacity(4, 5), 8u);
    EXPECT_EQ(AEArray<int>::GrownCapacity(4, 17), 24u);
    EXPECT_EQ(AEArray<int>::GrownCapacity(4, 3), 4u);  // no growth below the capacity
    EXPECT_EQ(AEArray<int>::GrownCapacity(3000000000u, 4000000000u), UINT32_MAX);

    AEArray<int> a;
    ASSERT_TRUE(a.Reserve(4));
    EXPECT_EQ(a.GetCapacity(), 4u);
    ASSERT_TRUE(a.Reserve(8));
    EXPECT_EQ(a.GetCapacity(), 16u);
}

TEST(AEArray, NewSlotsAreZeroAndInsertionShiftsTheTail) {
    AEArray<int> a;
    for (int v : {1, 2, 4})
        ASSERT_TRUE(a.Append(v));
    ASSERT_TRUE(a.Insert(2, 3));
    ASSERT_TRUE(a.Insert(0, 0));
    ASSERT_EQ(a.GetCount(), 5u);
    for (uint32_t i = 0; i < a.GetCount(); ++i)
        EXPECT_EQ(a[i], static_cast<int>(i));
    for (uint32_t i = a.GetCount(); i < a.GetCapacity(); ++i)
        EXPECT_EQ(a.GetData()[i], 0) << "slot " << i;
    EXPECT_FALSE(a.Insert(9, 9));  // past the end: reported, refused, the program goes on
    a[99] = 7;                     // reported; lands in a spare element, not past the storage
    EXPECT_EQ(a[99], 0);
    EXPECT_EQ(a.GetCount(), 5u);
}

TEST(AEArray, NonPlainElementsAreMovedOneByOne) {
    Tracked::moves = 0;
    {
        AEArray<Tracked> a;
        for (int v = 0; v < 9; ++v)
            ASSERT_TRUE(a.Append(Tracked(v)));
        ASSERT_TRUE(a.Insert(4, Tracked(100)));
        ASSERT_EQ(a.GetCount(), 10u);
        const int expected[] = {0, 1, 2, 3, 100, 4, 5, 6, 7, 8};
        for (uint32_t i = 0; i < a.GetCount(); ++i) {
            EXPECT_EQ(a[i].value, expected[i]);
            EXPECT_EQ(a[i].self, &a[i]) << "element " << i << " was copied as bytes";
        }
        EXPECT_GT(Tracked::moves, 10);
    }
}

TEST(AEArray, PlainRecordsKeepTheirBytesAcrossGrowth) {
    struct Entry {
        const char* name;
        int32_t flag;
    };
    AEArray<Entry> a;
    for (int i = 0; i < 40; ++i)
        ASSERT_TRUE(a.Append(Entry{"m", i}));
    for (int i = 0; i < 40; ++i)
        EXPECT_EQ(a[static_cast<uint32_t>(i)].flag, i);
}

TEST(AEError, NamesAreTruncatedTo31CharactersAndCodesDecide) {
    AEError long_name("AEError_ThisNameIsFarLongerThanThirtyOneCharacters", 9);
    EXPECT_EQ(std::strlen(long_name.GetName()), 31u);
    EXPECT_EQ(std::string(long_name.GetName()), "AEError_ThisNameIsFarLongerThan");
    AEError copy = long_name;
    EXPECT_EQ(std::string(copy.GetName()), std::string(long_name.GetName()));

    EXPECT_EQ(AEError_OK.GetCode(), 0);
    EXPECT_EQ(AEError_InvalidParameters.GetCode(), 6);
    EXPECT_TRUE(AEError("SomethingElse", 0) == AEError_OK);
    EXPECT_TRUE(AEError_Generic != AEError_OK);
    EXPECT_STREQ(AEError().GetName(), "AEError_OK");
}

TEST(AEMemory, BlocksCarryTheKernelHeader) {
    void* block = AE_MALLOC(24);
    ASSERT_NE(block, nullptr);
    const uint32_t* header = reinterpret_cast<const uint32_t*>(static_cast<char*>(block) - 8);
    EXPECT_EQ(header[0], 24u);
    EXPECT_EQ(header[1], 1u);
    AE_FREE(block);
    AE_FREE(nullptr);

    AEString s("a\0b", 3);
    EXPECT_EQ(s.length(), 3u);
    AEString moved(std::move(s));
    EXPECT_EQ(moved.length(), 3u);
    EXPECT_STREQ(s.c_str(), "");
}

}  // namespace
