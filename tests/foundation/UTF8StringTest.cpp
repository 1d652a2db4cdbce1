// UTF8String: decoding into the wide master and encoding into a caller's buffer.
#include <gtest/gtest.h>

#include <string>

#include "foundation/UTF8String.h"
#include "tests/foundation/ExceptionCode.h"

namespace {

using lptest::CodeOf;

TEST(UTF8StringDecode, GoodInputBecomesTheWideMaster) {
    const UTF8String text("caf\xC3\xA9 \xE2\x82\xAC");
    EXPECT_EQ(2, text.Encoding());
    EXPECT_EQ(6u, text.Length());
    EXPECT_STREQ(L"caf\u00E9 \u20AC", text.Wide());

    const UTF8String sized("ab\xC3\xA9zz", 4);
    EXPECT_STREQ(L"ab\u00E9", sized.Wide());
}

TEST(UTF8StringDecode, BadInputIsEleven) {
    EXPECT_EQ(11, CodeOf([] { UTF8String("ok\xC3"); }));
    EXPECT_EQ(11, CodeOf([] { UTF8String("\xE2\x82\xAC", 2); })) << "sized input cut inside a character";
}

TEST(UTF8StringDecode, NullAndEmptyInputs) {
    EXPECT_EQ(1, UTF8String().Encoding());
    const UTF8String nullBytes(static_cast<const char*>(nullptr));
    EXPECT_EQ(2, nullBytes.Encoding());
    EXPECT_EQ(0u, nullBytes.Length());
    const UTF8String emptyBytes("");
    EXPECT_EQ(2, emptyBytes.Encoding());
    EXPECT_EQ(0u, emptyBytes.Length());
    EXPECT_EQ(2, UTF8String(static_cast<const wchar_t*>(nullptr)).Encoding());
    EXPECT_STREQ(L"wide", UTF8String(L"wide").Wide());
}

TEST(UTF8StringEncode, WritesIntoTheCallersBuffer) {
    const UTF8String text(L"a\u20AC");
    char buffer[8];
    std::fill(std::begin(buffer), std::end(buffer), '#');
    EXPECT_EQ(4, text.ToUtf8(buffer, sizeof buffer));
    EXPECT_STREQ("a\xE2\x82\xAC", buffer);

    std::fill(std::begin(buffer), std::end(buffer), '#');
    EXPECT_EQ(4, text.ToUtf8(buffer, 4));
    EXPECT_EQ('#', buffer[4]);  // no room for the terminator, none written

    EXPECT_EQ(-1, text.ToUtf8(nullptr, 0));
    EXPECT_EQ(0, UTF8String().ToUtf8(buffer, sizeof buffer));
}

TEST(UTF8StringEncode, NarrowMasterIsWrittenToo) {
    UTF8String narrow;
    static_cast<UTL_String&>(narrow) = UTL_String("plain");
    ASSERT_EQ(1, narrow.Encoding());
    char buffer[8] = {};
    EXPECT_EQ(5, narrow.ToUtf8(buffer, sizeof buffer));
    EXPECT_STREQ("plain", buffer);
}

}  // namespace
