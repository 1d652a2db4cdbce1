// The server-wide facts and the user's group names.
#include <algorithm>

#include "app/GroupNames.h"
#include "foundation/UniqueHandle.h"
#include "tests/registrar/RegistrarTestSupport.h"

using namespace regtest;

TEST_F(RegistrarTest, MissingServerFactsAreUnknownWithoutFailure) {
    lptest::DeleteTree(HKEY_LOCAL_MACHINE, lptest::kServerKey);
    auto registrar = Started();
    EXPECT_TRUE(registrar->ObtainCloseOption());
    EXPECT_EQ(registrar->m_uCloseOption, 0u);
    EXPECT_TRUE(registrar->ObtainSharedAccounts());
    EXPECT_STREQ(registrar->m_szSharedAccounts, L"");
    EXPECT_TRUE(registrar->ObtainSessionTimeout()) << "no session library loaded";
    EXPECT_EQ(registrar->m_uSessionTimeout, 0u);
    EXPECT_EQ(registrar->m_uError, 0u);
}

TEST_F(RegistrarTest, ServerFactsAreReadAndOverlongAccountsRefused) {
    LP_SET_DWORD(HKEY_LOCAL_MACHINE, lptest::kServerKey, L"LaunchPanelCloseOption", 2);
    LP_SET_STRING(HKEY_LOCAL_MACHINE, lptest::kServerKey, L"SharedAccounts", L"kiosk;guest");
    auto registrar = Started();
    EXPECT_EQ(registrar->m_uCloseOption, 2u);
    ASSERT_TRUE(registrar->ObtainSharedAccounts());
    EXPECT_STREQ(registrar->m_szSharedAccounts, L"kiosk;guest");

    LP_SET_STRING(HKEY_LOCAL_MACHINE, lptest::kServerKey, L"SharedAccounts", Repeat(L'a', 260));
    EXPECT_TRUE(registrar->ObtainSharedAccounts());
    EXPECT_STREQ(registrar->m_szSharedAccounts, L"");
    LP_SET_STRING(HKEY_LOCAL_MACHINE, lptest::kServerKey, L"SharedAccounts", Repeat(L'b', 259));
    EXPECT_TRUE(registrar->ObtainSharedAccounts());
    EXPECT_EQ(std::wstring(registrar->m_szSharedAccounts), Repeat(L'b', 259));
}

TEST(GroupNames, TokenGroupsAreNamedAndTheAdministratorFound) {
    std::vector<std::wstring> groups = {L"left over"};
    bool admin = false;
    ASSERT_EQ(ObtainGroupNames(GetModuleHandleW(nullptr), groups, admin), 0);
    EXPECT_TRUE(admin);
    auto has = [&](const wchar_t* name) { return std::find(groups.begin(), groups.end(), name) != groups.end(); };
    EXPECT_TRUE(has(L"BUILTIN!Administrators"));
    EXPECT_TRUE(has(L"BUILTIN!Users"));
    EXPECT_FALSE(has(L"left over"));
    for (const std::wstring& group : groups) {
        EXPECT_FALSE(group.empty());
        EXPECT_EQ(group.find(L"S-1-"), std::wstring::npos) << "unnamed SIDs are skipped";
    }

    ky::UniqueHandle token;
    ASSERT_TRUE(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.put()));
    DWORD size = 0;
    GetTokenInformation(token.get(), TokenGroups, nullptr, 0, &size);
    std::vector<BYTE> buffer(size);
    ASSERT_TRUE(GetTokenInformation(token.get(), TokenGroups, buffer.data(), size, &size));
    const DWORD tokenGroups = reinterpret_cast<TOKEN_GROUPS*>(buffer.data())->GroupCount;
    EXPECT_LT(groups.size(), tokenGroups) << "the logon SID has no name and is left out";
}
