// The user-mode stand-ins of the session, found and called the way the panel
// finds and calls them, and the real panel started in the session they make.
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

#include "foundation/UniqueHandle.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SessionStandIns.h"
#include "tests/support/TestSupport.h"

namespace lptest {
namespace {

constexpr DWORD kLimit = 30000;
const wchar_t kFrameClass[] = L"LaunchPanelFrame";

using GetClientVersionFn = int (*)(wchar_t*);
using IsSharedAccountSessionFn = int (*)(uint32_t*, int);
using DisconnectSessionFn = int (*)();
using GetSessionTimeoutFn = int (*)(int32_t*);

template <typename Fn>
Fn Export(const ky::UniqueHModule& library, const char* name) {
    return reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(library.get(), name)));
}

std::wstring ModulePath(HMODULE module) {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(module, path, MAX_PATH);
    return path;
}

// A variable of this process, the way the panel's children inherit it; the
// earlier value comes back at the end.
class ScopedVariable {
public:
    ScopedVariable(const wchar_t* name, const wchar_t* value) : m_name(name) {
        wchar_t previous[1024] = {};
        DWORD length = GetEnvironmentVariableW(name, previous, ARRAYSIZE(previous));
        if (length > 0 && length < ARRAYSIZE(previous)) m_previous = previous;
        SetEnvironmentVariableW(name, value);
    }
    ~ScopedVariable() { SetEnvironmentVariableW(m_name, m_previous ? m_previous->c_str() : nullptr); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    const wchar_t* m_name;
    std::optional<std::wstring> m_previous;
};

TEST(TesselStandIn, LoadedByNameFromTheSearchPathAnswersAndCounts) {
    TesselAnswers tessel;
    StandInsOnPath path;
    ASSERT_EQ(GetModuleHandleW(L"Tessel.dll"), nullptr);
    ky::UniqueHModule library(LoadLibraryW(L"Tessel.dll"));
    ASSERT_TRUE(library) << "error " << GetLastError();
    EXPECT_EQ(ModulePath(library.get()), StandInsDir() + L"Tessel.dll");

    auto version = Export<GetClientVersionFn>(library, "tessGetClientVersion");
    auto shared = Export<IsSharedAccountSessionFn>(library, "tessIsSharedAccountSession");
    auto disconnect = Export<DisconnectSessionFn>(library, "tessDisconnectSession");
    auto timeout = Export<GetSessionTimeoutFn>(library, "tessGetSessionTimeout");
    ASSERT_TRUE(version && shared && disconnect && timeout);

    wchar_t text[2048] = {};
    EXPECT_NE(version(text), 0);
    EXPECT_STREQ(text, L"7,2,0,118") << "the default";
    ASSERT_TRUE(tessel.SetClientVersion(L"8,1,0,5"));
    EXPECT_NE(version(text), 0);
    EXPECT_STREQ(text, L"8,1,0,5");

    uint32_t account = 99;
    EXPECT_EQ(shared(&account, 1), 0);
    EXPECT_EQ(account, 0u) << "not a shared account by default";
    EXPECT_EQ(tessel.LastRefresh(), std::optional<DWORD>(1));
    ASSERT_TRUE(tessel.SetSharedAccount(1));
    EXPECT_EQ(shared(&account, 0), 0);
    EXPECT_EQ(account, 1u);
    EXPECT_EQ(tessel.LastRefresh(), std::optional<DWORD>(0));

    int32_t seconds = 7;
    EXPECT_NE(timeout(&seconds), 0);
    EXPECT_EQ(seconds, 0) << "no time-out by default";
    ASSERT_TRUE(tessel.SetTimeout(-1));
    EXPECT_NE(timeout(&seconds), 0);
    EXPECT_EQ(seconds, -1);

    EXPECT_EQ(disconnect(), 0);
    ASSERT_TRUE(tessel.SetDisconnectResult(1326));
    EXPECT_EQ(disconnect(), 1326);

    EXPECT_EQ(tessel.Calls(L"tessGetClientVersion"), 2u);
    EXPECT_EQ(tessel.Calls(L"tessIsSharedAccountSession"), 2u);
    EXPECT_EQ(tessel.Calls(L"tessGetSessionTimeout"), 2u);
    EXPECT_EQ(tessel.Calls(L"tessDisconnectSession"), 2u);
}

TEST(TesselStandIn, FailuresAreAnsweredAsSet) {
    TesselAnswers tessel;
    StandInsOnPath path;
    ky::UniqueHModule library(LoadLibraryW(L"Tessel.dll"));
    ASSERT_TRUE(library);
    ASSERT_TRUE(tessel.SetClientVersion(L"9,9", 0));
    ASSERT_TRUE(tessel.SetSharedAccount(1, 5));
    ASSERT_TRUE(tessel.SetTimeout(600, 0));
    wchar_t text[2048] = L"before";
    EXPECT_EQ(Export<GetClientVersionFn>(library, "tessGetClientVersion")(text), 0);
    EXPECT_STREQ(text, L"before") << "a failed call writes nothing";
    uint32_t account = 7;
    EXPECT_EQ(Export<IsSharedAccountSessionFn>(library, "tessIsSharedAccountSession")(&account, 1), 5);
    EXPECT_EQ(account, 7u);
    int32_t seconds = 7;
    EXPECT_EQ(Export<GetSessionTimeoutFn>(library, "tessGetSessionTimeout")(&seconds), 0);
    EXPECT_EQ(seconds, 7);
}

TEST(TesselStandIn, MissingWithoutTheSearchPath) {
    ky::UniqueHModule library(LoadLibraryW(L"Tessel.dll"));
    EXPECT_FALSE(library) << "found at " << Narrow(ModulePath(library.get()));
    EXPECT_EQ(GetLastError(), DWORD(ERROR_MOD_NOT_FOUND));
}

// Started as the panel starts it: no program name, the bare name on the command line.
DWORD StartPrinterPanel(WORD show, DWORD& exitCode) {
    std::wstring line = L"PrinterPanel.exe";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = show;
    PROCESS_INFORMATION info{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &info))
        return GetLastError();
    ky::UniqueHandle process(info.hProcess);
    ky::UniqueHandle thread(info.hThread);
    exitCode = STILL_ACTIVE;
    if (WaitForSingleObject(process.get(), kLimit) == WAIT_OBJECT_0)
        GetExitCodeProcess(process.get(), &exitCode);
    return 0;
}

