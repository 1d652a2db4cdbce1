#include "monitor/KYbpmSysInfoEnvOp.h"

#include <cwchar>
#include <string>
#include <vector>

#include "foundation/UniqueHandle.h"

KYbpmSysInfoEnvOp::KYbpmSysInfoEnvOp() = default;

KYbpmSysInfoEnvOp::~KYbpmSysInfoEnvOp() = default;

bool KYbpmSysInfoEnvOp::getDataPair(int index, const wchar_t* reserved, wchar_t* out, int reserved2,
                                    uint32_t capacity) {
    (void)reserved;
    (void)reserved2;
    if (!out || capacity == 0) return false;
    out[0] = L'\0';
    if (index == kComputerName) return computerName(out, capacity);
    if (index == kUserDomain) return userDomain(out, capacity);
    return false;
}

bool KYbpmSysInfoEnvOp::computerName(wchar_t* out, uint32_t capacity) {
    DWORD size = capacity;
    if (GetComputerNameW(out, &size)) return true;
    out[0] = L'\0';
    return false;
}

// The domain of the account behind the process token; USERDOMAIN when the
// account cannot be looked up (a domain controller out of reach).
bool KYbpmSysInfoEnvOp::userDomain(wchar_t* out, uint32_t capacity) {
    ky::UniqueHandle token;
    DWORD needed = 0;
    std::vector<BYTE> user;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.put())) {
        GetTokenInformation(token.get(), TokenUser, nullptr, 0, &needed);
        user.resize(needed);
        if (needed && GetTokenInformation(token.get(), TokenUser, user.data(), needed, &needed)) {
            wchar_t name[256];
            wchar_t domain[256];
            DWORD nameSize = 256;
            DWORD domainSize = 256;
            SID_NAME_USE use{};
            const auto* tokenUser = reinterpret_cast<const TOKEN_USER*>(user.data());
            if (LookupAccountSidW(nullptr, tokenUser->User.Sid, name, &nameSize, domain, &domainSize, &use) &&
                domain[0]) {
                if (wcslen(domain) >= capacity) return false;
                wcscpy(out, domain);
                return true;
            }
        }
    }
    const DWORD length = GetEnvironmentVariableW(L"USERDOMAIN", out, capacity);
    if (length > 0 && length < capacity) return true;
    out[0] = L'\0';
    return false;
}
