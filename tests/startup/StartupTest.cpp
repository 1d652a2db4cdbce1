// LaunchPanel.exe observed from outside: its boxes, its windows, its log.
#include <gtest/gtest.h>

#include "app/KYjlpApp.h"
#include "foundation/UniqueHandle.h"
#include "tests/launch/LogRows.h"
#include "tests/support/ChildProcess.h"
#include "tools/lpdriver/client/DriverClient.h"
#include "tests/support/TestSupport.h"

namespace lptest {
namespace {

constexpr DWORD kLimit = 30000;
const wchar_t kFrameClass[] = L"LaunchPanelFrame";

class Startup : public RegistryTest {
protected:
    void SetUp() override {
        RegistryTest::SetUp();
        // Unattended: a failure after start-up goes to the log, never to a box.
        LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"PM_BehaviorCriteria", 1);
    }
    // A copy of the program (and, when asked, its library) in a folder of its own.
    std::wstring Install(const std::wstring& folder, bool withLibrary) {
        CreateDirectoryW(folder.c_str(), nullptr);
        EXPECT_TRUE(CopyFileTo(BinDir() + L"LaunchPanel.exe", folder + L"LaunchPanel.exe"));
        if (withLibrary) {
            EXPECT_TRUE(CopyFileTo(BinDir() + L"lp.dll", folder + L"lp.dll"));
        }
        return folder + L"LaunchPanel.exe";
    }
    // Someone sits at the screen: failures are shown in a box.
    void Attended() { LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"PM_BehaviorCriteria", 0); }
    TempDir m_dir;
};

TEST_F(Startup, MissingLibraryIsToldByTheProgramsOwnText) {
    Attended();
    std::wstring exe = Install(m_dir.path() + L"app\\", false);
    ChildProcess program(exe, L"", m_dir.path() + L"app\\");
    ASSERT_TRUE(program.started());
    MessageBoxInfo box;
    ASSERT_TRUE(program.WaitForMessageBox(kLimit, box));
    EXPECT_EQ(box.text, L"Internal Error 1.050\n"
                        L"Failed to load the localized resources dynamic-link library (DLL).");
    EXPECT_EQ(box.caption, L"Launch Panel") << "the title of the program's own version data";
    PressButton(box.hwnd, IDOK);
    EXPECT_EQ(program.Wait(kLimit), DWORD(KYjlpApp::kExitFailed));
    EXPECT_TRUE(TopWindowsOf(program.pid(), kFrameClass).empty());
}

