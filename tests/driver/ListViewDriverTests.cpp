// The driver's work on a list view as a user does it, against lp_driver_target:
// its frame's title tells what reached it (a heading clicked, a row double-clicked,
// Enter, a row dragged and dropped), and the driver's own reading of the list tells
// what changed (selection, positions, sort arrow, column widths and order).
#include "tests/driver/DriverTestSupport.h"
#include <climits>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace lpdrivertest;

constexpr const wchar_t* kTitle = L"Driver Target";

// The frame's whole title once it holds `words`, waited for up to the limit.
std::wstring TitleOnceItHas(const Target& target, const std::wstring& words) {
    const DriverAnswer found = Drive({L"find-window", target.Pid(), L"--class", L"LpDriverTarget",
                                      L"--title-contains", words, kLimit});
    EXPECT_EQ(found.exitCode, 0u) << lptest::Narrow(found.Text());
    return found.Value(L"title");
}

// The frame's title as it is now: the posted path returns once the program has
// handled the input, so what it recorded is there already.
std::wstring TitleNow(const Target& target) {
    const DriverAnswer found = Drive({L"find-window", target.Pid(), L"--class", L"LpDriverTarget", L"0"});
    EXPECT_EQ(found.exitCode, 0u) << lptest::Narrow(found.Text());
    return found.Value(L"title");
}

// A point line of the answer (from=, origin=, point=); a failure names the answer.
POINT PointOf(const DriverAnswer& answer, const wchar_t* key) {
    POINT point{LONG_MIN, LONG_MIN};
    EXPECT_TRUE(answer.Point(key, point)) << lptest::Narrow(answer.Text());
    return point;
}

std::wstring PointText(POINT point) {
    return std::to_wstring(point.x) + L"," + std::to_wstring(point.y);
}

