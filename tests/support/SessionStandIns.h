// The server session, as tests make it: the session device (a kernel driver run
// as a service of the prefix), the session library Tessel.dll, the logon
// manager's events and the printer panel, each a real stand-in built with the
// tests (see tests/session/README.md). Every helper undoes what it did when it
// goes, so that a test after it runs outside a session again.
//
// Methods that can fail return an AssertionResult for the caller to check, so
// that a failure points at the test's line:
//   ASSERT_TRUE(device.Install());
//   ASSERT_TRUE(device.SetClient(L"CLIENT-PC", L"10.0.0.7"));
#pragma once
#include <windows.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

#include "foundation/UniqueHandle.h"

namespace lptest {

// Under HKEY_CURRENT_USER: where the user-mode stand-ins read answers and record calls.
inline constexpr const wchar_t* kStandInsKey = L"Software\\LaunchPanelTestStandIns";
inline constexpr const wchar_t* kTesselKey = L"Software\\LaunchPanelTestStandIns\\Tessel";
inline constexpr const wchar_t* kPrinterPanelKey = L"Software\\LaunchPanelTestStandIns\\PrinterPanel";

// The folder of the stand-ins (SorelStandIn.sys, Tessel.dll, PrinterPanel.exe),
// with a trailing backslash: <build>\tests\standins\, beside <build>\bin\, which
// holds the shipped program and so must never hold a Tessel.dll of its own.
std::wstring StandInsDir();

// Puts the stand-ins' folder at the head of this process's PATH while it lives.
// Programs started afterwards inherit it: LaunchPanel.exe then loads Tessel.dll
// and starts PrinterPanel.exe from there. Without it, Tessel.dll is missing.
class StandInsOnPath {
public:
    StandInsOnPath();
    ~StandInsOnPath();
    StandInsOnPath(const StandInsOnPath&) = delete;
    StandInsOnPath& operator=(const StandInsOnPath&) = delete;

private:
    std::optional<std::wstring> m_previous;
};

// The session device \\.\Sorel, served by SorelStandIn.sys installed as the
// kernel service kService. The driver reads its answers at each request from
// HKLM\<ParametersKey()>; it counts opens, closes and requests there too.
class SessionDevice {
public:
    static constexpr const wchar_t* kService = L"LaunchPanelSorelStandIn";
    static std::wstring ParametersKey();  // under HKEY_LOCAL_MACHINE
    // Whether the prefix's Service Control Manager knows the service.
    static bool ServiceExists();

    // How long the last install and removal took, in milliseconds.
    struct Timings {
        double create = 0;  // a leftover removed, then CreateServiceW
        double start = 0;   // StartServiceW until running and the device opens
        double stop = 0;    // stop until the service is stopped
        double remove = 0;  // DeleteServiceW until service and device are gone
    };

    SessionDevice() = default;
    // Removes the service when it is still installed; a failure fails the test.
    ~SessionDevice();
    SessionDevice(const SessionDevice&) = delete;
    SessionDevice& operator=(const SessionDevice&) = delete;

    // Removes a service of the same name left behind, installs the driver and
    // starts it with every answer at its default: in session, client name and
    // address empty. Fails when another device of the name is already there.
    [[nodiscard]] ::testing::AssertionResult Install();
    // Stops and deletes the service; \\.\Sorel no longer opens afterwards.
    [[nodiscard]] ::testing::AssertionResult Remove();
    bool installed() const { return m_installed; }
    const Timings& timings() const { return m_timings; }

    // Answers, taken at the next request. Only while installed.
    [[nodiscard]] ::testing::AssertionResult SetInSession(bool inSession);
    [[nodiscard]] ::testing::AssertionResult SetClientFactsAnswered(bool answered);
    [[nodiscard]] ::testing::AssertionResult SetClient(const std::wstring& name, const std::wstring& address);
    // The NTSTATUS a refused request completes with (STATUS_INVALID_DEVICE_REQUEST by default).
    [[nodiscard]] ::testing::AssertionResult SetFailureStatus(uint32_t ntstatus);