TEST_F(Startup, StandaloneRunLogsBesideThePrograms) {
    std::wstring exe = Install(m_dir.path() + L"app\\", true);
    ChildProcess program(exe, L"");
    ASSERT_FALSE(program.WaitForWindows(kLimit, kFrameClass).empty());
    std::wstring stored;
    ASSERT_TRUE(GetString(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", stored));
    EXPECT_EQ(stored, m_dir.path() + L"Log\\");
    EXPECT_FALSE(FirstMatch(m_dir.path() + L"Log\\*_LaunchPanel_*.html").empty()) << "the run's log file";
    program.CloseWindows();
    EXPECT_EQ(program.Wait(kLimit), 0u);
    DWORD shown = 0;
    EXPECT_TRUE(GetDword(HKEY_CURRENT_USER, std::wstring(kPreferencesKey) + L"\\Settings\\Standard",
                         L"WinPlaceShowState", shown))
        << "closing the window saves the user's settings";
}

TEST_F(Startup, ProgramInARootFolderHasNoPlaceForItsLog) {
    wchar_t windows[MAX_PATH];
    GetWindowsDirectoryW(windows, MAX_PATH);
    std::wstring root = std::wstring(windows).substr(0, 3);  // "C:\"
    std::wstring exe = Install(root, true);
    Attended();
    {
        ChildProcess program(exe, L"", m_dir.path());
        MessageBoxInfo box;
        ASSERT_TRUE(program.WaitForMessageBox(kLimit, box));
        EXPECT_EQ(box.text, L"Internal Error 1.708\n"
                            L"Rejected program monitor log directory specifier as root only.");
        PressButton(box.hwnd, IDOK);
        EXPECT_EQ(program.Wait(kLimit), DWORD(KYjlpApp::kExitFailed));
    }
    DeleteFileW(exe.c_str());
    DeleteFileW((root + L"lp.dll").c_str());
}

TEST_F(Startup, SecondCopyRunsBesideTheFirst) {
    TempDir logs;
    LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", logs.path(), REG_EXPAND_SZ);
    ChildProcess first(BinDir() + L"LaunchPanel.exe", L"");
    ASSERT_FALSE(first.WaitForWindows(kLimit, kFrameClass).empty());
    ChildProcess second(BinDir() + L"LaunchPanel.exe", L"");
    auto windows = second.WaitForWindows(kLimit, kFrameClass);
    ASSERT_EQ(windows.size(), 1u);
    EXPECT_EQ(WindowText(windows.front()), L"Launch Panel");
    first.CloseWindows();
    second.CloseWindows();
    EXPECT_EQ(first.Wait(kLimit), 0u);
    EXPECT_EQ(second.Wait(kLimit), 0u);
}

TEST_F(Startup, UnreadableCatalogueEndsTheStartWithItsSituationInTheLog) {
    TempDir logs;
    LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", logs.path(), REG_EXPAND_SZ);
    LP_SET_STRING(HKEY_LOCAL_MACHINE, std::wstring(kCatalogueKey) + L"\\A First", L"ExePath", L"C:\\a.exe");
    LP_SET_STRING(HKEY_LOCAL_MACHINE, std::wstring(kCatalogueKey) + L"\\B Second", L"IconPath", L"C:\\b.ico");
    ChildProcess program(BinDir() + L"LaunchPanel.exe", L"");
    EXPECT_EQ(program.Wait(kLimit), DWORD(KYjlpApp::kExitFailed));
    EXPECT_TRUE(TopWindowsOf(program.pid(), kFrameClass, false).empty()) << "no window without a catalogue";
    auto rows = RowsOf(ReadLogRows(logs.path()), 27259);
    ASSERT_EQ(rows.size(), 1u) << "the entry without ExePath fails the read";
    EXPECT_EQ(rows[0].uints, std::vector<long long>{ERROR_FILE_NOT_FOUND}) << "the registry's error";
    EXPECT_EQ(rows[0].ints, std::vector<long long>{2}) << "the number of the entry at fault";
}

// The next two are observed through the outside driver, as a tester would.
TEST_F(Startup, UnknownOptionEndsTheRunWithItsNumber) {
    TempDir logs;
    LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", logs.path(), REG_EXPAND_SZ);
    Attended();
    lpdriver::DriverClient driver;
    auto started = driver.Run({L"start", BinDir() + L"LaunchPanel.exe", L"/frobnicate"});
    ASSERT_EQ(started.exitCode, 0u) << Narrow(started.Text());
    const std::wstring pid = started.Value(L"pid");
    auto box = driver.Run({L"msgbox", pid, L"30000"});
    ASSERT_EQ(box.exitCode, 0u) << Narrow(box.Text());
    EXPECT_EQ(box.Value(L"text"),
              L"Internal Error 1.148\nThe command line has an option that Launch Panel does not know.");
    EXPECT_EQ(box.Value(L"caption"), L"Launch Panel");
    EXPECT_EQ(driver.Run({L"press", pid, L"OK", L"30000"}).exitCode, 0u);
    auto ended = driver.Run({L"wait", pid, L"30000"});
    EXPECT_EQ(ended.Value(L"exit"), std::to_wstring(KYjlpApp::kExitBadCommandLine));
    EXPECT_EQ(RowsOf(ReadLogRows(logs.path()), 27148).size(), 1u) << "answered, and logged too";
}

TEST_F(Startup, LaunchUseShowsNoWindowEvenWithTheClassicOption) {
    TempDir logs;
    LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", logs.path(), REG_EXPAND_SZ);
    const std::wstring record = logs.path() + L"target.txt";
    // The launched program stays short of coming up until the test lets it: until
    // then the panel waits for it, with everything it would show already made.
    const std::wstring eventName = L"LaunchPanelTestIdle" + std::to_wstring(GetCurrentProcessId());
    ky::UniqueHandle idle(CreateEventW(nullptr, TRUE, FALSE, eventName.c_str()));
    ASSERT_TRUE(idle);
    SetEnvironmentVariableW(L"LP_TARGET_RECORD", record.c_str());
    SetEnvironmentVariableW(L"LP_TARGET_IDLE_EVENT", eventName.c_str());
    SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", L"500");
    lpdriver::DriverClient driver;
    auto started = driver.Run({L"start", BinDir() + L"LaunchPanel.exe", L"/classic", L"/launch",
                               BinDir() + L"LaunchTarget.exe"});
    SetEnvironmentVariableW(L"LP_TARGET_RECORD", nullptr);
    SetEnvironmentVariableW(L"LP_TARGET_IDLE_EVENT", nullptr);
    SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", nullptr);
    ASSERT_EQ(started.exitCode, 0u) << Narrow(started.Text());
    const std::wstring pid = started.Value(L"pid");
    for (int look = 0; look < 300 && !FileExists(record); ++look) Sleep(100);
    ASSERT_TRUE(FileExists(record)) << "the program was launched";
    auto windows = driver.Run({L"windows", pid, L"--visible"});
    SetEvent(idle.get());
    ASSERT_EQ(windows.exitCode, 0u) << "the panel waits for the program: " << Narrow(windows.Text());
    EXPECT_EQ(windows.Value(L"count"), L"0") << Narrow(windows.Text());
    EXPECT_EQ(driver.Run({L"wait", pid, L"30000"}).exitCode, 0u) << "the panel ends once the program is up";
}

}  // namespace
}  // namespace lptest
