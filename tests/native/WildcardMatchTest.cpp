// The wildcard matcher of the foundation library, built natively under ASan and UBSan.
#include <gtest/gtest.h>

#include <string>

#include "foundation/WildcardMatch.h"

namespace {

bool Match(const std::string& text, const std::string& pattern) {
    return ky::WildcardMatch(text.c_str(), pattern.c_str());
}

TEST(WildcardMatch, LiteralsMatchExactlyWithCase) {
    EXPECT_TRUE(Match("abc", "abc"));
    EXPECT_FALSE(Match("abc", "abd"));
    EXPECT_FALSE(Match("ABC", "abc"));
    EXPECT_FALSE(Match("abc", "ab"));
    EXPECT_FALSE(Match("ab", "abc"));
    EXPECT_TRUE(Match("", ""));
    EXPECT_FALSE(Match("a", ""));
    EXPECT_TRUE(ky::WildcardMatch(nullptr, nullptr));
    EXPECT_TRUE(ky::WildcardMatch(nullptr, "*"));
    EXPECT_FALSE(ky::WildcardMatch("a", nullptr));
}

TEST(WildcardMatch, QuestionMarkTakesExactlyOneCharacter) {
    EXPECT_TRUE(Match("abc", "a?c"));
    EXPECT_TRUE(Match("a*c", "a?c"));
    EXPECT_FALSE(Match("ac", "a?c"));
    EXPECT_FALSE(Match("abbc", "a?c"));
    EXPECT_FALSE(Match("", "?"));
}

TEST(WildcardMatch, StarTakesAnyRunAndTrailingStarsMatchNothing) {
    EXPECT_TRUE(Match("", "*"));
    EXPECT_TRUE(Match("anything", "*"));
    EXPECT_TRUE(Match("abc", "abc**"));
    EXPECT_TRUE(Match("abc", "a*"));
    EXPECT_TRUE(Match("abc", "*c"));
    EXPECT_FALSE(Match("abc", "*b"));
    EXPECT_TRUE(Match("mississippi", "m*iss*ppi"));
    EXPECT_TRUE(Match("mississippi", "m*si*pi"));
    EXPECT_FALSE(Match("mississippi", "m*si*pa"));
}

TEST(WildcardMatch, LetterStarLetterQuestionNeedsOneMoreCharacter) {
    EXPECT_FALSE(Match("axb", "a*b?"));
    EXPECT_TRUE(Match("axbc", "a*b?"));
    EXPECT_TRUE(Match("abc", "a*b?"));
    EXPECT_FALSE(Match("axbcd", "a*b?"));
    EXPECT_TRUE(Match("abxbc", "a*b?"));
}

TEST(WildcardMatch, ManyStarsOverALongTextStillAnswer) {
    const std::string text(400, 'a');
    std::string pattern;
    for (int i = 0; i < 30; ++i) pattern += "*a";
    EXPECT_FALSE(Match(text, pattern + "*b"));
    EXPECT_TRUE(Match(text, pattern + "*"));
    EXPECT_FALSE(Match(text + "b", pattern + "b?"));
}

}  // namespace
