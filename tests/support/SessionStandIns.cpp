// The user-mode parts of the session as tests make it: where the stand-ins are,
// the search path that finds them, their answers and records in the registry,
// and the logon manager's events.
#include "tests/support/SessionStandIns.h"

#include <vector>

#include "tests/support/TestSupport.h"

namespace lptest {

namespace {

::testing::AssertionResult SetValue(const wchar_t* path, const wchar_t* name, DWORD type,
                                    const void* data, DWORD size) {
    ky::UniqueHKey key;
    LONG rc = RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                              key.put(), nullptr);
    if (rc == ERROR_SUCCESS)
        rc = RegSetValueExW(key.get(), name, 0, type, static_cast<const BYTE*>(data), size);
    if (rc != ERROR_SUCCESS)
        return ::testing::AssertionFailure()
               << "setting " << Narrow(path) << "\\" << Narrow(name) << " failed with error " << rc;
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult SetDwordValue(const wchar_t* path, const wchar_t* name, DWORD value) {
    return SetValue(path, name, REG_DWORD, &value, sizeof value);
}

std::optional<DWORD> ReadDword(const wchar_t* path, const std::wstring& name) {
    DWORD value = 0;
    if (!GetDword(HKEY_CURRENT_USER, path, name, value)) return std::nullopt;
    return value;
}

// A stand-in's key goes, and their common parent with it once it is empty.
void RemoveRecords(const wchar_t* path) {
    DeleteTree(HKEY_CURRENT_USER, path);
    RegDeleteKeyW(HKEY_CURRENT_USER, kStandInsKey);
}

}  // namespace

std::wstring StandInsDir() {
    const std::wstring relative = BinDir() + L"..\\tests\\standins\\";
    std::vector<wchar_t> full(relative.size() + MAX_PATH);
    DWORD length = GetFullPathNameW(relative.c_str(), static_cast<DWORD>(full.size()), full.data(),
                                    nullptr);
    if (length == 0 || length >= full.size()) return relative;
    return std::wstring(full.data(), length);
}

StandInsOnPath::StandInsOnPath() {
    std::wstring folder = StandInsDir();
    folder.pop_back();  // no trailing backslash in a search path
    DWORD size = GetEnvironmentVariableW(L"PATH", nullptr, 0);
    std::wstring path;
    if (size > 0) {
        std::vector<wchar_t> old(size);
        DWORD length = GetEnvironmentVariableW(L"PATH", old.data(), size);
        m_previous = std::wstring(old.data(), length);
        path = folder + L";" + *m_previous;
    } else {
        path = folder;
    }
    SetEnvironmentVariableW(L"PATH", path.c_str());
}

StandInsOnPath::~StandInsOnPath() {
    SetEnvironmentVariableW(L"PATH", m_previous ? m_previous->c_str() : nullptr);
}

TesselAnswers::TesselAnswers() { DeleteTree(HKEY_CURRENT_USER, kTesselKey); }

TesselAnswers::~TesselAnswers() { RemoveRecords(kTesselKey); }

::testing::AssertionResult TesselAnswers::SetDwords(const wchar_t* name, DWORD value,
                                                    const wchar_t* resultName, int result) {
    auto set = SetDwordValue(kTesselKey, name, value);
    if (!set) return set;
    return SetDwordValue(kTesselKey, resultName, static_cast<DWORD>(result));
}

::testing::AssertionResult TesselAnswers::SetClientVersion(const std::wstring& text, int result) {
    auto set = SetValue(kTesselKey, L"ClientVersion", REG_SZ, text.c_str(),
                        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    if (!set) return set;
    return SetDwordValue(kTesselKey, L"VersionResult", static_cast<DWORD>(result));
}

::testing::AssertionResult TesselAnswers::SetSharedAccount(uint32_t shared, int result) {
    return SetDwords(L"SharedAccount", shared, L"SharedResult", result);
}

::testing::AssertionResult TesselAnswers::SetTimeout(int32_t timeout, int result) {
    return SetDwords(L"Timeout", static_cast<DWORD>(timeout), L"TimeoutResult", result);
}

::testing::AssertionResult TesselAnswers::SetDisconnectResult(int result) {
    return SetDwordValue(kTesselKey, L"DisconnectResult", static_cast<DWORD>(result));
}

DWORD TesselAnswers::Calls(const std::wstring& exportName) const {
    return ReadDword(kTesselKey, L"Calls_" + exportName).value_or(0);
}

std::optional<DWORD> TesselAnswers::LastRefresh() const {
    return ReadDword(kTesselKey, L"LastRefresh");
}

PrinterPanelRecord::PrinterPanelRecord() { DeleteTree(HKEY_CURRENT_USER, kPrinterPanelKey); }

PrinterPanelRecord::~PrinterPanelRecord() { RemoveRecords(kPrinterPanelKey); }

DWORD PrinterPanelRecord::Starts() const {
    return ReadDword(kPrinterPanelKey, L"Starts").value_or(0);
}

bool PrinterPanelRecord::WaitForStarts(DWORD count, DWORD timeoutMs) const {
    const ULONGLONG end = GetTickCount64() + timeoutMs;
    while (Starts() < count) {
        if (GetTickCount64() >= end) return false;
        Sleep(20);
    }
    return true;
}

std::wstring PrinterPanelRecord::CommandLine() const {
    std::wstring text;
    GetString(HKEY_CURRENT_USER, kPrinterPanelKey, L"CommandLine", text);
    return text;
}

std::optional<DWORD> PrinterPanelRecord::ShowCommand() const {
    return ReadDword(kPrinterPanelKey, L"ShowCommand");
}

std::wstring PrinterPanelRecord::CurrentDirectory() const {
    std::wstring text;
    GetString(HKEY_CURRENT_USER, kPrinterPanelKey, L"CurrentDirectory", text);
    return text;
}

std::optional<std::wstring> PrinterPanelRecord::Variable(const std::wstring& name) const {
    std::wstring text;
    if (!GetString(HKEY_CURRENT_USER, kPrinterPanelKey, L"Env_" + name, text)) return std::nullopt;
    return text;
}

LogonManagerEvents::LogonManagerEvents(bool exchange, bool shutdown) {
    auto make = [this](ky::UniqueHandle& event, const wchar_t* name) {
        event.reset(CreateEventW(nullptr, TRUE, FALSE, name));
        if (!event) m_created = false;
    };
    if (exchange) make(m_exchange, kExchange);
    if (shutdown) make(m_shutdown, kShutdown);
    Reset();  // an event some other holder kept open starts unset as well
}

void LogonManagerEvents::Reset() {
    if (m_exchange) ResetEvent(m_exchange.get());
    if (m_shutdown) ResetEvent(m_shutdown.get());
}

bool LogonManagerEvents::IsSet(const ky::UniqueHandle& event, DWORD waitMs) {
    return event && WaitForSingleObject(event.get(), waitMs) == WAIT_OBJECT_0;
}

}  // namespace lptest
