// A stand-in for the server suite's session library, for tests only. It has the
// four exports the panel looks up by name; what they answer is read at each call
// from HKCU\Software\LaunchPanelTestStandIns\Tessel, and each call is counted
// there in Calls_<export>, so that a test sets the session's answers and sees
// what the panel asked:
//
//   ClientVersion     REG_SZ  tessGetClientVersion's text (default "7,2,0,118")
//   VersionResult     DWORD   its result (default 1, success)
//   SharedAccount     DWORD   tessIsSharedAccountSession's answer (default 0)
//   SharedResult      DWORD   its result (default 0, success); LastRefresh keeps
//                             the refresh flag of the last call
//   Timeout           DWORD   tessGetSessionTimeout's answer, signed (default 0)
//   TimeoutResult     DWORD   its result (default 1, success)
//   DisconnectResult  DWORD   tessDisconnectSession's result (default 0, success)
#include <windows.h>

#include <cstdint>
#include <string>

#include "foundation/UniqueHandle.h"

namespace {

constexpr const wchar_t* kKey = L"Software\\LaunchPanelTestStandIns\\Tessel";
constexpr size_t kVersionChars = 2048;

ky::UniqueHKey OpenAnswers() {
    ky::UniqueHKey key;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_QUERY_VALUE | KEY_SET_VALUE,
                        nullptr, key.put(), nullptr) != ERROR_SUCCESS)
        key.reset();
    return key;
}

DWORD ReadDword(const ky::UniqueHKey& key, const wchar_t* name, DWORD fallback) {
    DWORD value = 0, size = sizeof value, type = 0;
    if (!key || RegQueryValueExW(key.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(&value),
                                 &size) != ERROR_SUCCESS ||
        type != REG_DWORD || size != sizeof value)
        return fallback;
    return value;
}

void WriteDword(const ky::UniqueHKey& key, const std::wstring& name, DWORD value) {
    if (key)
        RegSetValueExW(key.get(), name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                       sizeof value);
}

std::wstring ReadText(const ky::UniqueHKey& key, const wchar_t* name, const wchar_t* fallback) {
    wchar_t text[kVersionChars] = {};
    DWORD size = sizeof text - sizeof(wchar_t), type = 0;
    if (!key || RegQueryValueExW(key.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(text),
                                 &size) != ERROR_SUCCESS ||
        type != REG_SZ)
        return fallback;
    return text;
}

// Opens the answers and counts the call of one export.
ky::UniqueHKey Called(const wchar_t* exportName) {
    ky::UniqueHKey key = OpenAnswers();
    std::wstring counter = std::wstring(L"Calls_") + exportName;
    WriteDword(key, counter, ReadDword(key, counter.c_str(), 0) + 1);
    return key;
}

}  // namespace

extern "C" {

__declspec(dllexport) int tessGetClientVersion(wchar_t* buffer) {
    ky::UniqueHKey key = Called(L"tessGetClientVersion");
    int result = static_cast<int>(ReadDword(key, L"VersionResult", 1));
    if (buffer && result) {
        std::wstring version = ReadText(key, L"ClientVersion", L"7,2,0,118");
        lstrcpynW(buffer, version.c_str(), static_cast<int>(kVersionChars));
    }
    return result;
}

__declspec(dllexport) int tessIsSharedAccountSession(uint32_t* out, int refresh) {
    ky::UniqueHKey key = Called(L"tessIsSharedAccountSession");
    WriteDword(key, L"LastRefresh", static_cast<DWORD>(refresh));
    int result = static_cast<int>(ReadDword(key, L"SharedResult", 0));
    if (out && result == 0) *out = ReadDword(key, L"SharedAccount", 0);
    return result;
}

__declspec(dllexport) int tessDisconnectSession(void) {
    ky::UniqueHKey key = Called(L"tessDisconnectSession");
    return static_cast<int>(ReadDword(key, L"DisconnectResult", 0));
}

__declspec(dllexport) int tessGetSessionTimeout(int32_t* out) {
    ky::UniqueHKey key = Called(L"tessGetSessionTimeout");
    int result = static_cast<int>(ReadDword(key, L"TimeoutResult", 1));
    if (out && result) *out = static_cast<int32_t>(ReadDword(key, L"Timeout", 0));
    return result;
}

}  // extern "C"