POINT Offset(POINT point, LONG dx, LONG dy) {
    return POINT{point.x + dx, point.y + dy};
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

TEST_F(ListViewDriverTest, TheOriginAndThePositionsMoveWithTheScroll) {
    Target target(L"/view icon /rows 60");
    ASSERT_TRUE(target.Started());
    const DriverAnswer before = ReadWithPositions(target);
    EXPECT_DRIVER(before, 0);
    EXPECT_EQ(before.Value(L"origin"), L"0,0");
    ASSERT_EQ(Positions(before).size(), 63u);

    // Activating the last row scrolls it into view first.
    const DriverAnswer activated = Drive({L"activate", target.Pid(), L"62", L"--input", L"posted", kLimit});
    EXPECT_DRIVER(activated, 0);
    EXPECT_EQ(TitleNow(target), std::wstring(kTitle) + L": double-click 62, activated 62");
    const DriverAnswer after = ReadWithPositions(target);
    EXPECT_DRIVER(after, 0);
    const POINT origin = PointOf(after, L"origin");
    EXPECT_EQ(origin.x, 0);
    EXPECT_NE(origin.y, 0) << "the view did not scroll";
    // Positions are client points: every row moved with the origin.
    for (const int row : {0, 30, 62}) {
        const POINT was = before.Positions().at(row);
        EXPECT_EQ(Positions(after).at(row), PointText(Offset(was, origin.x, origin.y))) << row;
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

TEST_F(ListViewDriverTest, ActivateDoubleClicksTheLabelThroughTheSystemInEveryView) {
    for (const wchar_t* view : {L"icon", L"smallicon", L"list", L"details"}) {
        SCOPED_TRACE(lptest::Narrow(view));
        Target target(std::wstring(L"/view ") + view);
        ASSERT_TRUE(target.Started());
        const DriverAnswer answer = Drive({L"activate", target.Pid(), L"1", kLimit});
        EXPECT_DRIVER(answer, 0);
        EXPECT_EQ(answer.Value(L"input"), L"system");
        EXPECT_FALSE(answer.Has(L"fallback"));
        EXPECT_EQ(answer.Value(L"activated"), L"1");
        EXPECT_EQ(TitleOnceItHas(target, L"activated"), std::wstring(kTitle) + L": double-click 1, activated 1");
        // The first press of the double-click selected the row, as a user's does.
        const DriverAnswer read = Drive({L"listview", target.Pid(), kLimit});
        EXPECT_EQ(read.Value(L"selected"), L"1");
        EXPECT_EQ(read.Value(L"focused"), L"1");
    }
}

TEST_F(ListViewDriverTest, ActivateByPostedMessagesOrByTheKeyboard) {
    Target target(L"/select 1");
    ASSERT_TRUE(target.Started());
    const DriverAnswer posted = Drive({L"activate", target.Pid(), L"2", L"--input", L"posted", kLimit});
    EXPECT_DRIVER(posted, 0);
    EXPECT_EQ(posted.Value(L"input"), L"posted");
    EXPECT_EQ(posted.Value(L"activated"), L"2");
    EXPECT_EQ(TitleNow(target), std::wstring(kTitle) + L": double-click 2, activated 2");

    const DriverAnswer key = Drive({L"activate", target.Pid(), L"0", L"--keyboard", kLimit});
    EXPECT_DRIVER(key, 0);
    EXPECT_EQ(key.Value(L"input"), L"posted");
    EXPECT_EQ(key.Value(L"activated"), L"0");
    EXPECT_EQ(TitleNow(target), std::wstring(kTitle) + L": double-click 2, activated 2, key 13, return, activated 0");
    const DriverAnswer read = Drive({L"listview", target.Pid(), kLimit});
    EXPECT_EQ(read.Value(L"selected"), L"0");
    EXPECT_EQ(read.Value(L"focused"), L"0");

    EXPECT_DRIVER(Drive({L"activate", target.Pid(), L"3", kLimit}), 1);
    EXPECT_EQ(TitleNow(target), std::wstring(kTitle) + L": double-click 2, activated 2, key 13, return, activated 0");
}

TEST_F(ListViewDriverTest, ActivateFallsBackToPostingWhenAWindowOnTopCoversTheRow) {
    Target covered(L"");
    ASSERT_TRUE(covered.Started());
    Target above(L"/topmost");
    ASSERT_TRUE(above.Started());
    EXPECT_DRIVER(Drive({L"find-window", above.Pid(), L"--class", L"LpDriverTarget", L"--visible", kLimit}), 0);

    const DriverAnswer strict = Drive({L"activate", covered.Pid(), L"1", L"--input", L"system", kLimit});
    EXPECT_DRIVER(strict, 1);
    EXPECT_FALSE(strict.Has(L"activated"));

    const DriverAnswer answer = Drive({L"activate", covered.Pid(), L"1", kLimit});
    EXPECT_DRIVER(answer, 0);
    EXPECT_EQ(answer.Value(L"input"), L"posted");
    EXPECT_NE(answer.Value(L"fallback").find(L"not the control"), std::wstring::npos) << lptest::Narrow(answer.Text());
    EXPECT_EQ(TitleNow(covered), std::wstring(kTitle) + L": double-click 1, activated 1");
    EXPECT_EQ(TitleNow(above), kTitle);
}

TEST_F(ListViewDriverTest, HeaderClickClicksTheColumnAndTheTargetShowsItsSortArrow) {
    Target target;
    ASSERT_TRUE(target.Started());
    const DriverAnswer first = Drive({L"header-click", target.Pid(), L"2", kLimit});
    EXPECT_DRIVER(first, 0);
    EXPECT_EQ(first.Value(L"input"), L"system");
    EXPECT_EQ(first.Value(L"clicked"), L"2");
    EXPECT_TRUE(first.Value(L"header").starts_with(L"0x"));
    EXPECT_EQ(TitleOnceItHas(target, L"column"), std::wstring(kTitle) + L": column 2 up");
    const DriverAnswer up = Drive({L"listview", target.Pid(), kLimit});
    EXPECT_EQ(up.Value(L"sortcolumn"), L"2");
    EXPECT_EQ(up.Value(L"sortdir"), L"up");

    const DriverAnswer again = Drive({L"header-click", target.Pid(), L"2", L"--input", L"posted", kLimit});
    EXPECT_DRIVER(again, 0);
    EXPECT_EQ(again.Value(L"input"), L"posted");
    EXPECT_EQ(TitleNow(target), std::wstring(kTitle) + L": column 2 up, column 2 down");
    const DriverAnswer down = Drive({L"listview", target.Pid(), kLimit});
    EXPECT_EQ(down.Value(L"sortcolumn"), L"2");
    EXPECT_EQ(down.Value(L"sortdir"), L"down");

    EXPECT_DRIVER(Drive({L"header-click", target.Pid(), L"3", kLimit}), 1);
    Target icons(L"/view icon");
    ASSERT_TRUE(icons.Started());
    const DriverAnswer hidden = Drive({L"header-click", icons.Pid(), L"0", kLimit});
    EXPECT_DRIVER(hidden, 1);
    EXPECT_FALSE(hidden.Has(L"clicked"));
}

TEST_F(ListViewDriverTest, ColumnWidthAndOrderAreSetAsTheUserWouldLeaveThem) {
    Target target;
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

    // A click on column 0 finds it where the new order put it.
    const DriverAnswer click = Drive({L"header-click", target.Pid(), L"0", L"--input", L"posted", kLimit});
    EXPECT_DRIVER(click, 0);
    EXPECT_EQ(PointOf(click, L"point").x, 150 + 80 / 2);
    EXPECT_EQ(TitleNow(target), std::wstring(kTitle) + L": column 0 up");

    EXPECT_DRIVER(Drive({L"column-order", target.Pid(), L"2,0", kLimit}), 2);
    EXPECT_DRIVER(Drive({L"column-order", target.Pid(), L"0,0,1", kLimit}), 2);
    EXPECT_DRIVER(Drive({L"column-width", target.Pid(), L"3", L"80", kLimit}), 1);
    EXPECT_EQ(Drive({L"listview", target.Pid(), kLimit}).Value(L"order"), L"2\t0\t1");
}

TEST_F(ListViewDriverTest, DragMovesTheIconWhereTheMouseLetGo) {
    for (const wchar_t* view : {L"icon", L"smallicon"}) {
        SCOPED_TRACE(lptest::Narrow(view));
        Target target(std::wstring(L"/view ") + view);
        ASSERT_TRUE(target.Started());
        const DriverAnswer read = ReadWithPositions(target);
        const auto before = Positions(read);
        ASSERT_EQ(before.size(), 3u);
        const DriverAnswer drag = Drive({L"drag", target.Pid(), L"0", L"300", L"200", kLimit});
        EXPECT_DRIVER(drag, 0);
        EXPECT_EQ(drag.Value(L"input"), L"system");
        EXPECT_EQ(drag.Value(L"to"), L"300,200");
        EXPECT_EQ(drag.Value(L"dragged"), L"0");
        EXPECT_EQ(TitleOnceItHas(target, L"dropped"), std::wstring(kTitle) + L": drag 0, dropped 0 at 300,200");
        // The row moved by as much as the point grabbed did; the others stayed.
        const POINT from = PointOf(drag, L"from");
        const auto after = Positions(ReadWithPositions(target));
        EXPECT_EQ(after.at(0), PointText(Offset(read.Positions().at(0), 300 - from.x, 200 - from.y)));
        EXPECT_EQ(after.at(1), before.at(1));
        EXPECT_EQ(after.at(2), before.at(2));
    }
}

TEST_F(ListViewDriverTest, APostedDragShorterThanTheThresholdStillMovesTheIcon) {
    Target target(L"/view icon");
    ASSERT_TRUE(target.Started());
    const DriverAnswer read = ReadWithPositions(target);
    const auto before = Positions(read);
    ASSERT_EQ(before.size(), 3u);
    const DriverAnswer first = Drive({L"drag", target.Pid(), L"2", L"250", L"220", L"--input", L"posted", kLimit});
    EXPECT_DRIVER(first, 0);
    EXPECT_EQ(first.Value(L"input"), L"posted");
    EXPECT_EQ(TitleNow(target), std::wstring(kTitle) + L": drag 2, dropped 2 at 250,220");

    // The icon of row 1 sits where row 2's did, as far from its position.
    const POINT from2 = PointOf(first, L"from");
    const POINT was1 = read.Positions().at(1);
    const POINT was2 = read.Positions().at(2);
    const POINT from1 = Offset(was1, from2.x - was2.x, from2.y - was2.y);
    const POINT dropAt = Offset(from1, 3, 2);
    const DriverAnswer shortDrag = Drive({L"drag", target.Pid(), L"1", std::to_wstring(dropAt.x),
                                          std::to_wstring(dropAt.y), L"--input", L"posted", kLimit});
    EXPECT_DRIVER(shortDrag, 0);
    EXPECT_EQ(shortDrag.Value(L"from"), PointText(from1));
    EXPECT_EQ(TitleNow(target), std::wstring(kTitle) + L": drag 2, dropped 2 at 250,220, drag 1, dropped 1 at " +
                                    PointText(dropAt));
    const auto after = Positions(ReadWithPositions(target));
    EXPECT_EQ(after.at(1), PointText(Offset(was1, 3, 2)));
    EXPECT_EQ(after.at(0), before.at(0));
}

TEST_F(ListViewDriverTest, KeysGoToTheFocusOrToTheWindowGiven) {
    Target target(L"/select 0");
    ASSERT_TRUE(target.Started());
    const DriverAnswer list = Drive({L"listview", target.Pid(), kLimit});
    EXPECT_DRIVER(list, 0);
    // The frame hands the keyboard focus to its list.
    const DriverAnswer down = Drive({L"keys", target.Pid(), L"0x28"});
    EXPECT_DRIVER(down, 0);
    EXPECT_EQ(down.Value(L"hwnd"), list.Value(L"hwnd"));
    EXPECT_EQ(down.Value(L"sent"), L"1");
    EXPECT_EQ(TitleOnceItHas(target, L"key"), std::wstring(kTitle) + L": key 40");
    const DriverAnswer moved = Drive({L"listview", target.Pid(), kLimit});
    EXPECT_EQ(moved.Value(L"selected"), L"1");
    EXPECT_EQ(moved.Value(L"focused"), L"1");

    const DriverAnswer two = Drive({L"keys", list.Value(L"hwnd"), L"40,38"});
    EXPECT_DRIVER(two, 0);
    EXPECT_EQ(two.Value(L"sent"), L"2");
    EXPECT_EQ(TitleOnceItHas(target, L"key 38"), std::wstring(kTitle) + L": key 40, key 40, key 38");
    const DriverAnswer back = Drive({L"listview", target.Pid(), kLimit});
    EXPECT_EQ(back.Value(L"focused"), L"1");
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

TEST_F(ListViewDriverTest, UsageErrorsOfTheListCommands) {
    const std::vector<std::vector<std::wstring>> usage = {
        {L"select", L"12", L"100"},
        {L"select", L"12", L"1,,2", L"100"},
        {L"activate", L"12", L"x", L"100"},
        {L"activate", L"12", L"1", L"--input", L"mouse", L"100"},
        {L"activate", L"12", L"1", L"--keyboard", L"--input", L"posted", L"100"},
        {L"header-click", L"12", L"100"},
        {L"drag", L"12", L"0", L"1", L"100"},
        {L"keys", L"12"},
        {L"keys", L"12", L"0x1FF"},
        {L"keys", L"12", L"0"},
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

}  // namespace
