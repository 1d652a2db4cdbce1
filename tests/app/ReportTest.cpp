// The program's own reports: the "Internal Error" code line and the text of the
// number, shown as the user sees them when someone may be asked, and logged
// without a box when the administrator set the unattended bit.
#include <gtest/gtest.h>

#include <future>

#include "monitor/KYbpm.h"
#include "tests/launch/LogRows.h"

#include "framework/ResourceModule.h"
#include "tests/app/AppTestSupport.h"
#include "tests/support/ChildProcess.h"

namespace lptest {
namespace {

// Shows the box on this thread while a second thread reads it and presses OK.
MessageBoxInfo ShowAndRead(const std::function<bool()>& show) {
    auto reader = std::async(std::launch::async, [] {
        MessageBoxInfo box;
        const DWORD start = GetTickCount();
        while (GetTickCount() - start < 15000) {
            auto boxes = TopWindowsOf(GetCurrentProcessId(), L"#32770");
            if (!boxes.empty()) {
                box.hwnd = boxes.front();
                box.caption = WindowText(box.hwnd);
                box.text = WindowText(GetDlgItem(box.hwnd, 0xFFFF));
                PressButton(box.hwnd, IDOK);
                break;
            }
            Sleep(50);
        }
        return box;
    });
    EXPECT_TRUE(show());
    return reader.get();
}

class LastResort : public AppTest {
protected:
    void SetUp() override {
        AppTest::SetUp();
        LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"PM_BehaviorCriteria", 0);  // someone to ask
    }
};

TEST_F(LastResort, CodeLineTakesItsFirstFieldFromTheVersionData) {
    Establish(false);
    MessageBoxInfo box = ShowAndRead([&] { return m_app->ReportStartupFailure(27050, L"LP test", MB_OK); });
    EXPECT_EQ(box.caption, L"LP test");
    EXPECT_EQ(box.text, L"Internal Error 1.050\n"
                        L"Failed to load the localized resources dynamic-link library (DLL).");
}

TEST_F(LastResort, WithoutAFirstFieldTheCodeLineShowsZeros) {
    ky::UniqueHModule library(LoadLibraryW((BinDir() + L"lp_noprefix.dll").c_str()));
    ASSERT_TRUE(library);
    fw::SetResourceModule(library.get());
    MessageBoxInfo box = ShowAndRead([&] { return m_app->ReportStartupFailure(27708, nullptr, MB_OK); });
    fw::SetResourceModule(nullptr);
    EXPECT_EQ(box.text, L"Internal Error 000.708\nRejected program monitor log directory specifier as root only.");
}

TEST_F(LastResort, MonitorFailuresCarryTheMonitorsOwnCode) {
    Establish(false);
    m_app->m_nMonitorSelfCode = 4;
    MessageBoxInfo box = ShowAndRead([&] { return m_app->ReportStartupFailure(27701, nullptr, MB_OK); });
    EXPECT_EQ(box.text.substr(0, box.text.find(L'\n')), L"Internal Error 1.701.4");
    EXPECT_EQ(box.caption, L"Launch Panel") << "without the brander: the title of the program's version data";
}

TEST_F(LastResort, BrandedCaptionIsTheProductsTitle) {
    Establish(false);
    ASSERT_TRUE(m_app->EstablishProductBrander());
    MessageBoxInfo box = ShowAndRead([&] { return m_app->ReportStartupFailure(27027, nullptr, MB_OK); });
    EXPECT_EQ(box.caption, L"Launch Panel");
    EXPECT_EQ(box.text, L"Internal Error 1.027\nFailed to initialize application during startup.");
}

TEST_F(LastResort, ProblemReportJoinsBothTextsAndNamesTheItem) {
    Establish(false);
    MessageBoxInfo box = ShowAndRead(
        [&] { return m_app->ReportProblem(27049, 27053, 7, nullptr, MB_OK); });
    EXPECT_EQ(box.text,
              L"Internal Error 1.049.053 [7]\n"
              L"Failed to map the localized resources DLL\ninto this program's address space.\n\n"
              L"Failed to access a file at the path specified for\nthe localized resources DLL.\n"
              L"Index of item at fault is #7.");
}

TEST_F(LastResort, AnsweredReportsAreLoggedToo) {
    Establish(false);
    ShowAndRead([&] { return m_app->ReportProblem(27049, 0, 0xFFFFFFFF, nullptr, MB_OK); });
    auto rows = RowsOf(ReadLogRows(m_logs->path()), 27049);
    EXPECT_EQ(rows.size(), 1u) << "a report shown before the monitor stands reaches the run's log";
}

// The unattended bit of the fixture: nobody is asked, the log has every report.
class UnattendedReport : public AppTest {
protected:
    // The report must return without anybody pressing a button: a box would
    // stand here until the limit and fail the test.
    bool ReportWithoutBox(const std::function<bool()>& report) {
        auto watcher = std::async(std::launch::async, [] {
            for (DWORD start = GetTickCount(); GetTickCount() - start < 5000; Sleep(50)) {
                auto boxes = TopWindowsOf(GetCurrentProcessId(), L"#32770");
                if (!boxes.empty()) {
                    PressButton(boxes.front(), IDOK);
                    return true;
                }
            }
            return false;
        });
        const bool result = report();
        const bool boxShown = watcher.get();
        EXPECT_FALSE(boxShown) << "unattended: no box";
        return result;
    }
};

TEST_F(UnattendedReport, BeforeTheMonitorStandsTheFailureGoesToTheLogOnly) {
    Establish(false);
    EXPECT_TRUE(ReportWithoutBox([&] { return m_app->ReportStartupFailure(27050, nullptr, MB_ICONERROR) || true; }));
    auto rows = RowsOf(ReadLogRows(m_logs->path()), 27050);
    ASSERT_EQ(rows.size(), 1u) << Numbers(ReadLogRows(m_logs->path()));
}

TEST_F(UnattendedReport, ProblemAfterStartIsLoggedWithItsNumbersThroughTheMonitor) {
    Establish(true);
    ReportWithoutBox([&] { return m_app->ReportProblem(27231, 27053, 7, nullptr, MB_ICONERROR) || true; });
    EXPECT_TRUE(m_app->m_pMonitor->isSituationNormal()) << "the report is over";
    auto rows = RowsOf(ReadLogRows(m_logs->path()), 27231);
    ASSERT_EQ(rows.size(), 1u) << Numbers(ReadLogRows(m_logs->path()));
    EXPECT_EQ(rows[0].uints, std::vector<long long>{27053}) << "the second number";
    EXPECT_EQ(rows[0].ints, std::vector<long long>{7}) << "the item at fault";
}

}  // namespace
}  // namespace lptest
