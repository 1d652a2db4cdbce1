// ky::SystemTime: fields of a given moment and the text form used inside file
// names.
#include <gtest/gtest.h>

#include <string>

#include "foundation/SystemTime.h"

namespace {

constexpr int64_t kMidJanuary2024 = 1705320000;   // 2024-01-15 12:00:00 UTC
constexpr int64_t kMidDecember2024 = 1734264000;  // 2024-12-15 12:00:00 UTC

TEST(SystemTime, MonthOneIsJanuary) {
    const ky::SystemTime january(kMidJanuary2024);
    EXPECT_EQ(2024, january.Year());
    EXPECT_EQ(1, january.Month());
    EXPECT_EQ(15, january.Day());
    EXPECT_EQ(0, january.Sec());
    const ky::SystemTime december(kMidDecember2024);
    EXPECT_EQ(12, december.Month());
    EXPECT_EQ(kMidJanuary2024, static_cast<int64_t>(january));
}

TEST(SystemTime, TextFormIsPaddedAndSafeInFileNames) {
    const UTL_String text = ky::SystemTime(kMidJanuary2024);
    EXPECT_EQ(2, text.Encoding());
    EXPECT_EQ(19u, text.Length());
    EXPECT_TRUE(text.Matches(UTL_String("2024-01-15_\?\?-\?\?-00"))) << text.Narrow();
    EXPECT_EQ(std::wstring::npos, std::wstring(text.Wide()).find_first_of(L"\\/:*?\"<>| "));

    const ky::SystemTime early(3 * 86400);
    const UTL_String earlyText = early;
    EXPECT_TRUE(earlyText.Matches(UTL_String("1970-01-0?_\?\?-\?\?-\?\?"))) << earlyText.Narrow();
}

}  // namespace
