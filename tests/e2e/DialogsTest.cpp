// The panel's dialogs end to end: the real LaunchPanel.exe under Wine, its view
// options and About box opened by their commands and worked from outside through
// the driver, the window and the stored settings read back as a user and an
// administrator would find them.
#include <gtest/gtest.h>

#include <lmcons.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/GroupNames.h"
#include "foundation/UniqueHandle.h"
#include "tests/launch/LogRows.h"
#include "tests/support/TestSupport.h"
#include "tools/lpdriver/client/DriverClient.h"

namespace lptest {
namespace {

constexpr const wchar_t* kLimit = L"30000";
constexpr const wchar_t* kOptionsTitle = L"View Options";
constexpr UINT kOptions = 32846, kAbout = 32780, kRestore = 32778, kSave = 32779, kLargeIcons = 32824;
constexpr DWORD kGridLines = 1;  // LVS_EX_GRIDLINES
const std::wstring kStore = std::wstring(kPreferencesKey) + L"\\Settings\\Standard";

using Record = std::map<std::wstring, std::wstring>;

class PanelDialogs : public RegistryTest {
protected:
    void SetUp() override {
        RegistryTest::SetUp();
        m_logs = std::make_unique<TempDir>();
        LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"PM_BehaviorCriteria", 1);
        LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", m_logs->path(), REG_EXPAND_SZ);
        LP_SET_STRING(HKEY_LOCAL_MACHINE, std::wstring(kCatalogueKey) + L"\\Beta Tool", L"ExePath",
                      BinDir() + L"LaunchTarget.exe");
    }
    void TearDown() override {
        if (!m_pid.empty()) m_driver.Run({L"close", m_pid, L"--all", L"--wait", kLimit});
        RegistryTest::TearDown();
    }
    void StartPanel(const std::wstring& exe = BinDir() + L"LaunchPanel.exe") {
        auto started = m_driver.Run({L"start", exe});
        ASSERT_EQ(started.exitCode, 0u) << Narrow(started.Text());
        m_pid = started.Value(L"pid");
        auto list = List();
        ASSERT_EQ(list.exitCode, 0u) << Narrow(list.Text()) << Numbers(ReadLogRows(m_logs->path()));
    }
    lpdriver::DriverAnswer List() { return m_driver.Run({L"listview", m_pid, L"--min-rows", L"1", kLimit}); }
    lpdriver::DriverAnswer Drive(std::vector<std::wstring> words, DWORD expectedExit = 0) {
        auto answer = m_driver.Run(words);
        EXPECT_EQ(answer.exitCode, expectedExit) << Narrow(answer.Text());
        return answer;
    }
    void Command(UINT id, bool post = false) {
        std::vector<std::wstring> words{L"command", m_pid, std::to_wstring(id)};
        if (post) words.push_back(L"--post");
        Drive(words);
    }
    lpdriver::DriverAnswer OpenOptions() {
        Command(kOptions, true);  // posted: the command answers only when its dialog closes
        return Drive({L"dialog", m_pid, L"--title", kOptionsTitle, kLimit});
    }
    void Check(const wchar_t* id, const wchar_t* state) {
        Drive({L"check", m_pid, id, state, L"--title", kOptionsTitle, kLimit});
    }
    void PickBackground(int red, int green, int blue) {
        Drive({L"press", m_pid, L"1043", L"--title", kOptionsTitle, L"--no-wait", kLimit});
        Drive({L"pick-color", m_pid, std::to_wstring(red), std::to_wstring(green), std::to_wstring(blue), kLimit});
    }
    void Press(const wchar_t* button) {
        auto pressed = Drive({L"press", m_pid, button, L"--title", kOptionsTitle, kLimit});
        EXPECT_EQ(pressed.Value(L"closed"), L"1");
    }
    static Record Control(const lpdriver::DriverAnswer& dialog, const std::wstring& id) {
        for (const auto& record : dialog.Records(L"control"))
            if (record.at(L"control") == id) return record;
        return {};
    }
    // The status bar among the frame's children: whether it shows.
    std::wstring StatusBarVisible() {
        auto controls = Drive({L"controls", m_pid});
        for (const auto& record : controls.Records(L"control"))
            if (record.at(L"class") == L"msctls_statusbar32") return record.at(L"visible");
        return L"none";
    }
    static long long Number(const lpdriver::DriverAnswer& answer, const wchar_t* key) {
        return std::stoll(answer.Value(key));
    }
    DWORD Stored(const wchar_t* name) {
        DWORD value = 0xDEADBEEF;
        GetDword(HKEY_CURRENT_USER, kStore, name, value);
        return value;
    }

