// The real message box: a helper thread finds the monitor's box among this
// process's windows, reads it and presses a button, within 10 seconds.
#include <gtest/gtest.h>

#include <atomic>
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
    EXPECT_EQ(monitor->getSituationsCount(), 1);
}
