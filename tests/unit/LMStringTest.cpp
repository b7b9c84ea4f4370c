#include "LMString.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(LMStringGrowth, ConstructionSizesBuffersInMultiplesOfEight) {
    EXPECT_EQ(LMString().capacity(), 7u);
    EXPECT_EQ(LMString("1234567").capacity(), 7u);
    EXPECT_EQ(LMString("12345678").capacity(), 15u);
    EXPECT_EQ(LMString(std::string(40, 'x').c_str()).capacity(), 47u);
    LMString copy(LMString(std::string(20, 'y').c_str()));
    EXPECT_EQ(copy.capacity(), 23u);
    EXPECT_EQ(copy.length(), 20u);
}

TEST(LMStringGrowth, AppendGrowsToAnExactFit) {
    LMString s("1234567");
    s.append('8');
    EXPECT_EQ(s.capacity(), 15u);
    EXPECT_STREQ(s.c_str(), "12345678");
    s.append(std::string(100, 'z').c_str());
    EXPECT_EQ(s.length(), 108u);
    EXPECT_EQ(s.capacity(), 111u);
    // Nothing to append: nothing changes, not even a null check of the length.
    s.append("", 0);
    EXPECT_EQ(s.length(), 108u);
}

TEST(LMStringGrowth, AssignGrowsByHalfOrToFitAndNeverShrinks) {
    LMString s(std::string(31, 'a').c_str());
    ASSERT_EQ(s.capacity(), 31u);
    const char* before = s.c_str();
    s.assign(std::string(20, 'b').c_str());
    EXPECT_EQ(s.capacity(), 31u);
    EXPECT_EQ(s.c_str(), before);  // buffer kept
    s.assign(std::string(40, 'c').c_str());
    EXPECT_EQ(s.capacity(), 47u);  // 31 + 15 + 8 = 54, rounded down to 48
    s.assign(std::string(200, 'd').c_str());
    EXPECT_EQ(s.capacity(), 207u);  // the half-growth is too small: exact fit
    s.assign("e");
    EXPECT_EQ(s.capacity(), 207u);
    EXPECT_EQ(s.length(), 1u);
}

TEST(LMStringGrowth, SelfReferencingAssignAndAppendAreSafe) {
    LMString s("abcdefg");
    s.append(s);  // forces a reallocation while reading from the old buffer
    EXPECT_STREQ(s.c_str(), "abcdefgabcdefg");
    s.assign(s.c_str() + 7, 7);
    EXPECT_STREQ(s.c_str(), "abcdefg");
    LMString big("0123456789");
    big.assign(big.c_str() + 2, 3);
    EXPECT_STREQ(big.c_str(), "234");
    s = s;
    EXPECT_STREQ(s.c_str(), "abcdefg");
}

TEST(LMStringNul, LengthFormsCarryNulsAndCStringFormsStopAtThem) {
    const char raw[] = {'a', 0, 'b'};
    LMString withNul(raw, 3);
    EXPECT_EQ(withNul.length(), 3u);
    EXPECT_EQ(withNul[2], 'b');

    LMString other(raw, 3);
    EXPECT_TRUE(withNul == other);
    LMString differsAfterNul(raw, 3);
    differsAfterNul[2] = 'c';
    EXPECT_TRUE(withNul != differsAfterNul);
    EXPECT_TRUE(withNul == "a");  // strcmp stops at the NUL

    LMString copy(withNul);
    EXPECT_EQ(copy.length(), 3u);
    LMString assigned;
    assigned = withNul;
    EXPECT_TRUE(assigned == withNul);
    LMString appended("x");
    appended.append(withNul);
    EXPECT_EQ(appended.length(), 4u);
    EXPECT_EQ(LMString(raw).length(), 1u);  // const char* construction measures with strlen

    // Writing a NUL through operator[] does not change the length.
    LMString s("abc");
    s[1] = 0;
    EXPECT_EQ(s.length(), 3u);
    EXPECT_EQ(s.find('c'), 2u);
}

TEST(LMStringSearch, FindAndSubstrRespectBounds) {
    LMString s("a/b/c");
    EXPECT_EQ(s.find('/'), 1u);
    EXPECT_EQ(s.find('/', 2), 3u);
    EXPECT_EQ(s.find('/', 4), LMString::npos);
    EXPECT_EQ(s.find('a', 5), LMString::npos);
    EXPECT_EQ(s.find('a', 500), LMString::npos);
    EXPECT_EQ(static_cast<int>(s.find('z')), -1);

    EXPECT_STREQ(s.substr(2, 1).c_str(), "b");
    EXPECT_STREQ(s.substr(2).c_str(), "b/c");
    EXPECT_STREQ(s.substr(2, 1000).c_str(), "b/c");
    EXPECT_STREQ(s.substr(5).c_str(), "");
    EXPECT_STREQ(s.substr(99, 3).c_str(), "");
}

TEST(LMStringEdit, TrimRemovesOnlySpaces) {
    LMString s("  \tword \n  ");
    s.trim();
    EXPECT_STREQ(s.c_str(), "\tword \n");
    LMString spaces("     ");
    spaces.trim();
    EXPECT_TRUE(spaces.empty());
    LMString untouched("x");
    untouched.trim();
    EXPECT_STREQ(untouched.c_str(), "x");
}

TEST(LMStringEdit, SwapExchangesContents) {
    LMString a("first");
    LMString b(std::string(50, 'q').c_str());
    a.swap(b);
    EXPECT_EQ(a.length(), 50u);
    EXPECT_STREQ(b.c_str(), "first");
}

TEST(LMStringCompare, OrderingAndConcatenation) {
    LMString a("apple");
    LMString b("banana");
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    EXPECT_TRUE(a <= a);
    EXPECT_TRUE(b >= a);
    EXPECT_FALSE(a >= b);
    EXPECT_TRUE(a != "pear");
    EXPECT_TRUE("pear" != a);
    EXPECT_STREQ((a + b).c_str(), "applebanana");
    EXPECT_STREQ((a + "/").c_str(), "apple/");
    EXPECT_STREQ(("/" + a).c_str(), "/apple");
}

TEST(LMStringDeathTest, NullPointersAndBadIndexesAbortWithTheCondition) {
    const char* null = nullptr;
    EXPECT_DEATH(LMString s(null), "str != 0");
    EXPECT_DEATH(LMString s(null, 3), "buf != 0");
    EXPECT_DEATH(LMString().append(null, 1), "buf != 0");
    EXPECT_DEATH(LMString().assign(null, 1), "buf != 0");
    EXPECT_DEATH((void)(LMString("a") == null), "b != 0");
    EXPECT_DEATH((void)(null + LMString("a")), "a != 0");
    LMString s("ab");
    EXPECT_DEATH((void)s[2], "idx < length\\(\\)");
    // The report names the source file and the full signature.
    EXPECT_DEATH((void)s[5],
                 "Private/LMString.cpp:[0-9]+: char& LMString::operator\\[\\]\\(size_t\\)");
}

}  // namespace
