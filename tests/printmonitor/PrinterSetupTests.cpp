// Printers made, changed and removed through KyPrintMon.dll, the result
// numbers that steer the printer sheet, the test page read back from the
// PostScript that the printer wrote, and the driver's preferences dialog.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <thread>

#include "tests/printmonitor/PrintMonitorFixture.h"

namespace pmtest {
namespace {

using kypm::CLIENT_PRINTER_INFO;

TEST_F(PrintMonitorTest, InstallCreatesAPrinterOnATypedPort) {
    InstallDrivers();
    const std::wstring port = printers.Folder() + L"typed.ps";
    auto record = MakeRecord(L"LP Typed", port.c_str(), kGhostDriver, L"Ghostscript");
    ASSERT_EQ(lib.InstallPrinter(&record), kypm::kInstallDone) << GetLastError();
    const auto spooled = lptest::FindSpooledPrinter(L"LP Typed");
    ASSERT_TRUE(spooled.found);
    EXPECT_EQ(spooled.port, port);
    EXPECT_EQ(spooled.driver, kGhostDriver);
    EXPECT_TRUE(Has(lptest::SpooledPorts(), port)) << "a typed file port is added as a local port";
}

TEST_F(PrintMonitorTest, InstallReconfiguresThePrinterOfThatName) {
    InstallDrivers();
    LP_ADD_PRINTER(printers, L"LP Change Me", kGhostDriver);
    const auto before = lptest::SpooledPrinters().size();
    auto record = MakeRecord(L"LP Change Me", L"LPT1:", kCanonDriver, L"Canon");
    ASSERT_EQ(lib.InstallPrinter(&record), kypm::kInstallDone) << GetLastError();
    const auto spooled = lptest::FindSpooledPrinter(L"LP Change Me");
    EXPECT_EQ(spooled.port, L"LPT1:");
    EXPECT_EQ(spooled.driver, kCanonDriver);
    EXPECT_EQ(lptest::SpooledPrinters().size(), before) << "changed, not added";
}

struct Fault {
    const wchar_t* name;
    const wchar_t* port;
    const wchar_t* driver;
    int32_t result;
};

TEST_F(PrintMonitorTest, InstallNamesThePageAtFault) {
    InstallDrivers();
    EXPECT_EQ(lib.InstallPrinter(nullptr), kypm::kInstallNoRecord);
    const Fault faults[] = {
        {L"", L"LPT1:", kGhostDriver, kypm::kInstallBadName},
        {L"   ", L"LPT1:", kGhostDriver, kypm::kInstallBadName},
        {L"LP Back\\Slash", L"LPT1:", kGhostDriver, kypm::kInstallBadName},
        {L"LP Com,ma", L"LPT1:", kGhostDriver, kypm::kInstallBadName},
        {L"LP No Driver", L"LPT1:", L"LP Driver Nobody Installed", kypm::kInstallBadModel},
        {L"LP No Driver", L"LPT1:", L"", kypm::kInstallBadModel},
        {L"LP No Port", L"", kGhostDriver, kypm::kInstallNoPort},
        {L"LP Bad Port", L"NOPORT", kGhostDriver, kypm::kInstallBadPort},
        {L"LP Bad Port", L"C:\\no\\such\\folder\\out.ps", kGhostDriver, kypm::kInstallBadPort},
    };
    const auto before = lptest::SpooledPrinters();
    for (const Fault& fault : faults) {
        auto record = MakeRecord(fault.name, fault.port, fault.driver, L"Ghostscript");
        EXPECT_EQ(lib.InstallPrinter(&record), fault.result)
            << lptest::Narrow(fault.name) << " on " << lptest::Narrow(fault.port);
    }
    EXPECT_EQ(lptest::SpooledPrinters(), before) << "no fault leaves a printer behind";
    std::wstring tooLong(221, L'x');
    auto record = MakeRecord(tooLong.c_str(), L"LPT1:", kGhostDriver, L"Ghostscript");
    EXPECT_EQ(lib.InstallPrinter(&record), kypm::kInstallBadName);
}

TEST_F(PrintMonitorTest, InstallTakesTheDriverFromAnInformationFile) {
    const std::wstring inf = WriteInf();
    auto record = MakeRecord(L"LP From Inf", L"LPT2:", L"LP Inf Model", L"Inf Maker", inf.c_str());
    ASSERT_EQ(lib.InstallPrinter(&record), kypm::kInstallDone) << GetLastError();
    EXPECT_TRUE(Has(lptest::SpooledDrivers(), L"LP Inf Model"));
    EXPECT_EQ(lptest::FindSpooledPrinter(L"LP From Inf").driver, L"LP Inf Model");

    auto broken = MakeRecord(L"LP Broken", L"LPT2:", L"LP Inf Broken Model", L"Inf Maker", inf.c_str());
    EXPECT_EQ(lib.InstallPrinter(&broken), kypm::kInstallBadModel) << "its section names no driver file";
    auto elsewhere = MakeRecord(L"LP Broken", L"LPT2:", L"LP Other Model", L"Inf Maker", inf.c_str());
    EXPECT_EQ(lib.InstallPrinter(&elsewhere), kypm::kInstallBadModel) << "not a model of that maker";
    EXPECT_FALSE(Has(lptest::SpooledDrivers(), L"LP Other Model"));
    EXPECT_FALSE(lptest::FindSpooledPrinter(L"LP Broken").found);
}

TEST_F(PrintMonitorTest, InstallWithTheDefaultFlagMakesTheDefault) {
    InstallDrivers();
    LP_ADD_PRINTER(printers, L"LP Was Default", kGhostDriver);
    LP_SET_DEFAULT_PRINTER(printers, L"LP Was Default");
    auto record = MakeRecord(L"LP New Default", L"LPT1:", kGhostDriver, L"Ghostscript", nullptr, 1);
    ASSERT_EQ(lib.InstallPrinter(&record), kypm::kInstallDone);
    EXPECT_EQ(lptest::DefaultPrinter(), L"LP New Default");
    auto plain = MakeRecord(L"LP Not Default", L"LPT1:", kGhostDriver, L"Ghostscript", nullptr, 0);
    ASSERT_EQ(lib.InstallPrinter(&plain), kypm::kInstallDone);
    EXPECT_EQ(lptest::DefaultPrinter(), L"LP New Default");
}

TEST_F(PrintMonitorTest, DeleteRemovesThePrinter) {
    InstallDrivers();
    LP_ADD_PRINTER(printers, L"LP Doomed", kGhostDriver);
    EXPECT_EQ(lib.PRINT_DeletePrinter(L"LP Doomed"), kypm::kDone);
    EXPECT_FALSE(lptest::FindSpooledPrinter(L"LP Doomed").found);
    EXPECT_EQ(lib.PRINT_DeletePrinter(L"LP Doomed"), kypm::kNoSuchPrinter);
    EXPECT_EQ(lib.PRINT_DeletePrinter(L""), kypm::kBadArgument);
    EXPECT_EQ(lib.PRINT_DeletePrinter(nullptr), kypm::kBadArgument);
}

TEST_F(PrintMonitorTest, TestPageIsPrintedWithPrinterDriverPortAndTime) {
    InstallDrivers();
    const std::wstring name = L"LP Page (1)";
    LP_ADD_PRINTER(printers, name, kGhostDriver);
    SYSTEMTIME now;
    GetLocalTime(&now);
    char today[16];
    snprintf(today, sizeof today, "%04u-%02u-%02u", now.wYear, now.wMonth, now.wDay);

    ASSERT_EQ(lib.PrintTestPage(name.c_str()), kypm::kDone) << GetLastError();
    const std::string ps = lptest::WaitForPostScript(printers.OutputFile(name), 10000);
    ASSERT_NE(ps.find("%%EOF"), std::string::npos) << "no complete PostScript file";
    EXPECT_NE(ps.find("%%Title: Test Page - LP Page (1)"), std::string::npos);
    const std::string text = lptest::PostScriptText(ps);
    EXPECT_NE(text.find("Printer Test Page"), std::string::npos) << text;
    EXPECT_NE(text.find("Printer: LP Page (1)"), std::string::npos) << text;
    EXPECT_NE(text.find("Driver: LP Test Ghostscript PDF"), std::string::npos) << text;
    EXPECT_NE(text.find("Port: " + lptest::Narrow(printers.OutputFile(name))), std::string::npos) << text;
    EXPECT_NE(text.find(std::string("Printed: ") + today), std::string::npos) << text;
    EXPECT_EQ(lib.PrintTestPage(L"LP No Such Printer"), kypm::kNoSuchPrinter);
}

// The driver's dialog runs modally on the test's thread; a helper thread finds
// it among this process's windows, sets the orientation and ends it.
struct DialogDriver {
    bool clickLandscape = false;
    int button = IDOK;
    std::atomic<bool> found{false};

