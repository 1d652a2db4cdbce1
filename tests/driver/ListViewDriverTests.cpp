// The driver's reading of a list view beyond its texts, and the user's work on it
// that needs no mouse, against lp_driver_target: where the rows are in every view,
// the sort arrow, the selection, the columns' widths and order.
#include "tests/driver/DriverTestSupport.h"
#include <map>
#include <string>
#include <vector>

namespace {

using namespace lpdrivertest;

std::wstring PointText(POINT point) {
    return std::to_wstring(point.x) + L"," + std::to_wstring(point.y);
}

// The rows' positions as text, so that a failed comparison reads well.
std::map<int, std::wstring> Positions(const DriverAnswer& answer) {
    std::map<int, std::wstring> positions;
    for (const auto& [row, point] : answer.Positions()) positions[row] = PointText(point);
    EXPECT_EQ(positions.size(), answer.Values(L"pos").size()) << lptest::Narrow(answer.Text());
    return positions;
}

DriverAnswer ReadWithPositions(const Target& target) {
    return Drive({L"listview", target.Pid(), L"--positions", kLimit});
}

class ListViewDriverTest : public ::testing::Test {};

TEST_F(ListViewDriverTest, ReadsPositionsInEveryViewAndColumnsInDetails) {
    const std::pair<const wchar_t*, int> views[] = {{L"icon", 0}, {L"smallicon", 2}, {L"list", 3}, {L"details", 1}};
    for (const auto& [view, number] : views) {
        SCOPED_TRACE(lptest::Narrow(view));
        Target target(std::wstring(L"/view ") + view);
        ASSERT_TRUE(target.Started());
        const DriverAnswer plain = Drive({L"listview", target.Pid(), kLimit});
        EXPECT_DRIVER(plain, 0);
        EXPECT_FALSE(plain.Has(L"pos"));
        EXPECT_FALSE(plain.Has(L"origin"));

        const DriverAnswer answer = ReadWithPositions(target);
        EXPECT_DRIVER(answer, 0);
        EXPECT_EQ(answer.Value(L"view"), std::to_wstring(number));
        EXPECT_EQ(answer.Value(L"rows"), L"3");
        EXPECT_EQ(answer.Value(L"origin"), L"0,0");
        const auto positions = Positions(answer);
        ASSERT_EQ(positions.size(), 3u) << lptest::Narrow(answer.Text());
        EXPECT_NE(positions.at(0), positions.at(1));
        EXPECT_NE(positions.at(1), positions.at(2));
        EXPECT_EQ(answer.Value(L"sortcolumn"), L"-1");
        EXPECT_EQ(answer.Value(L"sortdir"), L"none");
        // Only the details view shows columns.
        EXPECT_EQ(answer.Value(L"widths"), number == 1 ? L"150\t150\t150" : L"");
        EXPECT_EQ(answer.Value(L"order"), number == 1 ? L"0\t1\t2" : L"");
        EXPECT_EQ(answer.Has(L"widths"), number == 1);
    }
}

TEST_F(ListViewDriverTest, SelectSelectsExactlyTheRowsNamed) {
    Target target(L"/select 1");
    ASSERT_TRUE(target.Started());
    const DriverAnswer answer = Drive({L"select", target.Pid(), L"2,0", kLimit});
    EXPECT_DRIVER(answer, 0);
    EXPECT_EQ(answer.Value(L"selected"), L"0,2");
    EXPECT_EQ(answer.Value(L"focused"), L"2");
    const DriverAnswer read = Drive({L"listview", target.Pid(), kLimit});
    EXPECT_DRIVER(read, 0);
    EXPECT_EQ(read.Value(L"hwnd"), answer.Value(L"hwnd"));
    EXPECT_EQ(read.Value(L"selected"), L"0,2");
    EXPECT_EQ(read.Value(L"focused"), L"2");

    const DriverAnswer frame = Drive({L"find-window", target.Pid(), L"--class", L"LpDriverTarget", kLimit});
    EXPECT_DRIVER(frame, 0);
    const DriverAnswer one = Drive({L"select", L"any", L"--window", frame.Value(L"hwnd"), L"1", kLimit});
    EXPECT_DRIVER(one, 0);
    EXPECT_EQ(one.Value(L"selected"), L"1");
    EXPECT_EQ(one.Value(L"focused"), L"1");

    const DriverAnswer missing = Drive({L"select", target.Pid(), L"1,3", kLimit});
    EXPECT_DRIVER(missing, 1);
    EXPECT_FALSE(missing.Has(L"selected"));
    EXPECT_EQ(Drive({L"listview", target.Pid(), kLimit}).Value(L"selected"), L"1");
}

TEST_F(ListViewDriverTest, ColumnWidthAndOrderAreSetAsTheUserWouldLeaveThem) {
    Target target(L"");
    ASSERT_TRUE(target.Started());
    const DriverAnswer width = Drive({L"column-width", target.Pid(), L"0", L"80", kLimit});
    EXPECT_DRIVER(width, 0);
    EXPECT_EQ(width.Value(L"column"), L"0");
    EXPECT_EQ(width.Value(L"width"), L"80");
    const DriverAnswer order = Drive({L"column-order", target.Pid(), L"2,0,1", kLimit});
    EXPECT_DRIVER(order, 0);
    EXPECT_EQ(order.Value(L"order"), L"2\t0\t1");
    const DriverAnswer read = Drive({L"listview", target.Pid(), kLimit});
    EXPECT_EQ(read.Value(L"widths"), L"80\t150\t150");
    EXPECT_EQ(read.Value(L"order"), L"2\t0\t1");
    // The headings keep their column indexes; only where they show has changed.
    EXPECT_EQ(read.Cells(L"headings"), (std::vector<std::vector<std::wstring>>{{L"Name", L"Kind", L"Size"}}));

    EXPECT_DRIVER(Drive({L"column-order", target.Pid(), L"2,0", kLimit}), 2);
    EXPECT_DRIVER(Drive({L"column-order", target.Pid(), L"0,0,1", kLimit}), 2);
    EXPECT_DRIVER(Drive({L"column-width", target.Pid(), L"3", L"80", kLimit}), 1);
    EXPECT_EQ(Drive({L"listview", target.Pid(), kLimit}).Value(L"order"), L"2\t0\t1");
}

TEST_F(ListViewDriverTest, UsageErrorsOfTheListCommands) {
    const std::vector<std::vector<std::wstring>> usage = {
        {L"select", L"12", L"100"},
        {L"select", L"12", L"1,,2", L"100"},
        {L"column-width", L"12", L"0", L"99999", L"100"},
        {L"column-order", L"12", L"100"},
    };
    for (const auto& words : usage) {
        SCOPED_TRACE(lptest::Narrow(words.front() + L" " + words.back()));
        const DriverAnswer answer = Drive(words);
        EXPECT_DRIVER(answer, 2);
        EXPECT_TRUE(answer.Has(L"error"));
    }
}

TEST(DriverClientPoint, ReadsTwoWholeNumbersAndNothingElse) {
    POINT point{};
    EXPECT_TRUE(DriverClient::ParsePoint(L"-3,40", point));
    EXPECT_EQ(point.x, -3);
    EXPECT_EQ(point.y, 40);
    for (const wchar_t* text : {L"", L"7", L"7,", L"7,8x", L"7;8", L"x,8"}) {
        POINT untouched{1, 2};
        EXPECT_FALSE(DriverClient::ParsePoint(text, untouched)) << lptest::Narrow(text);
        EXPECT_EQ(untouched.x, 1);
    }
    DriverAnswer answer;
    answer.lines = {L"pos=0\t5,4", L"pos=2\t-1,30", L"origin=0,-12"};
    const auto positions = answer.Positions();
    ASSERT_EQ(positions.size(), 2u);
    EXPECT_EQ(positions.at(2).x, -1);
    EXPECT_EQ(positions.at(2).y, 30);
    EXPECT_TRUE(answer.Point(L"origin", point));
    EXPECT_EQ(point.y, -12);
    EXPECT_FALSE(answer.Point(L"from", point));
}

}  // namespace
