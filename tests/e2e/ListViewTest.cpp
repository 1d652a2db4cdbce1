// Shell use end to end: the real LaunchPanel.exe shows a real catalogue in its
// list, observed and worked from outside through the driver as a user would.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/launch/LogRows.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TestSupport.h"
#include "tools/lpdriver/client/DriverClient.h"

namespace lptest {
namespace {

constexpr const wchar_t* kLimit = L"30000";
constexpr UINT kDetails = 32823, kLargeIcons = 32824, kSmallIcons = 32825, kList = 32826;
constexpr UINT kSortByLocation = 32832, kSortByName = 32833;

class ShellList : public RegistryTest {
protected:
    void SetUp() override {
        RegistryTest::SetUp();
        m_logs = std::make_unique<TempDir>();
        LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"PM_BehaviorCriteria", 1);
        LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", m_logs->path(), REG_EXPAND_SZ);
        // A document of a type of its own, opened by our target program.
        LP_SET_STRING(HKEY_CLASSES_ROOT, L".lpnotes", L"", L"LaunchPanel.TestNotes");
        LP_SET_STRING(HKEY_CLASSES_ROOT, L"LaunchPanel.TestNotes\\shell\\open\\command", L"",
                      L"\"" + BinDir() + L"LaunchTarget.exe\" \"%1\"");
        m_notes = m_work.path() + L"notes.lpnotes";
        LP_WRITE_FILE(m_notes, "notes");
        // Names chosen so that their order by name and by location differ.
        AddApp(L"Beta Tool", BinDir() + L"LaunchTarget.exe");
        AddApp(L"alpha notes", m_notes);
        AddApp(L"Gamma", BinDir() + L"LaunchTargetConsole.exe");
        AddApp(L"\u00dcber \u03a9", BinDir() + L"LaunchTarget.exe");
    }
    void TearDown() override {
        if (m_pid.size()) m_driver.Run({L"close", m_pid, L"--all", L"--wait", kLimit});
        DeleteTree(HKEY_CLASSES_ROOT, L".lpnotes");
        DeleteTree(HKEY_CLASSES_ROOT, L"LaunchPanel.TestNotes");
        RegistryTest::TearDown();
    }
    void AddApp(const std::wstring& name, const std::wstring& path) {
        LP_SET_STRING(HKEY_LOCAL_MACHINE, std::wstring(kCatalogueKey) + L"\\" + name, L"ExePath", path);
    }
    void StartPanel() {
        auto started = m_driver.Run({L"start", BinDir() + L"LaunchPanel.exe"});
        ASSERT_EQ(started.exitCode, 0u) << Narrow(started.Text());
        m_pid = started.Value(L"pid");
    }
    lpdriver::DriverAnswer List() { return m_driver.Run({L"listview", m_pid, L"--min-rows", L"4", kLimit}); }
    void Command(UINT id) {
        auto sent = m_driver.Run({L"command", m_pid, std::to_wstring(id)});
        ASSERT_EQ(sent.exitCode, 0u) << Narrow(sent.Text());
    }
    // The first cell of each row, in the order the list shows them.
    static std::vector<std::wstring> Names(const lpdriver::DriverAnswer& list) {
        std::vector<std::wstring> names;
        for (const auto& row : list.Cells(L"row")) names.push_back(row.empty() ? L"" : row[0]);
        return names;
    }
    void Close() {
        auto closed = m_driver.Run({L"close", m_pid, L"--wait", kLimit});
        EXPECT_EQ(closed.Value(L"exit"), L"0") << Narrow(closed.Text());
        m_pid.clear();
    }

