// LaunchPanel.exe run as an administrator's script runs it: unattended, so no
// failure may wait for a click, and the exit code tells the script what happened.
#include <gtest/gtest.h>

#include "app/KYjlpApp.h"
#include "tests/launch/LogRows.h"
#include "tests/support/TestSupport.h"

namespace lptest {
namespace {

// Long enough for Wine to start a program; a box nobody answers outlasts it.
constexpr DWORD kEndsWithin = 20000;

class UnattendedStart : public RegistryTest {
protected:
    void SetUp() override {
        RegistryTest::SetUp();
        LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"PM_BehaviorCriteria", 1);
    }
    // A fresh log folder for each run; the exit code of the run, which must end by itself.
    DWORD Run(const std::wstring& exe, const std::wstring& arguments, DWORD limit = kEndsWithin) {
        m_logs = std::make_unique<TempDir>();
        LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", m_logs->path(), REG_EXPAND_SZ);
        RunResult run = RunProgram(exe, arguments, limit, m_work.path());
        EXPECT_TRUE(run.started);
        EXPECT_TRUE(run.finished) << "LaunchPanel " << Narrow(arguments) << " waited for somebody";
        return run.exitCode;
    }
    std::vector<LogRow> Rows() const { return ReadLogRows(m_logs->path()); }
    static std::wstring Panel() { return BinDir() + L"LaunchPanel.exe"; }

    TempDir m_work;
    std::unique_ptr<TempDir> m_logs;
};

TEST_F(UnattendedStart, BadCommandLinesEndAtOnceWithTheirNumberInTheLog) {
    const struct {
        const wchar_t* arguments;
        int number;
    } cases[] = {
        {L"/launch", 27154},
        {L"/nosuchoption", 27148},
        {L"launch Notepad", 27151},
        {L"/launch A -a 1 C:\\Dir /launch A", 27147},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Narrow(c.arguments));
        EXPECT_EQ(Run(Panel(), c.arguments), DWORD(KYjlpApp::kExitBadCommandLine));
        auto rows = Rows();
        EXPECT_EQ(RowsOf(rows, c.number).size(), 1u) << Numbers(rows);
    }
}

TEST_F(UnattendedStart, MissingLibraryEndsAtOnceWithItsNumberInTheLog) {
    TempDir app;
    ASSERT_TRUE(CopyFileTo(Panel(), app.path() + L"LaunchPanel.exe"));
    EXPECT_EQ(Run(app.path() + L"LaunchPanel.exe", L""), DWORD(KYjlpApp::kExitFailed));
    auto rows = Rows();
    ASSERT_EQ(RowsOf(rows, 27050).size(), 1u) << Numbers(rows);
}

TEST_F(UnattendedStart, LaunchUseTellsItsOutcomeByExitCode) {
    const std::wstring target = BinDir() + L"LaunchTarget.exe";
    SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", L"300");
    EXPECT_EQ(Run(Panel(), L"/launch \"" + target + L"\""), DWORD(KYjlpApp::kExitSuccess));
    EXPECT_EQ(RowsOf(Rows(), 27540).size(), 1u) << "came up: " << Numbers(Rows());

    EXPECT_EQ(Run(Panel(), L"/launch NoSuchProgramAnywhere"), DWORD(KYjlpApp::kExitNotFound));
    EXPECT_EQ(RowsOf(Rows(), 27193).size(), 1u) << Numbers(Rows());

    // Not ready for input within the minute launch use waits: its own code. The
    // target idles a few seconds after the limit and then ends by itself.
    SetEnvironmentVariableW(L"LP_TARGET_IDLE_DELAY_MS", L"64000");
    SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", L"100");
    EXPECT_EQ(Run(Panel(), L"/launch \"" + target + L"\"", 90000), DWORD(KYjlpApp::kExitNotIdle));
    SetEnvironmentVariableW(L"LP_TARGET_IDLE_DELAY_MS", nullptr);
    SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", nullptr);
    EXPECT_EQ(RowsOf(Rows(), 27541).size(), 1u) << Numbers(Rows());
}

}  // namespace
}  // namespace lptest
