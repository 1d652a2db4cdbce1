// UTL_String: encodings, copies, joins, comparisons, searches and text shaping.
#include <gtest/gtest.h>

#include "tests/foundation/ExceptionCode.h"
#include <malloc.h>

#include <string>

#include "foundation/UTL_String.h"

namespace {

// Sees which forms a string holds, to check what copies and assignments keep.
class Inspected : public UTL_String {
public:
    using UTL_String::UTL_String;
    Inspected(const UTL_String& other) : UTL_String(other) {}
    using UTL_String::operator=;
    bool HoldsNarrow() const { return m_psz != nullptr; }
    bool HoldsWide() const { return m_pwsz != nullptr; }
    const void* WideBuffer() const { return m_pwsz; }
    // The bytes allocated for the master form.
    size_t MasterBytes() const { return m_eEncoding == kNarrow ? _msize(m_psz) : _msize(m_pwsz); }
};

using lptest::CodeOf;

std::string N(const UTL_String& s) { return s.Narrow(); }
std::wstring W(const UTL_String& s) { return s.Wide(); }

TEST(UTL_StringCreate, NullAndEmptyInputsKeepTheirEncoding) {
    const UTL_String fresh;
    const UTL_String nullNarrow(static_cast<const char*>(nullptr));
    const UTL_String nullWide(static_cast<const wchar_t*>(nullptr));
    const UTL_String emptyNarrow("");
    const UTL_String emptyWide(L"");
    EXPECT_EQ(1, fresh.Encoding());
    EXPECT_EQ(1, nullNarrow.Encoding());
    EXPECT_EQ(2, nullWide.Encoding());
    EXPECT_EQ(1, emptyNarrow.Encoding());
    EXPECT_EQ(2, emptyWide.Encoding());
    for (const UTL_String* s : {&fresh, &nullNarrow, &nullWide, &emptyNarrow, &emptyWide}) {
        EXPECT_EQ(0u, s->Length());
        EXPECT_STREQ("", s->Narrow());
        EXPECT_STREQ(L"", s->Wide());
    }
}

TEST(UTL_StringCreate, NumbersAndFormats) {
    EXPECT_EQ("42", N(UTL_String(42u)));
    EXPECT_EQ("-1", N(UTL_String(0xFFFFFFFFu)));  // "%d" of the value
    const UTL_String narrow(32, "%s-%d", "item", 7);
    EXPECT_EQ(1, narrow.Encoding());
    EXPECT_EQ("item-7", N(narrow));
    EXPECT_EQ(6u, narrow.Length());
    const UTL_String wide(256, L"%ls=%.3d", L"n", 5);
    EXPECT_EQ(2, wide.Encoding());
    EXPECT_EQ(L"n=005", W(wide));
    const UTL_String cut(4, "%s", "abcdef");
    EXPECT_EQ("abc", N(cut));
    EXPECT_EQ(3u, cut.Length());
}

TEST(UTL_StringCopy, TakesTheMasterFormOnly) {
    Inspected wide(L"wide text");
    ASSERT_EQ("wide text", N(wide));
    ASSERT_TRUE(wide.HoldsNarrow());
    const Inspected copy(wide);
    EXPECT_EQ(2, copy.Encoding());
    EXPECT_FALSE(copy.HoldsNarrow());
    EXPECT_NE(wide.WideBuffer(), copy.WideBuffer());
    EXPECT_EQ(L"wide text", W(copy));

    const Inspected emptyWide(UTL_String(L""));
    EXPECT_EQ(2, emptyWide.Encoding());
}

TEST(UTL_StringAssign, EmptySourceClearsToEncodingOne) {
    UTL_String target(L"wide");
    target = UTL_String(L"");
    EXPECT_EQ(1, target.Encoding());
    EXPECT_EQ(0u, target.Length());
    target = UTL_String(L"again");
    target = UTL_String(static_cast<const wchar_t*>(nullptr));
    EXPECT_EQ(1, target.Encoding());
}

TEST(UTL_StringAssign, ReusesALongEnoughBufferAndDropsTheCache) {
    Inspected target(L"a longer wide text");
    target.Narrow();
    const void* buffer = target.WideBuffer();
    target = UTL_String(L"short");
    EXPECT_EQ(buffer, target.WideBuffer());
    EXPECT_FALSE(target.HoldsNarrow());
    EXPECT_EQ(5u, target.Length());
    EXPECT_EQ("short", N(target));

    target = UTL_String("narrow now");
    EXPECT_EQ(1, target.Encoding());
    EXPECT_FALSE(target.HoldsWide());
    EXPECT_EQ("narrow now", N(target));
}

TEST(UTL_StringAppend, TakesTheLeftEncodingAndAllocatesExactly) {
    Inspected narrow("abc");
    narrow.Append(UTL_String(L"de"));
    EXPECT_EQ(1, narrow.Encoding());
    EXPECT_EQ("abcde", N(narrow));
    EXPECT_EQ(6u, narrow.MasterBytes());

    Inspected wide(L"ab");
    wide.Append(UTL_String("cd"));
    EXPECT_EQ(2, wide.Encoding());
    EXPECT_EQ(L"abcd", W(wide));
    EXPECT_EQ(5 * sizeof(wchar_t), wide.MasterBytes());

    EXPECT_EQ(1, ("pre" + UTL_String(L"fix")).Encoding());
    EXPECT_EQ(2, (L"pre" + UTL_String("fix")).Encoding());
    EXPECT_EQ(1, (UTL_String() + UTL_String(L"x")).Encoding());
    EXPECT_EQ("prefix", N(UTL_String("pre") + "fix"));

    UTL_String twice("ab");
    twice.Append(twice);
    EXPECT_EQ("abab", N(twice));
}

TEST(UTL_StringAppend, EmptyRightSideLeavesTheLeftAsItIs) {
    Inspected wide(L"x");
    const void* buffer = wide.WideBuffer();
    wide.Append(UTL_String());
    EXPECT_EQ(buffer, wide.WideBuffer());
    EXPECT_EQ(2, wide.Encoding());
    EXPECT_EQ(2, (UTL_String(L"y") + UTL_String("")).Encoding());
}

TEST(UTL_StringCompare, EqualsComparesTheNarrowForms) {
    EXPECT_TRUE(UTL_String().Equals(UTL_String(L"")));
    EXPECT_TRUE(UTL_String("abc").Equals(UTL_String(L"abc")));
    EXPECT_FALSE(UTL_String("abc").Equals(UTL_String("abd")));
    EXPECT_FALSE(UTL_String("abc").Equals(UTL_String("abcd")));

    // Two wide texts that the system code page writes alike are equal.
    const wchar_t* first = L"\x0416";
    const wchar_t* second = L"\x0436";
    char a[8] = {};
    char b[8] = {};
    WideCharToMultiByte(CP_ACP, 0, first, -1, a, sizeof a, nullptr, nullptr);
    WideCharToMultiByte(CP_ACP, 0, second, -1, b, sizeof b, nullptr, nullptr);
    if (std::string(a) != b) GTEST_SKIP() << "the code page tells these characters apart";
    EXPECT_TRUE(UTL_String(first).Equals(UTL_String(second)));
    EXPECT_TRUE(UTL_String(first) < UTL_String(second));  // the master forms differ
}

TEST(UTL_StringCompare, StartsEndsAndParts) {
    const UTL_String name("launchpanel.exe");
    EXPECT_TRUE(name.StartsWith(UTL_String("launch")));
    EXPECT_TRUE(name.EndsWith(UTL_String(L".exe")));
    EXPECT_FALSE(name.EndsWith(UTL_String(".EXE")));
    EXPECT_FALSE(UTL_String("exe").EndsWith(UTL_String("a.exe")));
    EXPECT_FALSE(UTL_String("la").StartsWith(UTL_String("launch")));

    EXPECT_TRUE(UTL_String("abcdef").ComparePart(UTL_String("abcxyz"), 3, 0));
    EXPECT_TRUE(UTL_String("abc").ComparePart(UTL_String("abcdef"), 0, 0));
    EXPECT_FALSE(UTL_String("abcdef").ComparePart(UTL_String("abXdef"), 0, 0));
    EXPECT_TRUE(UTL_String("xbc").ComparePart(UTL_String("abc"), 3, 1));
    // A start beyond the count falls back to 0.
    EXPECT_TRUE(UTL_String("abcXYZ").ComparePart(UTL_String("abcdef"), 3, 5));
    EXPECT_FALSE(UTL_String("Xbcdef").ComparePart(UTL_String("abcdef"), 3, 5));
}

TEST(UTL_StringSearch, FindAndReverseFindBounds) {
    const UTL_String path("a/b/c");
    EXPECT_EQ(1, path.Find(UTL_String("/")));
    EXPECT_EQ(3, path.Find(UTL_String("/"), 2));
    EXPECT_EQ(-1, path.Find(UTL_String("/"), 4));
    EXPECT_EQ(-1, path.Find(UTL_String("/"), 99));
    EXPECT_EQ(-1, path.Find(UTL_String("x")));
    EXPECT_EQ(3, path.ReverseFind(UTL_String("/")));
    EXPECT_EQ(1, path.ReverseFind(UTL_String("/"), 2));
    EXPECT_EQ(-1, path.ReverseFind(UTL_String("/"), 0));
    EXPECT_EQ(1, path.FindChar('/'));
    EXPECT_EQ(3, path.FindChar(L'/', 2));
    EXPECT_EQ(3, path.ReverseFindChar('/'));
    EXPECT_EQ(-1, path.ReverseFindChar(L'x'));
    EXPECT_EQ(2, UTL_String(L"a/b/c").Find(UTL_String("b/")));
    EXPECT_EQ(-1, UTL_String().Find(UTL_String("a")));
}

TEST(UTL_StringSearch, SubstringLimitsItsCount) {
    const UTL_String text("abcdef");
    EXPECT_EQ("cde", N(text.Substring(2, 3)));
    EXPECT_EQ("ef", N(text.Substring(4, 100)));
    EXPECT_EQ("cdef", N(text.Substring(2)));
    EXPECT_EQ(0u, text.Substring(6, 1).Length());
    EXPECT_EQ(0u, text.Substring(99, 1).Length());
    EXPECT_EQ(2, UTL_String(L"wide").Substring(1, 2).Encoding());
    EXPECT_EQ(L"id", W(UTL_String(L"wide").Substring(1, 2)));
}

TEST(UTL_StringShape, CutAtAnyOfFollowsTheSetOrder) {
    EXPECT_EQ("a,b", N(UTL_String("a,b;c").CutAtAnyOf(UTL_String(";,"))));
    EXPECT_EQ("a", N(UTL_String("a,b;c").CutAtAnyOf(UTL_String(",;"))));
    EXPECT_EQ("a,b;c", N(UTL_String("a,b;c").CutAtAnyOf(UTL_String("xyz"))));
    const UTL_String wide = UTL_String(L"name=value").CutAtAnyOf(UTL_String("="));
    EXPECT_EQ(2, wide.Encoding());
    EXPECT_EQ(L"name", W(wide));
}

TEST(UTL_StringShape, TrimBothEnds) {
    EXPECT_EQ("word in middle", N(UTL_String(" \t\nword in middle \n\t").Trim()));
    EXPECT_EQ("x", N(UTL_String(" x").Trim()));
    EXPECT_EQ("x", N(UTL_String("x ").Trim()));
    EXPECT_EQ("x", N(UTL_String("x").Trim()));
    EXPECT_EQ("", N(UTL_String(" ").Trim()));
    EXPECT_EQ("", N(UTL_String("\t \n").Trim()));
    EXPECT_EQ("a\r", N(UTL_String("a\r\n").Trim()));
    const UTL_String wide = UTL_String(L"  w  ").Trim();
    EXPECT_EQ(2, wide.Encoding());
    EXPECT_EQ(L"w", W(wide));
    EXPECT_EQ(0u, UTL_String().Trim().Length());
}

TEST(UTL_StringShape, UnquoteCaseSlashesAndNumbers) {
    EXPECT_EQ("quoted text", N(UTL_String("\"quoted text\"").Unquote()));
    EXPECT_EQ("", N(UTL_String("\"\"").Unquote()));
    EXPECT_EQ("\"", N(UTL_String("\"").Unquote()));
    EXPECT_EQ("\"half", N(UTL_String("\"half").Unquote()));
    EXPECT_EQ(L"in", W(UTL_String(L"\"in\"").Unquote()));

    EXPECT_EQ("mixed 1", N(UTL_String("MiXeD 1").ToLower()));
    EXPECT_EQ("MIXED 1", N(UTL_String("MiXeD 1").ToUpper()));
    const UTL_String fromWide = UTL_String(L"Wide").ToUpper();
    EXPECT_EQ(1, fromWide.Encoding());
    EXPECT_EQ(0u, fromWide.Length());

    UTL_String narrow("a/b/c");
    narrow.NormalizeSlashes();
    EXPECT_EQ("a\\b\\c", N(narrow));
    UTL_String wide(L"/x/");
    wide.NormalizeSlashes();
    EXPECT_EQ(L"\\x\\", W(wide));

    EXPECT_EQ(42, UTL_String("42abc").ToInt());
    EXPECT_EQ(-7, UTL_String(L"-7").ToInt());
    EXPECT_EQ(0, UTL_String().ToInt());
}

TEST(UTL_StringMatch, StarAndQuestionMark) {
    const UTL_String name(L"LaunchPanel.exe");
    EXPECT_TRUE(name.Matches(UTL_String("*.exe")));
    EXPECT_TRUE(name.Matches(UTL_String("Launch?anel.*")));
    EXPECT_FALSE(name.Matches(UTL_String("*.EXE")));
    EXPECT_TRUE(name.Matches(name));
    EXPECT_TRUE(UTL_String("abc").Matches(UTL_String("abc**")));
    // After the last letter the pattern wants one more character.
    EXPECT_FALSE(UTL_String("axb").Matches(UTL_String("a*b?")));
    EXPECT_TRUE(UTL_String("axbc").Matches(UTL_String("a*b?")));
}

TEST(UTL_StringLength, EncodedLengthAndItsBadTarget) {
    EXPECT_EQ(3u, UTL_String("abc").EncodedLength(2));
    EXPECT_EQ(3u, UTL_String(L"abc").EncodedLength(1));
    EXPECT_EQ(0u, UTL_String().EncodedLength(2));
    EXPECT_EQ(4, CodeOf([] { UTL_String("abc").EncodedLength(3); }));
    EXPECT_EQ(4, CodeOf([] { UTL_String().EncodedLength(0); }));
}

}  // namespace