    lpdriver::DriverClient m_driver;
    std::wstring m_pid;
    TempDir m_work;
    std::unique_ptr<TempDir> m_logs;
    std::wstring m_notes;
};

TEST_F(ShellList, ShowsTheCatalogueInEveryModeAndSortsIt) {
    StartPanel();
    auto list = List();
    ASSERT_EQ(list.exitCode, 0u) << Narrow(list.Text()) << Numbers(ReadLogRows(m_logs->path()));
    EXPECT_EQ(list.Value(L"view"), L"0") << "Large icons at first";
    const std::vector<std::wstring> byName = {L"alpha notes", L"Beta Tool", L"Gamma", L"\u00dcber \u03a9"};
    EXPECT_EQ(Names(list), byName) << "sorted by name, without regard to case";

    Command(kDetails);
    list = List();
    EXPECT_EQ(list.Value(L"view"), L"1");
    const auto headings = list.Cells(L"headings");
    ASSERT_EQ(headings.size(), 1u);
    EXPECT_EQ(headings[0], (std::vector<std::wstring>{L"Name", L"Size", L"Type", L"Modified", L"Location"}));
    const auto rows = list.Cells(L"row");
    ASSERT_EQ(rows.size(), 4u);
    ASSERT_EQ(rows[0].size(), 5u);
    EXPECT_EQ(rows[0][4], m_notes) << "Location is the target";
    EXPECT_EQ(rows[0][1], L"1 KB") << "a file of 5 bytes counts as one unit";
    EXPECT_FALSE(rows[0][3].empty()) << "the date it was written";
    EXPECT_EQ(rows[1][4], BinDir() + L"LaunchTarget.exe");

    Command(kSortByLocation);
    list = List();
    std::vector<std::wstring> locations;
    for (const auto& row : list.Cells(L"row")) locations.push_back(row.at(4));
    auto sorted = locations;
    std::sort(sorted.begin(), sorted.end(),
              [](const std::wstring& a, const std::wstring& b) { return _wcsicmp(a.c_str(), b.c_str()) < 0; });
    EXPECT_EQ(locations, sorted) << "by location, upwards";
    EXPECT_NE(Names(list), byName);

    for (auto [command, view] : {std::pair{kSmallIcons, L"2"}, {kList, L"3"}, {kLargeIcons, L"0"}}) {
        Command(command);
        list = List();
        EXPECT_EQ(list.Value(L"view"), view);
        EXPECT_EQ(list.Cells(L"row").size(), 4u);
    }
    Command(kSortByName);
    EXPECT_EQ(Names(List()), byName);
    // Nothing to report: the help file stands beside the program.
    EXPECT_TRUE(ReadLogRows(m_logs->path()).empty()) << Numbers(ReadLogRows(m_logs->path()));
}

TEST_F(ShellList, ViewModeAndSortSurviveARestart) {
    StartPanel();
    ASSERT_EQ(List().exitCode, 0u);
    Command(kDetails);
    Command(kSortByLocation);
    const auto before = Names(List());
    Close();
    StartPanel();
    auto list = List();
    EXPECT_EQ(list.Value(L"view"), L"1") << "Details again";
    EXPECT_EQ(Names(list), before) << "sorted by location again";
}

// Waits until the list shows rows named exactly so (in any order); the last answer.
lpdriver::DriverAnswer WaitForNames(lpdriver::DriverClient& driver, const std::wstring& pid,
                                    std::vector<std::wstring> expected) {
    std::sort(expected.begin(), expected.end());
    lpdriver::DriverAnswer list;
    for (int look = 0; look < 50; ++look) {
        list = driver.Run({L"listview", pid, kLimit});
        std::vector<std::wstring> names;
        for (const auto& row : list.Cells(L"row")) names.push_back(row.empty() ? L"" : row[0]);
        std::sort(names.begin(), names.end());
        if (names == expected) break;
        Sleep(100);
    }
    return list;
}

TEST_F(ShellList, FollowsACatalogueChangedWhileItRuns) {
    // The Parameters column shows too, for the override below.
    LP_SET_STRING(HKEY_CURRENT_USER, std::wstring(kPreferencesKey) + L"\\Settings\\Standard", L"LV_DtlsColIndices",
                  L"5 7 8 4 3 6");
    StartPanel();
    ASSERT_EQ(List().exitCode, 0u);
    Command(kDetails);
    auto sent = m_driver.Run({L"select", m_pid, L"1", kLimit});
    const bool canSelect = sent.exitCode == 0;
    // One added, one removed, one changed, one override that renames nothing but moves the target.
    AddApp(L"Delta", BinDir() + L"LaunchTarget.exe");
    DeleteTree(HKEY_LOCAL_MACHINE, std::wstring(kCatalogueKey) + L"\\Gamma");
    AddApp(L"Beta Tool", BinDir() + L"LaunchTargetConsole.exe");
    auto list = WaitForNames(m_driver, m_pid, {L"alpha notes", L"Beta Tool", L"Delta", L"\u00dcber \u03a9"});
    const auto rows = list.Cells(L"row");
    ASSERT_EQ(rows.size(), 4u) << Narrow(list.Text());
    for (const auto& row : rows) {
        if (row.at(0) == L"Beta Tool") {
            EXPECT_EQ(row.at(4), BinDir() + L"LaunchTargetConsole.exe") << "changed in place";
        }
        if (row.at(0) == L"Delta") {
            EXPECT_EQ(row.at(4), BinDir() + L"LaunchTarget.exe");
        }
    }
    EXPECT_EQ(list.Value(L"view"), L"1") << "the view stays as the user left it";
    if (canSelect) {
        EXPECT_EQ(list.Value(L"selected"), sent.Value(L"selected")) << "the selection survives";
    }

    // An override for a group every user is in gives Delta its own parameters; the row follows it.
    const std::wstring overrideKey = std::wstring(kCatalogueKey) + L"\\Delta\\Groups\\Everyone";
    LP_SET_STRING(HKEY_LOCAL_MACHINE, overrideKey, L"CmdLineOptions", L"/from-the-group");
    bool shown = false;
    for (int look = 0; look < 50 && !shown; ++look) {
        for (const auto& row : m_driver.Run({L"listview", m_pid, kLimit}).Cells(L"row"))
            if (row.at(0) == L"Delta")
                for (const auto& cell : row) shown = shown || cell == L"/from-the-group";
        if (!shown) Sleep(100);
    }
    EXPECT_TRUE(shown) << "the group's override shows without restart";
    EXPECT_TRUE(ReadLogRows(m_logs->path()).empty()) << Numbers(ReadLogRows(m_logs->path()));
}

TEST_F(ShellList, BadInputIsToldAndLosesNothing) {
    // A name as long as the registry allows, an icon file that does not exist, a
    // preference of the wrong type beside a good one.
    const std::wstring longName = L"Long " + std::wstring(250, L'x');
    AddApp(longName, BinDir() + L"LaunchTarget.exe");
    LP_SET_STRING(HKEY_LOCAL_MACHINE, std::wstring(kCatalogueKey) + L"\\Beta Tool", L"IconPath",
                  m_work.path() + L"missing.ico");
    const std::wstring store = std::wstring(kPreferencesKey) + L"\\Settings\\Standard";
    LP_SET_STRING(HKEY_CURRENT_USER, store, L"LV_StylesBasic", L"not a number");
    const uint32_t sortByLocation[3] = {24701, 1, 0};
    LP_SET_BINARY(HKEY_CURRENT_USER, store, L"LV_ItemsSortInfo", sortByLocation, sizeof sortByLocation);
    StartPanel();
    auto list = m_driver.Run({L"listview", m_pid, L"--min-rows", L"5", kLimit});
    ASSERT_EQ(list.exitCode, 0u) << Narrow(list.Text()) << Numbers(ReadLogRows(m_logs->path()));
    EXPECT_EQ(list.Value(L"view"), L"0") << "the unusable style word takes its default";
    const auto names = Names(list);
    EXPECT_NE(std::find(names.begin(), names.end(), longName), names.end());
    EXPECT_NE(std::find(names.begin(), names.end(), L"Beta Tool"), names.end()) << "shown with another icon";
    Command(kDetails);
    std::vector<std::wstring> locations;
    for (const auto& row : List().Cells(L"row")) locations.push_back(row.at(4));
    EXPECT_TRUE(std::is_sorted(locations.begin(), locations.end(), [](const std::wstring& a, const std::wstring& b) {
        return _wcsicmp(a.c_str(), b.c_str()) < 0;
    })) << "the good sort preference is kept";
    const auto rows = ReadLogRows(m_logs->path());
    EXPECT_EQ(RowsOf(rows, 27203).size(), 1u) << "the missing icon file, told once: " << Numbers(rows);
    EXPECT_EQ(RowsOf(rows, 27024).size(), 0u) << "and not again when the icons are found";
}

// How many times the target program recorded a start in file.
int StartsRecorded(const std::wstring& file) {
    const std::string text = ReadFile(file);
    int count = 0;
    for (size_t at = text.find("program="); at != std::string::npos; at = text.find("program=", at + 1)) ++count;
    return count;
}

TEST_F(ShellList, ActivatedRowStartsItsProgramOnceAndTheBarSaysSo) {
    const std::wstring record = m_work.path() + L"starts.txt";
    // The target comes up slowly, so that a second activation meets it starting.
    SetEnvironmentVariableW(L"LP_TARGET_RECORD", record.c_str());
    SetEnvironmentVariableW(L"LP_TARGET_IDLE_DELAY_MS", L"3000");
    SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", L"300");
    StartPanel();
    SetEnvironmentVariableW(L"LP_TARGET_RECORD", nullptr);
    SetEnvironmentVariableW(L"LP_TARGET_IDLE_DELAY_MS", nullptr);
    SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", nullptr);
    ASSERT_EQ(List().exitCode, 0u);
    auto bar = m_driver.Run({L"statusbar", m_pid, kLimit});
    EXPECT_EQ(bar.Cells(L"part").at(0).at(0), L"4 programs") << Narrow(bar.Text());
    auto first = m_driver.Run({L"activate", m_pid, L"1", kLimit});  // Beta Tool
    ASSERT_EQ(first.exitCode, 0u) << Narrow(first.Text());
    for (int look = 0; look < 100 && !FileExists(record); ++look) Sleep(100);
    ASSERT_TRUE(FileExists(record)) << "the row's program was started";
    auto again = m_driver.Run({L"activate", m_pid, L"1", L"--keyboard", kLimit});
    ASSERT_EQ(again.exitCode, 0u) << Narrow(again.Text());
    bar = m_driver.Run({L"statusbar", m_pid, kLimit});
    EXPECT_EQ(bar.Cells(L"part").at(0).at(0), L"Starting Beta Tool\u2026") << "while it comes up";
    for (int look = 0; look < 100; ++look) {
        bar = m_driver.Run({L"statusbar", m_pid, kLimit});
        if (bar.Cells(L"part").at(0).at(0) != L"Starting Beta Tool\u2026") break;
        Sleep(100);
    }
    EXPECT_EQ(bar.Cells(L"part").at(0).at(0), L"1 selected") << "the count again once it is up";
    EXPECT_EQ(StartsRecorded(record), 1) << "a second activation while starting starts nothing";
    const auto rows = ReadLogRows(m_logs->path());
    EXPECT_EQ(RowsOf(rows, 27542).size(), 1u) << Numbers(rows);
    EXPECT_EQ(RowsOf(rows, 27540).size(), 1u) << "came up: " << Numbers(rows);
}

// The right button: on the background the list's menu (its View submenu sets the
// mode), on a row the row's menu (Open starts the program). The menus are worked
// with the keys, as a user may.
TEST_F(ShellList, TheContextMenuSetsTheViewAndOpensARow) {
    const std::wstring record = m_work.path() + L"context-starts.txt";
    SetEnvironmentVariableW(L"LP_TARGET_RECORD", record.c_str());
    SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", L"300");
    StartPanel();
    SetEnvironmentVariableW(L"LP_TARGET_RECORD", nullptr);
    SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", nullptr);
    ASSERT_NE(List().Value(L"view"), L"1") << "the list starts in another mode than Details";

    auto background = m_driver.Run({L"context", m_pid, L"-1", kLimit});
    ASSERT_EQ(background.exitCode, 0u) << Narrow(background.Text());
    // View, into its submenu, down to Details, chosen.
    m_driver.Run({L"keys", background.Value(L"popup"), L"40,39,40,40,40,13"});
    std::wstring view;
    for (int look = 0; look < 50 && view != L"1"; ++look) {
        view = m_driver.Run({L"listview", m_pid, kLimit}).Value(L"view");
        if (view != L"1") Sleep(100);
    }
    EXPECT_EQ(view, L"1") << "Details, chosen in the list's menu";

    auto row = m_driver.Run({L"context", m_pid, L"1", kLimit});  // Beta Tool
    ASSERT_EQ(row.exitCode, 0u) << Narrow(row.Text());
    m_driver.Run({L"keys", row.Value(L"popup"), L"40,13"});  // Open
    // The target makes its record file first and writes it a moment later.
    for (int look = 0; look < 100 && StartsRecorded(record) == 0; ++look) Sleep(100);
    EXPECT_EQ(StartsRecorded(record), 1) << "Open in the row's menu starts the row's program";
}

TEST_F(ShellList, HeaderClicksSortAndColumnsSurviveARestart) {
    StartPanel();
    ASSERT_EQ(List().exitCode, 0u);
    Command(kDetails);
    auto clicked = m_driver.Run({L"header-click", m_pid, L"4", kLimit});  // Location
    ASSERT_EQ(clicked.exitCode, 0u) << Narrow(clicked.Text());
    auto list = List();
    EXPECT_EQ(list.Value(L"sortcolumn"), L"4");
    EXPECT_EQ(list.Value(L"sortdir"), L"up");
    Sleep(GetDoubleClickTime() + 100);  // a second click, not a double-click
    ASSERT_EQ(m_driver.Run({L"header-click", m_pid, L"4", kLimit}).exitCode, 0u);
    list = List();
    EXPECT_EQ(list.Value(L"sortdir"), L"down") << "the same column again turns the order";
    const auto descending = Names(list);
    ASSERT_EQ(m_driver.Run({L"column-width", m_pid, L"2", L"157", kLimit}).exitCode, 0u);
    ASSERT_EQ(m_driver.Run({L"column-order", m_pid, L"0,4,1,2,3", kLimit}).exitCode, 0u);
    Close();
    StartPanel();
    list = List();
    EXPECT_EQ(list.Value(L"view"), L"1");
    EXPECT_EQ(list.Value(L"sortdir"), L"down");
    EXPECT_EQ(Names(list), descending);
    const auto headings = list.Cells(L"headings").at(0);
    EXPECT_EQ(headings, (std::vector<std::wstring>{L"Name", L"Location", L"Size", L"Type", L"Modified"}))
        << "the user's column order";
    const auto widths = list.Cells(L"widths").at(0);
    EXPECT_NE(std::find(widths.begin(), widths.end(), L"157"), widths.end()) << Narrow(list.Text());
}

TEST_F(ShellList, DraggedIconStaysWhereTheUserPutIt) {
    StartPanel();
    ASSERT_EQ(List().exitCode, 0u);
    auto dragged = m_driver.Run({L"drag", m_pid, L"0", L"300", L"200", kLimit});
    ASSERT_EQ(dragged.exitCode, 0u) << Narrow(dragged.Text());
    std::map<int, POINT> places;
    for (int look = 0; look < 50; ++look) {
        places = m_driver.Run({L"listview", m_pid, L"--positions", kLimit}).Positions();
        if (places.count(0) && places.at(0).x > 150) break;
        Sleep(100);
    }
    ASSERT_TRUE(places.count(0));
    const POINT moved = places.at(0);
    EXPECT_GT(moved.x, 150) << "the icon went where it was dropped";
    EXPECT_GT(moved.y, 100);
    EXPECT_LT(places.at(1).x, 150) << "the others stay";
    Close();
    std::vector<BYTE> stored;
    ASSERT_TRUE(GetValue(HKEY_CURRENT_USER,
                         std::wstring(kPreferencesKey) + L"\\Settings\\Standard\\LV_ItemsScreenPos",
                         L"alpha notes", stored));
    ASSERT_EQ(stored.size(), 16u);
    LONG x = 0, y = 0;
    memcpy(&x, stored.data(), 4);
    memcpy(&y, stored.data() + 4, 4);
    EXPECT_EQ(x, moved.x) << "the place in the Large icons view is stored at close";
    EXPECT_EQ(y, moved.y);
    StartPanel();
    auto list = m_driver.Run({L"listview", m_pid, L"--positions", L"--min-rows", L"4", kLimit});
    const auto again = list.Positions();
    ASSERT_TRUE(again.count(0)) << Narrow(list.Text());
    EXPECT_EQ(again.at(0).x, moved.x) << "the place is given back at the next start";
    EXPECT_EQ(again.at(0).y, moved.y);
    EXPECT_EQ(Names(list).at(0), L"alpha notes") << "the same row";
    Command(kDetails);
    Command(kLargeIcons);
    const auto back = m_driver.Run({L"listview", m_pid, L"--positions", kLimit}).Positions();
    ASSERT_TRUE(back.count(0));
    EXPECT_EQ(back.at(0).x, moved.x) << "and kept across a visit to Details";
}

}  // namespace
}  // namespace lptest
