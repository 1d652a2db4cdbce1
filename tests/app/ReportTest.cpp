// The message boxes of last resort: the "Internal Error" code line and the text
// of the number, as the user sees them before the monitor stands.
#include <gtest/gtest.h>

#include <future>

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

class LastResort : public AppTest {};

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
    EXPECT_EQ(box.caption, L"lp.dll") << "without the brander the title is the library's file name";
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

}  // namespace
}  // namespace lptest
