// The real message box: a helper thread finds the monitor's box among this
// process's windows, reads it and presses a button, within 10 seconds.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "MonitorTestSupport.h"
#include "tests/support/TestSupport.h"

using namespace montest;

namespace {

struct FoundBox {
    HWND box = nullptr;
    std::wstring caption;
    std::wstring text;
};

BOOL CALLBACK FindOwnBox(HWND window, LPARAM param) {
    wchar_t className[32] = {};
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != GetCurrentProcessId() || !IsWindowVisible(window)) return TRUE;
    GetClassNameW(window, className, 32);
    if (std::wstring(className) != L"#32770") return TRUE;
    *reinterpret_cast<HWND*>(param) = window;
    return FALSE;
}

// Presses button of the first box that appears; gives up after 10 s and then
// ends the box's loop with WM_QUIT so the test fails instead of hanging.
class BoxPresser {
public:
    explicit BoxPresser(int button) : m_thread([this, button, owner = GetCurrentThreadId()] { run(button, owner); }) {}
    ~BoxPresser() { m_thread.join(); }
    FoundBox found;
    std::atomic<bool> pressed{false};

private:
    void run(int button, DWORD owner) {
        for (int waited = 0; waited < 10000; waited += 50) {
            HWND box = nullptr;
            EnumWindows(FindOwnBox, reinterpret_cast<LPARAM>(&box));
            if (box) {
                wchar_t text[1024] = {};
                GetWindowTextW(box, text, 1024);
                found.caption = text;
                GetDlgItemTextW(box, 0xFFFF, text, 1024);
                found.text = text;
                found.box = box;
                PostMessageW(box, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                             reinterpret_cast<LPARAM>(GetDlgItem(box, button)));
                pressed = true;
                return;
            }
            Sleep(50);
        }
        PostThreadMessageW(owner, WM_QUIT, 0, 0);
    }
    std::thread m_thread;
};

}  // namespace

TEST(KYbpmMessageBox, QuestionIsAskedAndAnswered) {
    lptest::TempDir dir;
    auto monitor = MakeMonitor({.criteria = 0, .logFile = dir / L"run.html"});
    ASSERT_TRUE(monitor);
    {
        BoxPresser presser(IDYES);
        EXPECT_TRUE(monitor->respondToSituation(27103, 0, L"P1"));
        EXPECT_TRUE(presser.pressed);
    }
    MSG quit;
    PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    EXPECT_EQ(monitor->getDisplayDlgBoxResult(), IDYES) << "the user's answer, not the default (no)";
    const auto rows = SituationRows(lptest::ReadFile(dir / L"run.html"));
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(Attribute(rows[0], "data-boxed"), "1");
    EXPECT_EQ(Attribute(rows[0], "data-answer"), "6");
    EXPECT_EQ(Attribute(rows[0], "data-kind"), "question");
}

TEST(KYbpmMessageBox, FailureShowsCaptionAndFullText) {
    auto monitor = MakeMonitor({.criteria = 0});
    ASSERT_TRUE(monitor);
    EXPECT_EQ(monitor->canRespondToSituations(), KYbpm_FUZZY_CHOICE::Yes);
    FoundBox found;
    {
        BoxPresser presser(IDOK);
        EXPECT_TRUE(monitor->respondToSituation(27038, 0, L"<a href=\"Codes/WLE.html#5\">WLE5</a>", L"N"))
            << "shown is taken, even with no log";
        EXPECT_TRUE(presser.pressed);
        found = presser.found;
    }
    MSG quit;
    PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    EXPECT_EQ(monitor->getDisplayDlgBoxResult(), IDOK);
    EXPECT_EQ(found.caption, L"Monitor Test Caption");
    EXPECT_NE(found.text.find(L"Internal Error 42.038"), std::wstring::npos) << testing::PrintToString(lptest::Narrow(found.text));
    EXPECT_NE(found.text.find(L"Opened WLE5 with N."), std::wstring::npos);
    EXPECT_EQ(monitor->getSituationsCount(), 0) << "answered: nothing stands";
}