TEST(PrinterPanelStandIn, FoundOnTheSearchPathAndRecorded) {
    PrinterPanelRecord record;
    StandInsOnPath path;
    ScopedVariable client(L"CLIENTCOMPUTERNAME", L"CLIENT-PC");
    DWORD exitCode = 0;
    ASSERT_EQ(StartPrinterPanel(SW_SHOWMINNOACTIVE, exitCode), 0u);
    EXPECT_EQ(exitCode, 0u);
    EXPECT_EQ(record.Starts(), 1u);
    EXPECT_EQ(record.CommandLine(), L"PrinterPanel.exe");
    EXPECT_EQ(record.ShowCommand(), std::optional<DWORD>(SW_SHOWMINNOACTIVE));
    EXPECT_EQ(record.Variable(L"CLIENTCOMPUTERNAME"), std::optional<std::wstring>(L"CLIENT-PC"));
    EXPECT_EQ(record.Variable(L"CLIENTCOMPUTERIPADDRESS"), std::nullopt);
    ASSERT_EQ(StartPrinterPanel(SW_SHOWNORMAL, exitCode), 0u);
    EXPECT_TRUE(record.WaitForStarts(2, 0));
    EXPECT_EQ(record.ShowCommand(), std::optional<DWORD>(SW_SHOWNORMAL));
}