    lpdriver::DriverClient m_driver;
    std::wstring m_pid;
    std::unique_ptr<TempDir> m_logs;
};

TEST_F(PanelDialogs, OptionsOkAppliesToTheWindowIsStoredAndStaysForTheNextShowing) {
    StartPanel();
    auto dialog = OpenOptions();
    EXPECT_EQ(Control(dialog, L"1053")[L"checked"], L"1") << "the status bar shows";
    EXPECT_EQ(Control(dialog, L"1048")[L"checked"], L"0") << "no grid lines";
    PickBackground(10, 20, 200);
    EXPECT_EQ(Control(Drive({L"dialog", m_pid, L"--title", kOptionsTitle, kLimit}), L"1044")[L"text"],
              L"RGB(10, 20, 200)") << "the swatch shows the colour picked";
    EXPECT_EQ(Number(List(), L"bkcolor"), Number(List(), L"bkcolor")) << "nothing changes before OK";
    Check(L"1053", L"0");
    Check(L"1048", L"1");
    Press(L"OK");

    auto list = List();
    EXPECT_EQ(Number(list, L"bkcolor"), RGB(10, 20, 200));
    EXPECT_EQ(Number(list, L"exstyle") & kGridLines, kGridLines);
    EXPECT_EQ(StatusBarVisible(), L"0");

    Command(kSave);
    EXPECT_EQ(Stored(L"LV_ColorBackground"), RGB(10, 20, 200));
    EXPECT_EQ(Stored(L"ControlBarsStates") & 4, 0u) << "stored without the status bar";
    EXPECT_EQ(Stored(L"LV_StylesExtra2") & kGridLines, kGridLines);

    dialog = OpenOptions();
    EXPECT_EQ(Control(dialog, L"1044")[L"text"], L"RGB(10, 20, 200)") << "the choice stays between showings";
    EXPECT_EQ(Control(dialog, L"1053")[L"checked"], L"0");
    EXPECT_EQ(Control(dialog, L"1048")[L"checked"], L"1");
    Press(L"Cancel");
    for (const LogRow& row : ReadLogRows(m_logs->path())) EXPECT_EQ(row.number, 27058);
}

TEST_F(PanelDialogs, OptionsCancelLeavesEverythingAsItWas) {
    StartPanel();
    const auto before = List();
    auto dialog = OpenOptions();
    const std::wstring swatch = Control(dialog, L"1044")[L"text"];
    PickBackground(200, 10, 10);
    Check(L"1048", L"1");
    Check(L"1053", L"0");
    const std::wstring dragChecked = Control(dialog, L"1050")[L"checked"];
    Check(L"1049", L"0");
    auto shown = Drive({L"dialog", m_pid, L"--title", kOptionsTitle, kLimit});
    EXPECT_EQ(Control(shown, L"1050")[L"enabled"], L"0") << "no header drag without headers";
    EXPECT_EQ(Control(shown, L"1050")[L"checked"], dragChecked) << "its check stays as it was";
    // Defaults: the stored options, here the first run's.
    Drive({L"press", m_pid, L"1038", L"--title", kOptionsTitle, L"--no-wait", kLimit});
    shown = Drive({L"dialog", m_pid, L"--title", kOptionsTitle, kLimit});
    EXPECT_EQ(Control(shown, L"1044")[L"text"], swatch);
    EXPECT_EQ(Control(shown, L"1048")[L"checked"], L"0");
    EXPECT_EQ(Control(shown, L"1049")[L"checked"], L"1");
    EXPECT_EQ(Control(shown, L"1050")[L"enabled"], L"1");
    PickBackground(200, 10, 10);
    Press(L"Cancel");

    const auto after = List();
    EXPECT_EQ(Number(after, L"bkcolor"), Number(before, L"bkcolor"));
    EXPECT_EQ(Number(after, L"textcolor"), Number(before, L"textcolor"));
    EXPECT_EQ(Number(after, L"exstyle"), Number(before, L"exstyle"));
    EXPECT_EQ(StatusBarVisible(), L"1");
    dialog = OpenOptions();
    EXPECT_EQ(Control(dialog, L"1044")[L"text"], swatch) << "the next showing has the kept colour";
    EXPECT_EQ(Control(dialog, L"1048")[L"checked"], L"0");
    EXPECT_EQ(Control(dialog, L"1053")[L"checked"], L"1");
    Press(L"Cancel");
    Command(kSave);
    EXPECT_EQ(static_cast<long long>(Stored(L"LV_ColorBackground")), Number(before, L"bkcolor"));
}

TEST_F(PanelDialogs, SettingsRestoreBringsBackTheStoredSettings) {
    const COLORREF green = RGB(0, 160, 0);
    LP_SET_DWORD(HKEY_CURRENT_USER, kStore, L"LV_ColorBackground", green);
    LP_SET_DWORD(HKEY_CURRENT_USER, kStore, L"LV_ColorForeground", RGB(255, 255, 255));
    const COLORREF custom[16] = {};
    LP_SET_BINARY(HKEY_CURRENT_USER, kStore, L"LV_ColorsCustom", custom, sizeof custom);
    // The style words are read as one group: all three stand or none.
    LP_SET_DWORD(HKEY_CURRENT_USER, kStore, L"LV_StylesExtra1", WS_EX_CLIENTEDGE);
    LP_SET_DWORD(HKEY_CURRENT_USER, kStore, L"LV_StylesExtra2", kGridLines);
    LP_SET_DWORD(HKEY_CURRENT_USER, kStore, L"LV_StylesBasic", 0x50000001);  // Details
    StartPanel();
    auto list = List();
    ASSERT_EQ(Number(list, L"bkcolor"), green) << Narrow(list.Text());
    ASSERT_EQ(list.Value(L"view"), L"1");
    ASSERT_EQ(Number(list, L"exstyle") & kGridLines, kGridLines);

    OpenOptions();
    PickBackground(200, 0, 0);
    Check(L"1048", L"0");
    Press(L"OK");
    Command(kLargeIcons);
    list = List();
    ASSERT_EQ(Number(list, L"bkcolor"), RGB(200, 0, 0));
    ASSERT_EQ(list.Value(L"view"), L"0");

    Command(kRestore);
    list = List();
    EXPECT_EQ(Number(list, L"bkcolor"), green) << "the stored colour again";
    EXPECT_EQ(Number(list, L"textcolor"), RGB(255, 255, 255));
    EXPECT_EQ(Number(list, L"exstyle") & kGridLines, kGridLines);
    EXPECT_EQ(list.Value(L"view"), L"1") << "the stored mode again";
    auto dialog = OpenOptions();
    EXPECT_EQ(Control(dialog, L"1044")[L"text"], L"RGB(0, 160, 0)");
    EXPECT_EQ(Control(dialog, L"1048")[L"checked"], L"1");
    Press(L"Cancel");
    for (const LogRow& row : ReadLogRows(m_logs->path())) EXPECT_EQ(row.number, 27058);
}

// The build identifier in the version data of the resource library.
std::wstring BuildIdentifier() {
    const std::wstring path = BinDir() + L"lp.dll";
    DWORD ignored = 0;
    std::vector<BYTE> block(GetFileVersionInfoSizeW(path.c_str(), &ignored));
    if (block.empty() || !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()))
        return {};
    void* value = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(block.data(), L"\\StringFileInfo\\040904b0\\BuildIdentifier", &value, &length)) return {};
    return static_cast<const wchar_t*>(value);
}