namespace {
KYbpm* g_nestedMonitor = nullptr;

// A handler that runs inside the box's modal loop and tells a situation of its own.
void CALLBACK RaiseWhileBoxIsOpen(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    EXPECT_TRUE(g_nestedMonitor->respondToSituation(27102, 0, L"D:")) << "logged, though not shown";
    EXPECT_EQ(g_nestedMonitor->getDisplayDlgBoxResult(), IDNO) << "a question nobody saw is declined";
    g_nestedMonitor->forgetSituation();
}
}  // namespace

TEST(KYbpmMessageBox, SituationRaisedWhileTheBoxIsOpenLeavesTheOuterOneWhole) {
    lptest::TempDir dir;
    auto monitor = MakeMonitor({.criteria = 0, .logFile = dir / L"run.html"});
    ASSERT_TRUE(monitor);
    g_nestedMonitor = monitor.get();
    SetTimer(nullptr, 0, 50, RaiseWhileBoxIsOpen);
    {
        BoxPresser presser(IDOK);
        monitor->recordSituationID(27038);
        monitor->recordArgument(L"Notepad");
        monitor->recordArgument(L"Q");
        std::this_thread::sleep_for(std::chrono::milliseconds(300));  // the box's loop meets the timer first
        EXPECT_TRUE(monitor->respondToSituation());
        EXPECT_TRUE(presser.pressed);
        EXPECT_EQ(presser.found.text.find(L"Replace"), std::wstring::npos) << "one box at a time";
    }
    MSG quit;
    PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    EXPECT_TRUE(monitor->isSituationNormal());
    const auto rows = SituationRows(lptest::ReadFile(dir / L"run.html"));
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(Attribute(rows[0], "data-number"), "27102");
    EXPECT_EQ(Attribute(rows[0], "data-boxed"), "0");
    EXPECT_EQ(Attribute(rows[1], "data-number"), "27038") << "the outer situation as it was recorded";
    EXPECT_EQ(Attribute(rows[1], "data-args-text"), R"(["Notepad","Q"])");
    EXPECT_EQ(Attribute(rows[1], "data-boxed"), "1");
}

TEST(KYbpmMessageBox, QuestionsKeptInCodeStayQuestionsWhateverTheirText) {
    lptest::TempDir dir;
    auto data = MakeData({.logFile = dir / L"run.html"});
    // 27038 has no directive; 27102 says yes/no with yes as its default.
    ASSERT_TRUE(data->recordSituationKind(27038, {.kind = KYbpmKind::Question, .buttons = MB_OKCANCEL,
                                                  .defaultSecond = true}));
    ASSERT_TRUE(data->recordSituationKind(27102, {.kind = KYbpmKind::Question, .buttons = MB_YESNO,
                                                  .defaultSecond = true}));
    MonitorPtr monitor(KYbpm::create(data.get()));
    ASSERT_TRUE(monitor);
    EXPECT_TRUE(monitor->respondToSituation(27038, 0, L"A", L"B"));
    EXPECT_EQ(monitor->getDisplayDlgBoxResult(), IDCANCEL);
    EXPECT_TRUE(monitor->respondToSituation(27102, 0, L"C:"));
    EXPECT_EQ(monitor->getDisplayDlgBoxResult(), IDNO) << "the code's default, not the text's";
    const auto rows = SituationRows(lptest::ReadFile(dir / L"run.html"));
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(Attribute(rows[0], "data-kind"), "question");
    EXPECT_EQ(Attribute(rows[1], "data-kind"), "question");
}

TEST(KYbpmMessageBox, ReportComposedByTheCallerIsShownAndLoggedAsGiven) {
    lptest::TempDir dir;
    auto monitor = MakeMonitor({.criteria = 0, .logFile = dir / L"run.html"});
    ASSERT_TRUE(monitor);
    FoundBox found;
    {
        BoxPresser presser(IDOK);
        monitor->recordSituationID(27036);
        monitor->recordArgument(L"X");
        monitor->recordPresentation(L"Code line\nOpened %s1.", L"Own Caption", MB_OK | MB_ICONERROR);
        EXPECT_TRUE(monitor->respondToSituation());
        found = presser.found;
    }
    MSG quit;
    PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    EXPECT_EQ(found.caption, L"Own Caption");
    EXPECT_EQ(found.text, L"Code line\nOpened X.") << "the caller's text, filled from the arguments";
    const auto rows = SituationRows(lptest::ReadFile(dir / L"run.html"));
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(Attribute(rows[0], "data-number"), "27036");
}