TEST(PrinterPanelStandIn, MissingWithoutTheSearchPath) {
    PrinterPanelRecord record;
    DWORD exitCode = 0;
    EXPECT_EQ(StartPrinterPanel(SW_SHOWNORMAL, exitCode), DWORD(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(record.Starts(), 0u);
}

TEST(LogonManagerEvents, ShowWhetherTheyWereSetAndGoWithTheHelper) {
    {
        LogonManagerEvents events;
        ASSERT_TRUE(events.created());
        EXPECT_FALSE(events.ExchangeSet());
        ky::UniqueHandle opened(
            OpenEventW(EVENT_MODIFY_STATE, FALSE, LogonManagerEvents::kExchange));
        ASSERT_TRUE(opened) << "opened as the panel opens it";
        ASSERT_TRUE(SetEvent(opened.get()));
        EXPECT_TRUE(events.ExchangeSet());
        EXPECT_TRUE(events.ExchangeSet()) << "still set: nobody resets it by looking";
        EXPECT_FALSE(events.ShutdownSet());
        events.Reset();
        EXPECT_FALSE(events.ExchangeSet());
    }
    ky::UniqueHandle gone(OpenEventW(EVENT_MODIFY_STATE, FALSE, LogonManagerEvents::kExchange));
    EXPECT_FALSE(gone);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_FILE_NOT_FOUND));
}

TEST(LogonManagerEvents, OneLeftOutIsAbsent) {
    LogonManagerEvents events(true, false);
    ASSERT_TRUE(events.created());
    ky::UniqueHandle shutdown(OpenEventW(EVENT_MODIFY_STATE, FALSE, LogonManagerEvents::kShutdown));
    EXPECT_FALSE(shutdown);
    EXPECT_FALSE(events.ShutdownSet(0));
}

// The real panel in shell use, in the session the stand-ins make and out of it.
class PanelInSession : public RegistryTest {
protected:
    void SetUp() override {
        RegistryTest::SetUp();
        LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"PM_BehaviorCriteria", 1);
        LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", m_logs.path(), REG_EXPAND_SZ);
        ASSERT_TRUE(m_device.Install());
    }
    void TearDown() override {
        EXPECT_TRUE(m_device.Remove());
        RegistryTest::TearDown();
    }
    // Starts the panel, waits for its frame, closes it; the frame's coming tells
    // that the start-up, session test and signal included, is over.
    void RunPanel() {
        ChildProcess panel(BinDir() + L"LaunchPanel.exe", L"");
        ASSERT_TRUE(panel.started());
        ASSERT_FALSE(panel.WaitForWindows(kLimit, kFrameClass).empty());
        panel.CloseWindows();
        EXPECT_EQ(panel.Wait(kLimit), 0u);
    }

    TempDir m_logs;
    SessionDevice m_device;
    TesselAnswers m_tessel;
    LogonManagerEvents m_events;
};

TEST_F(PanelInSession, FindsTheLibraryOnTheSearchPathAndSignals) {
    StandInsOnPath path;
    RunPanel();
    EXPECT_TRUE(m_events.ExchangeSet()) << "in session: the logon manager is told";
    EXPECT_EQ(m_device.SessionRequests(), 1u);
    EXPECT_TRUE(m_device.WaitForCloses(1, 5000));
    EXPECT_EQ(m_device.Opens(), 1u);
    EXPECT_EQ(m_device.Closes(), 1u) << "the device is closed again after the test";
}

TEST_F(PanelInSession, WithoutTheLibraryRunsStandalone) {
    RunPanel();
    EXPECT_EQ(m_device.SessionRequests(), 1u);
    EXPECT_FALSE(m_events.ExchangeSet()) << "standalone: nobody to tell";
}

TEST_F(PanelInSession, RefusedSessionCodeRunsStandalone) {
    StandInsOnPath path;
    ASSERT_TRUE(m_device.SetInSession(false));
    RunPanel();
    EXPECT_EQ(m_device.SessionRequests(), 1u);
    EXPECT_FALSE(m_events.ExchangeSet());
}

}  // namespace
}  // namespace lptest