    static HWND FindDialog() {
        struct Search { HWND dialog = nullptr; } search;
        EnumWindows([](HWND w, LPARAM p) -> BOOL {
            DWORD pid = 0;
            GetWindowThreadProcessId(w, &pid);
            wchar_t cls[32] = {};
            GetClassNameW(w, cls, 32);
            if (pid != GetCurrentProcessId() || !IsWindowVisible(w) || wcscmp(cls, L"#32770") != 0) return TRUE;
            reinterpret_cast<Search*>(p)->dialog = w;
            return FALSE;
        }, reinterpret_cast<LPARAM>(&search));
        return search.dialog;
    }
    static HWND FindChild(HWND dialog, const wchar_t* text) {
        struct Search { const wchar_t* text; HWND child = nullptr; } search{text};
        EnumChildWindows(dialog, [](HWND w, LPARAM p) -> BOOL {
            auto* s = reinterpret_cast<Search*>(p);
            wchar_t caption[64] = {};
            GetWindowTextW(w, caption, 64);
            if (wcscmp(caption, s->text) != 0) return TRUE;
            s->child = w;
            return FALSE;
        }, reinterpret_cast<LPARAM>(&search));
        return search.child;
    }
    void Run() {
        for (int i = 0; i < 150; ++i) {
            Sleep(100);
            HWND dialog = FindDialog();
            if (!dialog) continue;
            found = true;
            Sleep(200);
            if (clickLandscape) SendMessageW(FindChild(dialog, L"&Landscape"), BM_CLICK, 0, 0);
            PostMessageW(dialog, WM_COMMAND, button, 0);
            return;
        }
    }
};

short StoredOrientation(const std::wstring& name) {
    ky::UniquePrinter printer;
    if (!OpenPrinterW(const_cast<wchar_t*>(name.c_str()), printer.put(), nullptr)) return -1;
    DWORD needed = 0;
    GetPrinterW(printer.get(), 9, nullptr, 0, &needed);
    std::vector<BYTE> buffer(needed + 16);
    if (!GetPrinterW(printer.get(), 9, buffer.data(), static_cast<DWORD>(buffer.size()), &needed)) return -2;
    const DEVMODEW* mode = reinterpret_cast<PRINTER_INFO_9W*>(buffer.data())->pDevMode;
    return mode ? mode->dmOrientation : 0;
}

int32_t ShowPreferences(PrintMonitorLibrary& lib, const std::wstring& name, bool landscape, int button,
                        bool& dialogSeen) {
    HWND owner = CreateWindowExW(0, L"STATIC", L"owner", WS_OVERLAPPED, 0, 0, 100, 100, nullptr, nullptr,
                                 GetModuleHandleW(nullptr), nullptr);
    DialogDriver driver;
    driver.clickLandscape = landscape;
    driver.button = button;
    std::thread helper([&] { driver.Run(); });
    const int32_t result = lib.DisplayPrinterPreferences(name.c_str(), owner);
    helper.join();
    DestroyWindow(owner);
    dialogSeen = driver.found;
    return result;
}

TEST_F(PrintMonitorTest, PreferencesAreTheDriversDialogAndAreKept) {
    InstallDrivers();
    const std::wstring name = L"LP Preferences";
    LP_ADD_PRINTER(printers, name, kGhostDriver);
    bool seen = false;
    EXPECT_EQ(ShowPreferences(lib, name, true, IDCANCEL, seen), kypm::kDone) << "cancel is no failure";
    ASSERT_TRUE(seen) << "the driver's dialog did not come up";
    EXPECT_NE(StoredOrientation(name), DMORIENT_LANDSCAPE) << "cancelled settings are not kept";

    EXPECT_EQ(ShowPreferences(lib, name, true, IDOK, seen), kypm::kDone) << GetLastError();
    EXPECT_TRUE(seen);
    EXPECT_EQ(StoredOrientation(name), DMORIENT_LANDSCAPE) << "the confirmed settings are this user's now";
    EXPECT_EQ(lib.DisplayPrinterPreferences(L"LP No Such Printer", nullptr), kypm::kNoSuchPrinter);
    EXPECT_EQ(lib.DisplayPrinterPreferences(L"", nullptr), kypm::kBadArgument);
}

}  // namespace
}  // namespace pmtest
