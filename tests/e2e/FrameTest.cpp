// The main window end to end, outside a session: its bars switched off and on and
// kept, the shortcut keys that bring them back, Exit, the close box, the Classic
// desktop and its own store, the network drive dialogs.
#include "tests/e2e/ShellFrameFixture.h"

namespace lptest {
namespace {

constexpr UINT kToolBar = 59392, kStatusBar = 59393, kMenuBar = 32845, kTitleBar = 32848;
constexpr UINT kExit = 57665, kDetails = 32823, kConnectDrive = 32783, kDisconnectDrive = 32784;
constexpr UINT kScClose = 0xF060;
constexpr unsigned long kCaption = WS_CAPTION;
const wchar_t kToolbarClass[] = L"ToolbarWindow32";
const wchar_t kStatusClass[] = L"msctls_statusbar32";

using StandardFrame = ShellFrame;
using ClassicDesktop = ShellFrame;

// Polls the frame until pred holds; the last answer.
template <class Pred>
lpdriver::DriverAnswer AwaitFrame(ShellFrame& test, Pred pred, lpdriver::DriverAnswer (ShellFrame::*frame)(const std::wstring&)) {
    lpdriver::DriverAnswer answer;
    for (int look = 0; look < 60; ++look) {
        answer = (test.*frame)(L"");
        if (pred(answer)) break;
        Sleep(100);
    }
    return answer;
}

TEST_F(StandardFrame, BarsSwitchedOffStayOffAndTheirKeysBringThemBack) {
    StartPanel();
    auto frame = Frame(L"32847");
    EXPECT_EQ(frame.Value(L"menu"), L"1");
    EXPECT_EQ(Style(frame) & kCaption, kCaption);
    EXPECT_TRUE(BarVisible(kToolbarClass));
    EXPECT_TRUE(BarVisible(kStatusClass));
    EXPECT_EQ(frame.Value(L"title"), L"Launch Panel");

    for (UINT id : {kToolBar, kStatusBar, kTitleBar, kMenuBar}) EXPECT_EQ(Command(id).exitCode, 0u) << id;
    frame = Frame();
    EXPECT_EQ(frame.Value(L"menu"), L"0");
    EXPECT_EQ(Style(frame) & kCaption, 0ul);
    EXPECT_FALSE(BarVisible(kToolbarClass));
    EXPECT_FALSE(BarVisible(kStatusClass));

    // With every bar gone only the keys are left: Ctrl+Shift+M brings the menu back.
    auto typed = m_driver.Run({L"chord", m_pid, L"17+16+77"});
    ASSERT_EQ(typed.exitCode, 0u) << Narrow(typed.Text());
    auto menuBack = [this] {
        for (int look = 0; look < 50; ++look) {
            if (Frame().Value(L"menu") == L"1") return true;
            Sleep(100);
        }
        return false;
    };
    EXPECT_TRUE(menuBack()) << "Ctrl+Shift+M";

    // Exit closes the window in order: the bars as they stand are kept.
    EXPECT_EQ(Command(kExit).exitCode, 0u);
    EXPECT_EQ(AwaitEnd(), 0);
    DWORD bars = 0;
    ASSERT_TRUE(GetDword(HKEY_CURRENT_USER, kStandardStore, L"ControlBarsStates", bars));
    EXPECT_EQ(bars & 30u, 2u) << "menu only";

    StartPanel();
    frame = Frame();
    EXPECT_EQ(frame.Value(L"menu"), L"1");
    EXPECT_EQ(Style(frame) & kCaption, 0ul) << "no title bar again";
    EXPECT_FALSE(BarVisible(kToolbarClass));
    EXPECT_FALSE(BarVisible(kStatusClass));
    Command(kToolBar);
    Command(kTitleBar);
    EXPECT_TRUE(BarVisible(kToolbarClass));
    EXPECT_EQ(Style(Frame()) & kCaption, kCaption);
    for (const LogRow& row : Rows()) EXPECT_EQ(row.number, 27058) << "nothing to tell but the help file";
}

TEST_F(StandardFrame, TheCloseBoxOutsideASessionClosesTheWindow) {
    StartPanel();
    EXPECT_EQ(Command(kScClose, true).exitCode, 0u);
    EXPECT_EQ(AwaitEnd(), 0) << "standalone there is nothing to disconnect or log off";
    DWORD bars = 0;
    EXPECT_TRUE(GetDword(HKEY_CURRENT_USER, kStandardStore, L"ControlBarsStates", bars)) << "saved on the way";
}

TEST_F(StandardFrame, NetworkDriveDialogsThatFailAreToldAndTheWindowGoesOn) {
    StartPanel();
    // Wine offers no network provider: both dialogs are refused, and each refusal
    // is told with its own number and the system's reason.
    EXPECT_EQ(m_driver.Run({L"command", m_pid, std::to_wstring(kConnectDrive), L"--timeout", L"5000"}).exitCode, 0u);
    EXPECT_EQ(m_driver.Run({L"command", m_pid, std::to_wstring(kDisconnectDrive), L"--timeout", L"5000"}).exitCode,
              0u);
    EXPECT_TRUE(Logged(27593)) << Numbers(Rows());
    EXPECT_TRUE(Logged(27597)) << Numbers(Rows());
    EXPECT_FALSE(Logged(27591) || Logged(27595)) << "no unexpected failure";
    EXPECT_EQ(m_driver.Run({L"listview", m_pid, kFrameLimit}).exitCode, 0u) << "the window still answers";
}

TEST_F(ClassicDesktop, FillsTheScreenBehindEveryWindowAndKeepsItsOwnStore) {
    // The user's Standard store says Details with every bar; the Classic desktop ignores it.
    LP_SET_DWORD(HKEY_CURRENT_USER, kStandardStore, L"ControlBarsStates", 31);
    LP_SET_DWORD(HKEY_CURRENT_USER, kStandardStore, L"LV_StylesBasic", 0x50000001);
    StartPanel({L"/classic"});
    auto frame = Frame(L"32847");
    EXPECT_EQ(frame.Value(L"title"), L"LaunchPanel_ModeClassicDesktop_");
    EXPECT_EQ(frame.Value(L"menu"), L"0");
    EXPECT_EQ(frame.Value(L"toolbar"), L"0") << "no toolbar is made";
    EXPECT_TRUE(Controls(kStatusClass).empty()) << "no status bar is made";
    EXPECT_EQ(Style(frame) & kCaption, 0ul);
    EXPECT_NE(Style(frame, L"exstyle") & WS_EX_TOOLWINDOW, 0ul) << "not on the taskbar";
    int left = 0, top = 0, right = 0, bottom = 0;
    ASSERT_EQ(swscanf(frame.Value(L"rect").c_str(), L"%d,%d,%d,%d", &left, &top, &right, &bottom), 4);
    EXPECT_LE(left, 0);
    EXPECT_LE(top, 0);
    EXPECT_GE(right, GetSystemMetrics(SM_CXSCREEN));
    EXPECT_GE(bottom, GetSystemMetrics(SM_CYSCREEN));
    auto list = m_driver.Run({L"listview", m_pid, kFrameLimit});
    EXPECT_EQ(list.Value(L"view"), L"0") << "large icons";
    Command(kDetails);
    EXPECT_EQ(m_driver.Run({L"listview", m_pid, kFrameLimit}).Value(L"view"), L"0") << "and nothing else";

    // Another program's window opens; the desktop stays behind it even when clicked.
    wchar_t notepad[MAX_PATH] = {};
    GetWindowsDirectoryW(notepad, MAX_PATH);
    auto target = m_driver.Run({L"start", std::wstring(notepad) + L"\\notepad.exe", L"--idle", L"10000"});
    ASSERT_EQ(target.exitCode, 0u);
    ASSERT_EQ(m_driver.Run({L"find-window", target.Value(L"pid"), L"--visible", kFrameLimit}).exitCode, 0u);
    m_driver.Run({L"activate", m_pid, L"0", kFrameLimit});
    EXPECT_EQ(Frame().Value(L"bottom"), L"1") << "at the bottom of the z-order";
    m_driver.Run({L"close", target.Value(L"pid"), L"--all", L"--wait", kFrameLimit});

    EXPECT_EQ(Command(kExit).exitCode, 0u);
    EXPECT_EQ(AwaitEnd(), 0);
    DWORD bars = 99, style = 0;
    EXPECT_TRUE(GetDword(HKEY_CURRENT_USER, kClassicStore, L"ControlBarsStates", bars)) << "its own store";
    EXPECT_EQ(bars, 0u);
    ASSERT_TRUE(GetDword(HKEY_CURRENT_USER, kStandardStore, L"ControlBarsStates", bars));
    EXPECT_EQ(bars, 31u) << "the Standard store is left as it was";
    ASSERT_TRUE(GetDword(HKEY_CURRENT_USER, kStandardStore, L"LV_StylesBasic", style));
    EXPECT_EQ(style, 0x50000001u);
}

}  // namespace
}  // namespace lptest
