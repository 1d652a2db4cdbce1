#include "app/GroupNames.h"

#include <cwchar>

#include "foundation/UniqueHandle.h"

namespace {

constexpr int kUnexpected = 27091;
constexpr int kNoToken = 27092;
constexpr int kTokenNotClosed = 27093;
constexpr int kNoMemory = 27094;
constexpr int kGroupsUnreadable = 27095;
constexpr int kGroupsUnsized = 27096;
constexpr UINT kAdministratorsDomainText = 24579;
constexpr UINT kAdministratorsNameText = 24580;
constexpr DWORD kNameChars = 2048;
constexpr wchar_t kSeparator = L'!';

// A localized text, or the fallback when it is missing or a single blank.
std::wstring LoadTextOr(HMODULE resources, UINT id, const wchar_t* fallback) {
    wchar_t text[256] = {};
    int chars = LoadStringW(resources, id, text, static_cast<int>(std::size(text)));
    if (chars <= 0 || std::wcscmp(text, L" ") == 0) return fallback;
    return text;
}

std::wstring JoinAccount(const wchar_t* domain, const wchar_t* name) {
    if (!name[0]) return {};
    std::wstring text;
    if (domain[0]) {
        text = domain;
        text += kSeparator;
    }
    return text + name;
}

int OpenToken(ky::UniqueHandle& token) {
    if (OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, FALSE, token.put())) return 0;
    if (GetLastError() != ERROR_NO_TOKEN) return kNoToken;
    return OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.put()) ? 0 : kNoToken;
}

int ReadTokenGroups(HANDLE token, std::vector<BYTE>& buffer) {
    DWORD size = 0;
    if (GetTokenInformation(token, TokenGroups, nullptr, 0, &size) ||
        GetLastError() != ERROR_INSUFFICIENT_BUFFER || size == 0)
        return kGroupsUnsized;
    try {
        buffer.resize(size);
    } catch (...) {
        return kNoMemory;
    }
    if (!GetTokenInformation(token, TokenGroups, buffer.data(), size, &size)) return kGroupsUnreadable;
    return 0;
}

void NameGroups(const TOKEN_GROUPS& tokenGroups, const std::wstring& administrators,
                std::vector<std::wstring>& groups, bool& userIsAdmin) {
    wchar_t name[kNameChars];
    wchar_t domain[kNameChars];
    for (DWORD i = 0; i < tokenGroups.GroupCount; ++i) {
        DWORD nameChars = kNameChars, domainChars = kNameChars;
        SID_NAME_USE use = SidTypeUnknown;
        // A SID without an account (such as the logon session's) is no group to name.
        if (!LookupAccountSidW(nullptr, tokenGroups.Groups[i].Sid, name, &nameChars, domain,
                               &domainChars, &use))
            continue;
        if (use != SidTypeGroup && use != SidTypeAlias && use != SidTypeWellKnownGroup) continue;
        std::wstring text = JoinAccount(domain, name);
        if (text.empty()) continue;
        if (!administrators.empty() && _wcsicmp(text.c_str(), administrators.c_str()) == 0)
            userIsAdmin = true;
        groups.push_back(std::move(text));
    }
}

}  // namespace

int ObtainGroupNames(HMODULE resources, std::vector<std::wstring>& groups, bool& userIsAdmin) {
    int situation = 0;
    ky::UniqueHandle token;
    try {
        situation = OpenToken(token);
        std::vector<BYTE> buffer;
        if (situation == 0) situation = ReadTokenGroups(token.get(), buffer);
        if (situation == 0) {
            groups.clear();
            const std::wstring administrators =
                JoinAccount(LoadTextOr(resources, kAdministratorsDomainText, L"BUILTIN").c_str(),
                            LoadTextOr(resources, kAdministratorsNameText, L"Administrators").c_str());
            userIsAdmin = false;
            NameGroups(*reinterpret_cast<const TOKEN_GROUPS*>(buffer.data()), administrators, groups,
                       userIsAdmin);
        }
    } catch (...) {
        situation = kUnexpected;
    }
    if (!ky::CloseTelling(token) && situation == 0) situation = kTokenNotClosed;
    if (situation != 0) groups.clear();
    return situation;
}