    // What reached the device since the install (or the last ResetCounts).
    DWORD Opens() const { return Count(L"Opens"); }
    DWORD Closes() const { return Count(L"Closes"); }
    DWORD SessionRequests() const { return Count(L"SessionRequests"); }
    DWORD ClientFactsRequests() const { return Count(L"ClientFactsRequests"); }
    DWORD OtherRequests() const { return Count(L"OtherRequests"); }
    void ResetCounts();
    // The driver hears of a close after CloseHandle has returned: waits until it
    // counted at least count closes; false at the limit.
    bool WaitForCloses(DWORD count, DWORD timeoutMs) const;

private:
    DWORD Count(const wchar_t* name) const;
    ::testing::AssertionResult SetAnswer(const wchar_t* name, DWORD type, const void* data, DWORD size);

    bool m_installed = false;
    Timings m_timings;
};

// The answers of the Tessel.dll stand-in and the calls it saw, under
// HKCU\<kTesselKey>. Made fresh (every answer at its default, no call counted)
// and removed again when the helper goes.
class TesselAnswers {
public:
    TesselAnswers();
    ~TesselAnswers();
    TesselAnswers(const TesselAnswers&) = delete;
    TesselAnswers& operator=(const TesselAnswers&) = delete;

    // tessGetClientVersion writes the text; result non-zero is success (default "7,2,0,118", 1).
    [[nodiscard]] ::testing::AssertionResult SetClientVersion(const std::wstring& text, int result = 1);
    // tessIsSharedAccountSession: shared 1 is a shared account; result 0 is success (default 0, 0).
    [[nodiscard]] ::testing::AssertionResult SetSharedAccount(uint32_t shared, int result = 0);
    // tessGetSessionTimeout: result non-zero is success (default 0, 1).
    [[nodiscard]] ::testing::AssertionResult SetTimeout(int32_t timeout, int result = 1);
    // tessDisconnectSession's result: 0 is success (default 0).
    [[nodiscard]] ::testing::AssertionResult SetDisconnectResult(int result);

    // How often an export was called, by its name ("tessDisconnectSession").
    DWORD Calls(const std::wstring& exportName) const;
    // The refresh flag of the last tessIsSharedAccountSession call; none before one.
    std::optional<DWORD> LastRefresh() const;

private:
    ::testing::AssertionResult SetDwords(const wchar_t* name, DWORD value, const wchar_t* resultName,
                                         int result);
};

// What the PrinterPanel.exe stand-in recorded, under HKCU\<kPrinterPanelKey>.
// Made fresh (no start recorded) and removed again when the helper goes.
class PrinterPanelRecord {
public:
    PrinterPanelRecord();
    ~PrinterPanelRecord();
    PrinterPanelRecord(const PrinterPanelRecord&) = delete;
    PrinterPanelRecord& operator=(const PrinterPanelRecord&) = delete;

    DWORD Starts() const;
    // Waits until at least count starts are recorded; false at the limit.
    bool WaitForStarts(DWORD count, DWORD timeoutMs) const;
    std::wstring CommandLine() const;
    std::optional<DWORD> ShowCommand() const;
    std::wstring CurrentDirectory() const;
    // A client variable it inherited (CLIENTCOMPUTERNAME...); none when it had none.
    std::optional<std::wstring> Variable(const std::wstring& name) const;
};

// The logon manager's two events, created by the test as the logon manager
// would: manual-reset and not set, so that being set stays visible until Reset.
// Leaving one out (false) lets a test see the program go on without it.
class LogonManagerEvents {
public:
    static constexpr const wchar_t* kExchange = L"LogonManager_LaunchPanel_Exchange";
    static constexpr const wchar_t* kShutdown = L"qrSessionShutdownEvent";

    explicit LogonManagerEvents(bool exchange = true, bool shutdown = true);
    // Every event asked for exists.
    bool created() const { return m_created; }
    // Whether the event is set, waiting up to waitMs for it; false for one left out.
    bool ExchangeSet(DWORD waitMs = 0) const { return IsSet(m_exchange, waitMs); }
    bool ShutdownSet(DWORD waitMs = 0) const { return IsSet(m_shutdown, waitMs); }
    void Reset();

private:
    static bool IsSet(const ky::UniqueHandle& event, DWORD waitMs);

    ky::UniqueHandle m_exchange;
    ky::UniqueHandle m_shutdown;
    bool m_created = true;
};

}  // namespace lptest
