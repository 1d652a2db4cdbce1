// The help viewer of the system opened on LaunchPanel.chm through the program's
// wrapper: bound at run time, the window found on a context id of the help's map
// and on a page, and closed again.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "framework/HtmlHelp.h"
#include "resources/HelpContext.h"
#include "tests/support/TestSupport.h"

namespace lptest {
namespace {

std::wstring ClassOf(HWND window) {
    wchar_t name[128] = {};
    GetClassNameW(window, name, 128);
    return name;
}

std::wstring TitleOf(HWND window) {
    wchar_t title[256] = {};
    GetWindowTextW(window, title, 256);
    return title;
}

// The help windows of this process, as a user would see them.
std::vector<HWND> HelpWindows() {
    std::vector<HWND> found;
    EnumWindows(
        [](HWND window, LPARAM list) -> BOOL {
            DWORD process = 0;
            GetWindowThreadProcessId(window, &process);
            if (process == GetCurrentProcessId() && ClassOf(window) == L"HH Parent" && IsWindowVisible(window))
                reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&found));
    return found;
}

void Pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

class HelpViewer : public ::testing::Test {
protected:
    void TearDown() override {
        fw::CloseHtmlHelp();
        Pump();
    }
    const std::wstring m_chm = BinDir() + L"LaunchPanel.chm";
};

TEST_F(HelpViewer, OpensOnAContextIdOfTheMapAndCloses) {
    ASSERT_TRUE(FileExists(m_chm));
    HWND help = fw::ShowHelpContext(nullptr, m_chm, HIDD_VIEW_OPTIONS);
    Pump();
    ASSERT_NE(help, nullptr) << "the viewer did not open the help on the view options' id";
    ASSERT_TRUE(fw::HtmlHelpBound());
    wchar_t module[MAX_PATH] = {};
    GetModuleFileNameW(fw::HtmlHelpModule(), module, MAX_PATH);
    EXPECT_NE(std::wstring(module).find(L"hhctrl.ocx"), std::wstring::npos) << Narrow(module);
    EXPECT_TRUE(IsWindowVisible(help));
    EXPECT_EQ(ClassOf(help), L"HH Parent");
    EXPECT_EQ(TitleOf(help), L"Launch Panel Help") << "the window the help file defines";
    const auto windows = HelpWindows();
    ASSERT_EQ(windows.size(), 1u);
    EXPECT_EQ(windows[0], help);

    fw::CloseHtmlHelp();
    Pump();
    EXPECT_FALSE(IsWindow(help));
    EXPECT_TRUE(HelpWindows().empty());
}

TEST_F(HelpViewer, RefusesAnIdThatTheMapDoesNotHave) {
    // The viewer looks the id up in the file's map: one that is not there opens nothing.
    EXPECT_EQ(fw::ShowHelpContext(nullptr, m_chm, 0x1FFFF), nullptr);
    Pump();
    EXPECT_TRUE(HelpWindows().empty());
    EXPECT_NE(fw::ShowHelpContext(nullptr, m_chm, HIDC_VO_TRACK_SELECT), nullptr);
}

TEST_F(HelpViewer, OpensOnAPageAndOnTheDefaultPage) {
    HWND page = fw::ShowHelpTopic(nullptr, m_chm, L"about.htm");
    ASSERT_NE(page, nullptr);
    HWND home = fw::ShowHelpTopic(nullptr, m_chm);
    EXPECT_EQ(home, page) << "one help window, shown on the other page";
    EXPECT_EQ(HelpWindows().size(), 1u);
}

TEST_F(HelpViewer, NothingOpensForAHelpFileThatIsNotThere) {
    EXPECT_EQ(fw::ShowHelpContext(nullptr, BinDir() + L"NoSuchHelp.chm", HIDR_MAINFRAME), nullptr);
    EXPECT_TRUE(HelpWindows().empty());
}

TEST(HelpPath, WhatIsThisGoesToThePopupTextsInsideTheFile) {
    EXPECT_EQ(fw::HelpPathForCommand(L"C:\\p\\LaunchPanel.chm", HH_TP_HELP_CONTEXTMENU),
              L"C:\\p\\LaunchPanel.chm::KYjlpContext.txt");
    EXPECT_EQ(fw::HelpPathForCommand(L"C:\\p\\LaunchPanel.chm", HH_DISPLAY_TOPIC), L"C:\\p\\LaunchPanel.chm");
    EXPECT_EQ(fw::HelpPathForCommand(L"C:\\p\\LaunchPanel.chm", HH_HELP_CONTEXT), L"C:\\p\\LaunchPanel.chm");
    EXPECT_EQ(std::wstring(fw::kHelpPopupSuffix), L"::KYjlpContext.txt");
}

}  // namespace
}  // namespace lptest
