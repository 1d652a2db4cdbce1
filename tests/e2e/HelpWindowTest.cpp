// The help window end to end: F1 typed into the running panel opens the system's
// help viewer on LaunchPanel.chm, a top-level window of the panel's own process,
// and it goes when the panel is closed.
#include "tests/e2e/ShellFrameFixture.h"

namespace lptest {
namespace {

constexpr const wchar_t* kVkF1 = L"112";
constexpr const wchar_t* kHelpClass = L"HH Parent";
constexpr UINT kScClose = 0xF060;

class HelpWindow : public ShellFrame {
protected:
    // The process's top-level windows of the help viewer's class.
    std::vector<std::wstring> HelpWindows() {
        std::vector<std::wstring> found;
        for (auto& record : m_driver.Run({L"windows", m_pid}).Records(L"hwnd"))
            if (_wcsicmp(record[L"class"].c_str(), kHelpClass) == 0) found.push_back(record[L"hwnd"]);
        return found;
    }
};

TEST_F(HelpWindow, F1OpensTheHelpViewerAndItGoesWithThePanel) {
    ASSERT_TRUE(FileExists(BinDir() + L"LaunchPanel.chm")) << "the help file lies beside the program";
    StartPanel();
    ASSERT_TRUE(HelpWindows().empty()) << "no help before it is asked for";

    auto typed = m_driver.Run({L"chord", m_pid, kVkF1});
    ASSERT_EQ(typed.exitCode, 0u) << Narrow(typed.Text());
    auto help = m_driver.Run({L"find-window", m_pid, L"--class", kHelpClass, L"--visible", kFrameLimit});
    ASSERT_EQ(help.exitCode, 0u) << "F1 opened no help window: " << Narrow(m_driver.Run({L"windows", m_pid}).Text());
    EXPECT_EQ(help.Value(L"pid"), m_pid) << "the viewer is the panel's own";
    EXPECT_FALSE(help.Value(L"title").empty());
    EXPECT_EQ(HelpWindows().size(), 1u);

    // The panel's own close box; the help window is not closed by hand.
    const std::wstring frame = Frame().Value(L"hwnd");
    m_driver.Run({L"command", frame, std::to_wstring(kScClose), L"--system", L"--post"});
    EXPECT_EQ(AwaitEnd(), 0) << "the open help window does not hold the panel";
    const HWND helpWindow = reinterpret_cast<HWND>(std::stoull(help.Value(L"hwnd"), nullptr, 16));
    EXPECT_FALSE(IsWindow(helpWindow)) << "the help window went with the panel";
}

}  // namespace
}  // namespace lptest
