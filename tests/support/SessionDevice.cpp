// The session device for tests: SorelStandIn.sys installed, started, stopped and
// deleted as a kernel service through the Service Control Manager of the prefix.
#include "tests/support/SessionStandIns.h"

#include <winsvc.h>

#include <chrono>
#include <string>

#include "tests/support/TestSupport.h"

namespace lptest {

namespace {

void CloseService(SC_HANDLE handle) noexcept { ::CloseServiceHandle(handle); }
using UniqueService = ky::UniqueAny<SC_HANDLE, CloseService>;
using Clock = std::chrono::steady_clock;

constexpr const wchar_t* kDevicePath = L"\\\\.\\Sorel";
constexpr const wchar_t* kDriverFile = L"SorelStandIn.sys";
// Starting the driver's host process is the slow part under Wine: a few seconds
// at most on a busy machine; the limit only bounds a broken install.
constexpr DWORD kLimitMs = 30000;
constexpr const wchar_t* kCounts[] = {L"Opens", L"Closes", L"SessionRequests",
                                      L"ClientFactsRequests", L"OtherRequests"};

double MsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

::testing::AssertionResult Failed(const std::string& what, DWORD error) {
    return ::testing::AssertionFailure() << what << " failed with error " << error;
}

template <typename Done>
bool WaitUntil(Done done, DWORD limitMs) {
    const ULONGLONG end = GetTickCount64() + limitMs;
    for (;;) {
        if (done()) return true;
        if (GetTickCount64() >= end) return false;
        Sleep(20);
    }
}

bool DeviceOpens() {
    ky::UniqueFile device(
        CreateFileW(kDevicePath, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    return static_cast<bool>(device);
}

DWORD StateOf(SC_HANDLE service) {
    SERVICE_STATUS status = {};
    return QueryServiceStatus(service, &status) ? status.dwCurrentState : 0;
}

bool ServiceGone(SC_HANDLE manager) {
    UniqueService service(OpenServiceW(manager, SessionDevice::kService, SERVICE_QUERY_STATUS));
    return !service && GetLastError() == ERROR_SERVICE_DOES_NOT_EXIST;
}

::testing::AssertionResult StopService(SC_HANDLE service) {
    if (StateOf(service) == SERVICE_STOPPED) return ::testing::AssertionSuccess();
    SERVICE_STATUS status = {};
    if (!ControlService(service, SERVICE_CONTROL_STOP, &status) &&
        GetLastError() != ERROR_SERVICE_NOT_ACTIVE)
        return Failed("stopping the device's service", GetLastError());
    if (!WaitUntil([&] { return StateOf(service) == SERVICE_STOPPED; }, kLimitMs))
        return ::testing::AssertionFailure() << "the device's service did not stop";
    return ::testing::AssertionSuccess();
}

// Stops and deletes the service when there is one, then waits until both the
// service and the device are gone. Times the two steps when asked.
::testing::AssertionResult RemoveService(SC_HANDLE manager, SessionDevice::Timings* timings) {
    UniqueService service(OpenServiceW(manager, SessionDevice::kService, SERVICE_ALL_ACCESS));
    if (!service) {
        DWORD error = GetLastError();
        return error == ERROR_SERVICE_DOES_NOT_EXIST ? ::testing::AssertionSuccess()
                                                     : Failed("OpenServiceW", error);
    }
    Clock::time_point start = Clock::now();
    if (auto stopped = StopService(service.get()); !stopped) return stopped;
    if (timings) timings->stop = MsSince(start);
    start = Clock::now();
    if (!DeleteService(service.get()) && GetLastError() != ERROR_SERVICE_MARKED_FOR_DELETE)
        return Failed("DeleteService", GetLastError());
    service.reset();  // the deletion completes once no handle is left
    if (!WaitUntil([&] { return ServiceGone(manager); }, kLimitMs))
        return ::testing::AssertionFailure() << "the device's service was not deleted";
    if (!WaitUntil([] { return !DeviceOpens(); }, kLimitMs))
        return ::testing::AssertionFailure() << "\\\\.\\Sorel still opens after the removal";
    if (timings) timings->remove = MsSince(start);
    return ::testing::AssertionSuccess();
}

UniqueService CreateDriverService(SC_HANDLE manager, const std::wstring& image) {
    UniqueService service;
    // A service deleted just before may still be on its way out.
    WaitUntil([&] {
        service.reset(CreateServiceW(manager, SessionDevice::kService,
                                     L"Launch Panel tests: session device", SERVICE_ALL_ACCESS,
                                     SERVICE_KERNEL_DRIVER, SERVICE_DEMAND_START,
                                     SERVICE_ERROR_IGNORE, image.c_str(), nullptr, nullptr,
                                     nullptr, nullptr, nullptr));
        return service || GetLastError() != ERROR_SERVICE_MARKED_FOR_DELETE;
    }, kLimitMs);
    return service;
}

::testing::AssertionResult StartDriver(SC_HANDLE service) {
    if (!StartServiceW(service, 0, nullptr) && GetLastError() != ERROR_SERVICE_ALREADY_RUNNING)
        return Failed("StartServiceW of the device's driver", GetLastError());
    DWORD state = 0;
    WaitUntil([&] {
        state = StateOf(service);
        return state == SERVICE_RUNNING || state == SERVICE_STOPPED;
    }, kLimitMs);
    if (state != SERVICE_RUNNING)
        return ::testing::AssertionFailure() << "the device's driver did not start (state " << state
                                             << ")";
    if (!WaitUntil([] { return DeviceOpens(); }, kLimitMs))
        return ::testing::AssertionFailure() << "the driver runs but \\\\.\\Sorel does not open";
    return ::testing::AssertionSuccess();
}

}  // namespace

std::wstring SessionDevice::ParametersKey() {
    return std::wstring(L"SYSTEM\\CurrentControlSet\\Services\\") + kService + L"\\Parameters";
}

bool SessionDevice::ServiceExists() {
    UniqueService manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT));
    return manager && !ServiceGone(manager.get());
}

SessionDevice::~SessionDevice() {
    if (!m_installed) return;
    auto removed = Remove();
    if (!removed) ADD_FAILURE() << "removing the session device: " << removed.message();
}

::testing::AssertionResult SessionDevice::Install() {
    if (m_installed) return ::testing::AssertionFailure() << "the session device is installed already";
    Clock::time_point start = Clock::now();
    UniqueService manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    if (!manager) return Failed("OpenSCManagerW", GetLastError());
    if (auto leftover = RemoveService(manager.get(), nullptr); !leftover)
        return leftover << " (removing a service left behind)";
    if (DeviceOpens())
        return ::testing::AssertionFailure() << "\\\\.\\Sorel is served by some other driver already";
    const std::wstring image = StandInsDir() + kDriverFile;
    if (!FileExists(image))
        return ::testing::AssertionFailure() << "the driver is not built: " << Narrow(image);
    UniqueService service = CreateDriverService(manager.get(), image);
    if (!service) return Failed("CreateServiceW of the device's driver", GetLastError());
    m_installed = true;  // from here on, Remove undoes the install
    m_timings = {};
    m_timings.create = MsSince(start);
    ky::UniqueHKey parameters;
    LONG rc = RegCreateKeyExW(HKEY_LOCAL_MACHINE, ParametersKey().c_str(), 0, nullptr, 0,
                              KEY_SET_VALUE, nullptr, parameters.put(), nullptr);
    if (rc != ERROR_SUCCESS) return Failed("creating the device's Parameters key", rc);
    start = Clock::now();
    if (auto started = StartDriver(service.get()); !started) return started;
    m_timings.start = MsSince(start);
    // The open that proved the device is none of the test's. Its open and close
    // reach the driver after the caller's calls have returned, so they are
    // waited for before the counts start again.
    if (!WaitUntil([this] { return Opens() >= 1 && Closes() >= 1; }, kLimitMs))
        return ::testing::AssertionFailure() << "the device does not count its opens and closes";
    ResetCounts();
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult SessionDevice::Remove() {
    if (!m_installed) return ::testing::AssertionSuccess();
    UniqueService manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    if (!manager) return Failed("OpenSCManagerW", GetLastError());
    auto removed = RemoveService(manager.get(), &m_timings);
    if (removed) m_installed = false;
    return removed;
}

::testing::AssertionResult SessionDevice::SetAnswer(const wchar_t* name, DWORD type,
                                                    const void* data, DWORD size) {
    if (!m_installed)
        return ::testing::AssertionFailure() << "install the session device before its answers";
    ky::UniqueHKey key;
    LONG rc = RegCreateKeyExW(HKEY_LOCAL_MACHINE, ParametersKey().c_str(), 0, nullptr, 0,
                              KEY_SET_VALUE, nullptr, key.put(), nullptr);
    if (rc == ERROR_SUCCESS)
        rc = RegSetValueExW(key.get(), name, 0, type, static_cast<const BYTE*>(data), size);
    if (rc != ERROR_SUCCESS) return Failed("setting the device's answer " + Narrow(name), rc);
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult SessionDevice::SetInSession(bool inSession) {
    DWORD value = inSession ? 1 : 0;
    return SetAnswer(L"SessionResult", REG_DWORD, &value, sizeof value);
}

::testing::AssertionResult SessionDevice::SetClientFactsAnswered(bool answered) {
    DWORD value = answered ? 1 : 0;
    return SetAnswer(L"ClientFactsResult", REG_DWORD, &value, sizeof value);
}

::testing::AssertionResult SessionDevice::SetClient(const std::wstring& name,
                                                    const std::wstring& address) {
    auto text = [](const std::wstring& s) { return static_cast<DWORD>((s.size() + 1) * sizeof(wchar_t)); };
    auto set = SetAnswer(L"ClientName", REG_SZ, name.c_str(), text(name));
    if (!set) return set;
    return SetAnswer(L"ClientAddress", REG_SZ, address.c_str(), text(address));
}

::testing::AssertionResult SessionDevice::SetFailureStatus(uint32_t ntstatus) {
    DWORD value = ntstatus;
    return SetAnswer(L"FailureStatus", REG_DWORD, &value, sizeof value);
}

DWORD SessionDevice::Count(const wchar_t* name) const {
    DWORD value = 0;
    return GetDword(HKEY_LOCAL_MACHINE, ParametersKey(), name, value) ? value : 0;
}

bool SessionDevice::WaitForCloses(DWORD count, DWORD timeoutMs) const {
    return WaitUntil([&] { return Closes() >= count; }, timeoutMs);
}

void SessionDevice::ResetCounts() {
    for (const wchar_t* name : kCounts) DeleteValue(HKEY_LOCAL_MACHINE, ParametersKey(), name);
}

}  // namespace lptest