TEST_F(PanelDialogs, AboutTellsWhatTheProgramIsAndWhoRunsIt) {
    StartPanel();
    Command(kAbout, true);
    auto about = Drive({L"dialog", m_pid, kLimit});
    EXPECT_EQ(about.Value(L"caption"), L"About Launch Panel \u2013 Corvane application server");
    EXPECT_EQ(Control(about, L"1008")[L"text"], L" 1.0.0.0");
    EXPECT_EQ(Control(about, L"1056")[L"text"], L" " + BuildIdentifier());
    wchar_t user[UNLEN + 1] = {};
    DWORD size = UNLEN + 1;
    ASSERT_TRUE(GetUserNameW(user, &size));
    EXPECT_EQ(Control(about, L"1004")[L"text"], std::wstring(L" ") + user);
    wchar_t computer[MAX_COMPUTERNAME_LENGTH + 1] = {};
    size = MAX_COMPUTERNAME_LENGTH + 1;
    ASSERT_TRUE(GetComputerNameW(computer, &size));
    EXPECT_EQ(Control(about, L"1002")[L"text"], std::wstring(L" ") + computer);

    std::vector<std::wstring> groups;
    bool admin = false;
    {
        ky::UniqueHModule texts(LoadLibraryExW((BinDir() + L"lp.dll").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
        ASSERT_TRUE(texts);
        ASSERT_EQ(ObtainGroupNames(texts.get(), groups, admin), 0);
    }
    ASSERT_FALSE(groups.empty());
    std::vector<std::wstring> expected;
    for (std::wstring group : groups) {
        if (size_t separator = group.find(L'!'); separator != std::wstring::npos) group[separator] = L'\\';
        expected.push_back(L"1005\t" + group);
    }
    EXPECT_EQ(about.Values(L"item"), expected) << "the test user's groups, in the token's order";
    const std::wstring legal = Control(about, L"1010")[L"text"];
    EXPECT_NE(legal.find(L"Copyright \u00A9 2026 Veltran. All rights reserved."), std::wstring::npos) << Narrow(legal);
    EXPECT_NE(legal.find(L"trademarks of Veltran"), std::wstring::npos) << Narrow(legal);
    EXPECT_NE(legal.find(L"international treaties"), std::wstring::npos) << Narrow(legal);

    auto pressed = Drive({L"press", m_pid, L"OK", kLimit});
    EXPECT_EQ(pressed.Value(L"closed"), L"1");
    EXPECT_EQ(List().exitCode, 0u) << "the panel goes on";
    for (const LogRow& row : ReadLogRows(m_logs->path())) EXPECT_EQ(row.number, 27058);
}

TEST_F(PanelDialogs, UnattendedFailuresOfTheDialogsShowNoBoxAndAreLogged) {
    TempDir place;
    ASSERT_TRUE(CopyFileTo(BinDir() + L"LaunchPanel.exe", place / L"LaunchPanel.exe"));
    ASSERT_TRUE(CopyFileTo(BinDir() + L"lp_nodialogs.dll", place / L"lp.dll"));
    StartPanel(place / L"LaunchPanel.exe");
    Command(kAbout, true);
    Command(kOptions, true);
    // Both commands have run once a command sent after them is answered.
    Command(kSave);
    auto box = Drive({L"msgbox", m_pid, L"2000"}, 1);
    EXPECT_EQ(box.Value(L"timeout"), L"1") << "no box, no dialog shows";
    const auto rows = ReadLogRows(m_logs->path());
    EXPECT_EQ(RowsOf(rows, 27160).size(), 1u) << Numbers(rows);
    EXPECT_EQ(RowsOf(rows, 27163).size(), 1u) << Numbers(rows);
    EXPECT_EQ(List().exitCode, 0u) << "the panel goes on";
}

}  // namespace
}  // namespace lptest
