// The program as the shell of a server session, end to end: the session's device,
// library and logon manager are our stand-ins, the program is the real one and is
// observed from outside. Questions are answered in their boxes as a user would.
#include "tests/e2e/ShellFrameFixture.h"
#include "tests/support/SessionStandIns.h"

#include <optional>

namespace lptest {
namespace {

constexpr UINT kDisconnect = 32820, kLogoff = 32821, kPrinterPanel = 32786, kScClose = 0xF060;
constexpr int kOk = IDOK, kCancel = IDCANCEL, kYes = IDYES, kNo = IDNO;

class InSession : public ShellFrame {
protected:
    void SetUp() override {
        ShellFrame::SetUp();
        ASSERT_TRUE(m_device.Install());
        ASSERT_TRUE(m_tessel.SetTimeout(20));
    }
    void SetCloseOption(DWORD option) { LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"LaunchPanelCloseOption", option); }
    // The box the program shows now: its text, or empty when none came.
    std::wstring Box() {
        auto box = m_driver.Run({L"msgbox", m_pid, L"10000"});
        return box.exitCode == 0 ? box.Value(L"text") : std::wstring();
    }
    void Answer(int button) {
        auto pressed = m_driver.Run({L"press", m_pid, std::to_wstring(button), L"10000"});
        EXPECT_EQ(pressed.exitCode, 0u) << Narrow(pressed.Text());
    }
    // The close box, posted: the question it may raise holds the window's thread.
    void CloseBox() { m_driver.Run({L"command", m_pid, std::to_wstring(kScClose), L"--system", L"--post"}); }
    bool StillRuns() { return m_driver.Run({L"wait", m_pid, L"500"}).exitCode != 0; }
    // The server's settings changed: the panel's watch on its key fires.
    void TouchServerKey() {
        static DWORD round = 0;
        LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"SharedAccounts", L"kiosk" + std::to_wstring(++round));
    }
    bool AwaitDisconnectButton(bool enabled) {
        for (int look = 0; look < 60; ++look) {
            auto frame = Frame(L"32820");
            auto buttons = frame.Records(L"button");
            if (!buttons.empty() && (buttons[0][L"enabled"] == L"1") == enabled) return true;
            Sleep(100);
        }
        return false;
    }

    StandInsOnPath m_path;
    SessionDevice m_device;
    TesselAnswers m_tessel;
    std::optional<LogonManagerEvents> m_events{std::in_place};
};

TEST_F(InSession, TellsTheLogonManagerKeepsNoLogFileAndHandsOnTheClientsFacts) {
    ASSERT_TRUE(m_device.SetClient(L"CLIENT-7", L"10.1.2.3"));
    PrinterPanelRecord panel;
    StartPanel();
    EXPECT_TRUE(m_events->ExchangeSet(5000)) << "the logon manager learns that the panel is up";
    EXPECT_FALSE(m_events->ShutdownSet());
    EXPECT_TRUE(FirstMatch(m_logs->path() + L"*.html").empty()) << "a session keeps no log file";
    EXPECT_EQ(m_device.Opens(), m_device.Closes()) << "the device is closed after each use";

    // The session says the client changed: programs started later see its facts.
    const UINT changed = RegisterWindowMessageW(L"QRClientEnvVarChange");
    const HWND frame = reinterpret_cast<HWND>(std::stoull(Frame().Value(L"hwnd"), nullptr, 16));
    ASSERT_NE(SendMessageW(frame, changed, 0, 0), 0);
    EXPECT_EQ(m_device.ClientFactsRequests(), 1u);
    EXPECT_EQ(Command(kPrinterPanel).exitCode, 0u);
    ASSERT_TRUE(panel.WaitForStarts(1, 10000)) << "the Printer Panel is found by the search path";
    EXPECT_EQ(panel.Variable(L"CLIENTCOMPUTERNAME").value_or(L"?"), L"CLIENT-7");
    EXPECT_EQ(panel.Variable(L"CLIENTCOMPUTERIPADDRESS").value_or(L"?"), L"10.1.2.3");
    auto bar = m_driver.Run({L"statusbar", m_pid, kFrameLimit});
    EXPECT_NE(bar.Text().find(L"CLIENT-7"), std::wstring::npos) << "the second pane names the client";
}

// How many processes loaded the skin library stand-in, by its record.
int SkinLoads(const std::wstring& record) {
    const std::string text = ReadFile(record);
    int count = 0;
    for (size_t at = text.find("loaded="); at != std::string::npos; at = text.find("loaded=", at + 1)) ++count;
    return count;
}

TEST_F(InSession, TheSkinLibraryIsLoadedInShellUseAndNotInLaunchUse) {
    TempDir work;
    const std::wstring record = work.path() + L"face.txt";
    SetEnvironmentVariableW(L"LP_FACE_RECORD", record.c_str());
    SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", L"300");
    auto launched = m_driver.Run({L"start", BinDir() + L"LaunchPanel.exe", L"--wait", L"30000", L"--", L"/launch",
                                  L"Beta Tool"});
    EXPECT_EQ(launched.Value(L"exit"), L"0") << Narrow(launched.Text());
    EXPECT_EQ(SkinLoads(record), 0) << "launch use shows no window to skin";
    StartPanel();
    SetEnvironmentVariableW(L"LP_FACE_RECORD", nullptr);
    SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", nullptr);
    EXPECT_EQ(SkinLoads(record), 1) << "shell use loads the skin library once";
}

