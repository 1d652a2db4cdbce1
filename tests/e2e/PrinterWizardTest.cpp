// The add-printer wizard end to end, in its host over the shipped KyPrintMon.dll
// and lp.dll and Wine's spooler: worked page by page through the driver, with
// the library's refusals sending the wizard back to the page at fault.
#include <gtest/gtest.h>

#include <map>

#include "printmonitor/PrintMonitorRecords.h"
#include "tests/support/TestPrinters.h"
#include "tests/support/TestSupport.h"
#include "tools/lpdriver/client/DriverClient.h"

namespace lptest {
namespace {

constexpr const wchar_t* kDriverName = L"LP Wizard Ghostscript PDF";
constexpr const wchar_t* kLimit = L"15000";
constexpr const wchar_t* kBack = L"12323";
constexpr const wchar_t* kNext = L"12324";
constexpr const wchar_t* kFinish = L"12325";
constexpr int kNameEdit = 1017, kMakeList = 1012, kModelList = 1014, kPortEdit = 1025;
constexpr int kTestNo = 1027, kFinishName = 1033, kFinishTest = 1036, kWelcomeTitle = 1037;

using Controls = std::map<int, std::map<std::wstring, std::wstring>>;

class AddPrinterWizard : public ::testing::Test {
protected:
    void SetUp() override {
        DeleteTree(HKEY_CURRENT_USER, kypm::kClientKey);
        const std::wstring ppd = FindGhostscriptPpd(L"ghostpdf.ppd");
        ASSERT_FALSE(ppd.empty()) << "ghostscript's PPD files are missing (Debian package ghostscript)";
        LP_INSTALL_DRIVER(m_printers, kDriverName, ppd);
        auto started = m_driver.Run({L"start", BinDir() + L"PrinterSheetHost.exe"});
        ASSERT_EQ(started.exitCode, 0u) << Narrow(started.Text());
        m_pid = started.Value(L"pid");
    }
    void TearDown() override {
        if (!m_pid.empty()) m_driver.Run({L"wait", m_pid, L"2000", L"--kill-on-timeout"});
        DeleteSpooledPrinter(L"LP Wizard Printer");
    }
    Controls Read() {
        Controls controls;
        auto dialog = m_driver.Run({L"dialog", m_pid, kLimit});
        for (auto& record : dialog.Records(L"control")) {
            const int id = std::stoi(record[L"control"]);
            if (!controls.count(id) || record[L"visible"] == L"1") controls[id] = record;
        }
        return controls;
    }
    // Waits until the page holding that control is the one in front.
    Controls AwaitPage(int control) {
        Controls controls;
        for (int look = 0; look < 100; ++look) {
            controls = Read();
            if (controls.count(control) && controls[control][L"visible"] == L"1") return controls;
            Sleep(100);
        }
        ADD_FAILURE() << "the page of control " << control << " never came to the front";
        return controls;
    }
    void Press(const std::wstring& button) {
        auto pressed = m_driver.Run({L"press", m_pid, button, L"--no-wait", kLimit});
        ASSERT_EQ(pressed.exitCode, 0u) << Narrow(pressed.Text());
    }
    void Type(int control, const std::wstring& text) {
        auto set = m_driver.Run({L"set-text", m_pid, std::to_wstring(control), text, kLimit});
        ASSERT_EQ(set.exitCode, 0u) << Narrow(set.Text());
    }
    void Choose(int list, const std::wstring& item) {
        auto chosen = m_driver.Run({L"listbox", m_pid, std::to_wstring(list), item, kLimit});
        ASSERT_EQ(chosen.exitCode, 0u) << Narrow(chosen.Text());
    }
    // The question of a port that is not in the list, answered Yes.
    void ConfirmNewPort() {
        auto question = m_driver.Run({L"msgbox", m_pid, kLimit});
        ASSERT_NE(question.Value(L"text").find(L"not in the list"), std::wstring::npos) << Narrow(question.Text());
        auto pressed = m_driver.Run({L"press", m_pid, std::to_wstring(IDYES), kLimit});
        ASSERT_EQ(pressed.exitCode, 0u) << Narrow(pressed.Text());
    }
    // With LP_SCREENSHOT_DIR set, the sheet as it shows now goes there as <name>.bmp.
    void Shot(const std::wstring& name) {
        wchar_t folder[MAX_PATH] = {};
        if (!GetEnvironmentVariableW(L"LP_SCREENSHOT_DIR", folder, MAX_PATH)) return;
        const std::wstring sheet = m_driver.Run({L"dialog", m_pid, kLimit}).Value(L"hwnd");
        m_driver.Run({L"screenshot", sheet, std::wstring(folder) + L"\\" + name + L".bmp"});
    }
    long long AwaitExit() {
        auto ended = m_driver.Run({L"wait", m_pid, L"30000"});
        if (ended.exitCode != 0) return -1;
        m_pid.clear();
        return std::stoll(ended.Value(L"exit"));
    }

