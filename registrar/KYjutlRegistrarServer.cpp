// The server-wide facts the registrar keeps for the rest of the program. Each one
// is optional: a missing key, value or library leaves it unknown (0 or empty) and
// is no failure.
#include "registrar/KYjutlRegistrar.h"

#include <cwchar>

namespace {

constexpr const wchar_t* kServerKey = L"SOFTWARE\\Veltran\\Corvane\\AppServer";
constexpr REGSAM kReadMask = 0x20009;

using TessGetSessionTimeoutFn = int (*)(int32_t*);
// Process-wide, written only on the main thread (the registrar has no lock).
TessGetSessionTimeoutFn g_tessGetSessionTimeout = nullptr;

}  // namespace

bool KYjutlRegistrar::ObtainCloseOption() {
    ClearErrors();
    ky::UniqueHKey server;
    Guard(273, [&] {
        LONG rc = RegOpenKeyExW(HKEY_LOCAL_MACHINE, kServerKey, 0, kReadMask, server.put());
        if (rc != ERROR_SUCCESS) throw uint32_t{270};
        DWORD value = 0, size = sizeof value;
        rc = RegQueryValueExW(server.get(), L"LaunchPanelCloseOption", nullptr, nullptr,
                              reinterpret_cast<BYTE*>(&value), &size);
        if (rc == ERROR_FILE_NOT_FOUND) throw uint32_t{274};
        if (rc != ERROR_SUCCESS) throw uint32_t{275};
        m_uCloseOption = value;
    });
    if (CloseKey(server) != ERROR_SUCCESS) RecordLateError(269);
    if (Tolerate({269, 270, 273, 274, 275})) m_uCloseOption = 0;
    return m_uError == 0;
}

bool KYjutlRegistrar::ObtainSharedAccounts() {
    ClearErrors();
    m_szSharedAccounts[0] = L'\0';
    ky::UniqueHKey server;
    Guard(266, [&] {
        LONG rc = RegOpenKeyExW(HKEY_LOCAL_MACHINE, kServerKey, 0, kReadMask, server.put());
        if (rc != ERROR_SUCCESS) throw uint32_t{270};
        DWORD size = sizeof m_szSharedAccounts;
        rc = RegQueryValueExW(server.get(), L"SharedAccounts", nullptr, nullptr,
                              reinterpret_cast<BYTE*>(m_szSharedAccounts), &size);
        if (rc == ERROR_FILE_NOT_FOUND) throw uint32_t{267};
        if (rc != ERROR_SUCCESS ||
            !TerminateText(m_szSharedAccounts, size, static_cast<DWORD>(std::size(m_szSharedAccounts))))
            throw uint32_t{268};
    });
    if (CloseKey(server) != ERROR_SUCCESS) RecordLateError(269);
    if (Tolerate({266, 267, 268, 269, 270})) m_szSharedAccounts[0] = L'\0';
    return m_uError == 0;
}

bool KYjutlRegistrar::ObtainSessionTimeoutInner() {
    ClearErrors();
    m_uSessionTimeout = 0;
    Guard(262, [&] {
        if (!g_tessGetSessionTimeout) {
            // Only a library that the session start already loaded is asked.
            HMODULE session = GetModuleHandleW(L"Tessel.dll");
            if (!session) throw uint32_t{263};
            FARPROC proc = GetProcAddress(session, "tessGetSessionTimeout");
            g_tessGetSessionTimeout =
                reinterpret_cast<TessGetSessionTimeoutFn>(reinterpret_cast<void*>(proc));
        }
        if (!g_tessGetSessionTimeout) throw uint32_t{264};
        int32_t timeout = 0;
        if (!g_tessGetSessionTimeout(&timeout)) throw uint32_t{264};
        m_uSessionTimeout = static_cast<uint32_t>(timeout);
    });
    if (Tolerate({262, 263, 264})) m_uSessionTimeout = 0;
    return m_uError == 0;
}

bool KYjutlRegistrar::ObtainSessionTimeout() {
    try {
        return ObtainSessionTimeoutInner();
    } catch (...) {
        RecordError(10);
        return false;
    }
}