TEST_F(InSession, TheCloseOptionDecidesWhatTheCloseBoxDoes) {
    SetUnattended(false);
    struct Case {
        DWORD option;
        int32_t timeout;
        uint32_t shared;
        int sharedResult;
        const wchar_t* expect;  // "logoff", "disconnect" or "close"
    };
    const Case cases[] = {
        {1, 20, 0, 0, L"logoff"},     {2, 20, 0, 0, L"close"},  {0, 20, 0, 0, L"disconnect"},
        {0, 0, 0, 0, L"logoff"},      {0, 20, 1, 0, L"logoff"}, {0, 20, 0, 5, L"close"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(Narrow(std::wstring(L"option ") + std::to_wstring(c.option) + L", time-out " +
                            std::to_wstring(c.timeout) + L", shared " + std::to_wstring(c.shared) + L", expect " +
                            c.expect));
        SetCloseOption(c.option);
        ASSERT_TRUE(m_tessel.SetTimeout(c.timeout));
        ASSERT_TRUE(m_tessel.SetSharedAccount(c.shared, c.sharedResult));
        StartPanel();
        CloseBox();
        const std::wstring expect = c.expect;
        if (expect == L"close") {
            EXPECT_EQ(AwaitEnd(), 0) << "a plain close: the program ends, the session goes on";
            EXPECT_FALSE(m_events->ShutdownSet());
            continue;
        }
        const std::wstring text = Box();
        if (expect == L"logoff") {
            EXPECT_NE(text.find(L"log off"), std::wstring::npos) << Narrow(text);
            Answer(kNo);
        } else {
            EXPECT_NE(text.find(L"disconnected"), std::wstring::npos) << Narrow(text);
            EXPECT_NE(text.find(L"20 minutes"), std::wstring::npos) << "the time-out is told";
            Answer(kCancel);
        }
        EXPECT_TRUE(StillRuns()) << "the answer No or Cancel changes nothing";
        EXPECT_EQ(m_tessel.Calls(L"tessDisconnectSession"), 0u);
        EXPECT_EQ(Command(57665).exitCode, 0u);
        EXPECT_EQ(AwaitEnd(), 0);
    }
}

TEST_F(InSession, DisconnectCallsTheSessionOnlyWhenTheUserAgreesAndSurvivesItsRefusal) {
    SetUnattended(false);
    StartPanel();
    m_driver.Run({L"command", m_pid, std::to_wstring(kDisconnect), L"--post"});
    EXPECT_NE(Box().find(L"Disconnect now?"), std::wstring::npos);
    Answer(kOk);
    for (int look = 0; look < 50 && m_tessel.Calls(L"tessDisconnectSession") == 0; ++look) Sleep(100);
    EXPECT_EQ(m_tessel.Calls(L"tessDisconnectSession"), 1u);

    // A refusal of the session is a warning: in a session it goes to the event log,
    // not into a box, and the panel goes on.
    ASSERT_TRUE(m_tessel.SetDisconnectResult(5));
    m_driver.Run({L"command", m_pid, std::to_wstring(kDisconnect), L"--post"});
    EXPECT_NE(Box().find(L"Disconnect now?"), std::wstring::npos);
    Answer(kOk);
    for (int look = 0; look < 50 && m_tessel.Calls(L"tessDisconnectSession") < 2; ++look) Sleep(100);
    EXPECT_EQ(m_tessel.Calls(L"tessDisconnectSession"), 2u);
    EXPECT_TRUE(StillRuns());
    EXPECT_EQ(m_driver.Run({L"listview", m_pid, kFrameLimit}).exitCode, 0u) << "the window still answers";
}

TEST_F(InSession, LogOffAnsweredYesClosesSavesAndTellsTheSession) {
    SetUnattended(false);
    StartPanel();
    Command(59392);  // the toolbar off: the store must show it afterwards
    m_driver.Run({L"command", m_pid, std::to_wstring(kLogoff), L"--post"});
    EXPECT_NE(Box().find(L"log off"), std::wstring::npos);
    Answer(kYes);
    EXPECT_EQ(AwaitEnd(), 0);
    EXPECT_TRUE(m_events->ShutdownSet(5000));
    DWORD bars = 0;
    ASSERT_TRUE(GetDword(HKEY_CURRENT_USER, kStandardStore, L"ControlBarsStates", bars));
    EXPECT_EQ(bars & 16u, 0u) << "saved on the way out";
}

TEST_F(InSession, LogOffWithoutTheShutdownEventStillEndsTheProgram) {
    SetUnattended(false);
    m_events.emplace(true, false);
    StartPanel();
    m_driver.Run({L"command", m_pid, std::to_wstring(kLogoff), L"--post"});
    Box();
    Answer(kYes);
    EXPECT_EQ(AwaitEnd(), 0);
}

TEST_F(InSession, DisconnectFollowsTheSessionsSettingsWithoutARestart) {
    ASSERT_TRUE(m_tessel.SetTimeout(0));
    StartPanel();
    EXPECT_TRUE(AwaitDisconnectButton(false)) << "no time-out, no disconnect";
    ASSERT_TRUE(m_tessel.SetTimeout(30));
    TouchServerKey();
    EXPECT_TRUE(AwaitDisconnectButton(true)) << "a time-out now: disconnect is offered";
    ASSERT_TRUE(m_tessel.SetSharedAccount(1));
    TouchServerKey();
    EXPECT_TRUE(AwaitDisconnectButton(false)) << "a shared account cannot come back to its session";
}

}  // namespace
}  // namespace lptest