    TestPrinters m_printers;
    lpdriver::DriverClient m_driver;
    std::wstring m_pid;
};

TEST_F(AddPrinterWizard, AddsAPrinterFromFirstPageToLastAndGoesBackToThePageAtFault) {
    AwaitPage(kWelcomeTitle);
    Shot(L"wizard-1-welcome");
    Press(kNext);
    AwaitPage(kNameEdit);
    // A name the spooler cannot take; the library's answer at Finish brings the name page back.
    Type(kNameEdit, L"LP Wizard\\Printer");
    Press(kNext);
    AwaitPage(kMakeList);
    Choose(kMakeList, L"Ghostscript");
    Choose(kModelList, kDriverName);
    Shot(L"wizard-3-driver");
    Press(kNext);
    AwaitPage(kPortEdit);
    Shot(L"wizard-4-port");
    Type(kPortEdit, L"nowhere at all");
    Press(kNext);
    ConfirmNewPort();
    AwaitPage(kTestNo);
    Shot(L"wizard-5-test-page");
    m_driver.Run({L"press", m_pid, std::to_wstring(kTestNo), L"--click", L"--no-wait", kLimit});
    Press(kNext);
    auto finish = AwaitPage(kFinishName);
    Shot(L"wizard-6-finish");
    EXPECT_EQ(finish[kFinishName][L"text"], L"LP Wizard\\Printer");
    EXPECT_EQ(finish[kFinishTest][L"text"], L"No");
    Press(kFinish);
    AwaitPage(kNameEdit);
    Shot(L"wizard-2-name-after-refusal");

    // The name mended, Finish now stops at the port.
    Type(kNameEdit, L"LP Wizard Printer");
    for (int page : {kMakeList, kPortEdit, kTestNo, kFinishName}) {
        Press(kNext);
        AwaitPage(page);
    }
    Press(kFinish);
    AwaitPage(kPortEdit);
    const std::wstring port = m_printers.Folder() + L"wizard.ps";
    Type(kPortEdit, port);
    Press(kNext);
    ConfirmNewPort();
    AwaitPage(kTestNo);
    Press(kNext);
    AwaitPage(kFinishName);
    Press(kFinish);

    EXPECT_EQ(AwaitExit(), 12325);
    const SpooledPrinter added = FindSpooledPrinter(L"LP Wizard Printer");
    EXPECT_TRUE(added.found);
    EXPECT_EQ(added.driver, kDriverName);
    EXPECT_EQ(added.port, port);
}

TEST_F(AddPrinterWizard, BackShowsNoMessageAndCancelAddsNothing) {
    AwaitPage(kWelcomeTitle);
    Press(kNext);
    AwaitPage(kNameEdit);
    Press(kNext);
    // An empty name is refused with the wizard's message.
    auto box = m_driver.Run({L"msgbox", m_pid, kLimit});
    EXPECT_NE(box.Value(L"text").find(L"client printer name"), std::wstring::npos) << Narrow(box.Text());
    m_driver.Run({L"press", m_pid, std::to_wstring(IDOK), kLimit});
    AwaitPage(kNameEdit);
    // Back from an empty name goes without a word.
    Press(kBack);
    AwaitPage(kWelcomeTitle);
    Press(L"2");
    EXPECT_EQ(AwaitExit(), 2);
    EXPECT_FALSE(FindSpooledPrinter(L"LP Wizard Printer").found);
}

}  // namespace
}  // namespace lptest
