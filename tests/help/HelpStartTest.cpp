// The help file at start, end to end: LaunchPanel.exe run for real from a folder
// of its own, with LaunchPanel.chm beside it and then without it, observed through
// the run's HTML log.
#include <windows.h>

#include <memory>

#include "tests/e2e/LaunchUseFixture.h"
#include "tools/lpdriver/client/DriverClient.h"

namespace lptest {
namespace {

constexpr const wchar_t* kLimit = L"30000";

class HelpAtStart : public LaunchUse {
protected:
    void SetUp() override {
        LaunchUse::SetUp();
        AddApp(L"Driver", BinDir() + L"lpdriver.exe");  // a catalogue of one, as at a normal start
        for (const wchar_t* file : {L"LaunchPanel.exe", L"lp.dll", L"LaunchPanel.chm"})
            ASSERT_TRUE(CopyFileTo(BinDir() + file, m_install.path() + file)) << Narrow(file);
    }

    // A start in shell use from the installed copy: the window shown, then closed
    // as a user closes it. The rows of that run's own log.
    std::vector<LogRow> StartAndClose() {
        auto logs = std::make_unique<TempDir>();
        LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", logs->path(), REG_EXPAND_SZ);
        auto started = m_driver.Run({L"start", m_install.path() + L"LaunchPanel.exe", L"--dir", m_work->path()});
        EXPECT_EQ(started.exitCode, 0u) << Narrow(started.Text());
        const std::wstring pid = started.Value(L"pid");
        auto shown = m_driver.Run({L"find-window", pid, L"--visible", kLimit});
        EXPECT_EQ(shown.exitCode, 0u) << "the window did not show: " << Narrow(shown.Text());
        auto closed = m_driver.Run({L"close", pid, L"--wait", kLimit});
        EXPECT_EQ(closed.Value(L"exit"), L"0") << Narrow(closed.Text());
        EXPECT_FALSE(FirstMatch(logs->path() + L"*.html").empty()) << "the run wrote no log";
        auto rows = ReadLogRows(logs->path());
        m_runLogs.push_back(std::move(logs));
        return rows;
    }

    lpdriver::DriverClient m_driver;
    TempDir m_install;
    std::vector<std::unique_ptr<TempDir>> m_runLogs;
};

TEST_F(HelpAtStart, NoWordOfHelpWithTheFileAndOneWithoutIt) {
    const auto withHelp = StartAndClose();
    EXPECT_TRUE(RowsOf(withHelp, 27058).empty()) << Numbers(withHelp);

    ASSERT_TRUE(DeleteFileW((m_install.path() + L"LaunchPanel.chm").c_str()));
    const auto withoutHelp = StartAndClose();
    const auto missing = RowsOf(withoutHelp, 27058);
    ASSERT_EQ(missing.size(), 1u) << Numbers(withoutHelp);
    ASSERT_FALSE(missing[0].texts.empty());
    EXPECT_EQ(missing[0].texts[0], L"LaunchPanel.chm") << "the help file is named";
}

}  // namespace
}  // namespace lptest
