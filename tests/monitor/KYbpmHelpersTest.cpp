// The helpers the program borrows: environment expansion, version values of
// this test program's own version resource, grouped numbers, machine facts.
#include <gtest/gtest.h>

#include <cwchar>
#include <string>

#include "monitor/KYbpmLocalizeHelpers.h"
#include "monitor/KYbpmSysInfoEnvOp.h"

namespace {

// A buffer of capacity characters followed by a guard that must stay untouched.
struct Guarded {
    explicit Guarded(uint32_t capacity) : capacity(capacity), text(capacity + 8, L'#') {}
    wchar_t* out() { return text.data(); }
    bool guardIntact() const { return text.substr(capacity) == std::wstring(8, L'#'); }
    uint32_t capacity;
    std::wstring text;
};

}  // namespace

TEST(KYbpmLocalizeHelpers, ExpandsAndNeverOverruns) {
    ASSERT_TRUE(SetEnvironmentVariableW(L"LPMON_DIR", L"C:\\Logs"));
    const std::wstring expected = L"C:\\Logs\\Run";
    uint32_t length = 99;
    Guarded exact(static_cast<uint32_t>(expected.size() + 1));
    EXPECT_TRUE(KYbpmLocalizeHelpers::expandEnvironmentVarStrsW(L"%LPMON_DIR%\\Run", exact.out(), nullptr,
                                                                 &length, exact.capacity));
    EXPECT_EQ(std::wstring(exact.out()), expected);
    EXPECT_EQ(length, expected.size());
    EXPECT_TRUE(exact.guardIntact());

    Guarded small(static_cast<uint32_t>(expected.size()));
    EXPECT_FALSE(KYbpmLocalizeHelpers::expandEnvironmentVarStrsW(L"%LPMON_DIR%\\Run", small.out(), nullptr,
                                                                  &length, small.capacity));
    EXPECT_TRUE(small.guardIntact());
    EXPECT_EQ(length, 0u);

    // In place, as the program expands its scratch buffer into itself, with and without a work buffer.
    wchar_t same[64] = L"%LPMON_DIR%\\In";
    wchar_t work[64];
    EXPECT_TRUE(KYbpmLocalizeHelpers::expandEnvironmentVarStrsW(same, same, work, nullptr, 64));
    EXPECT_STREQ(same, L"C:\\Logs\\In");
    wcscpy(same, L"%LPMON_DIR%\\Again");
    EXPECT_TRUE(KYbpmLocalizeHelpers::expandEnvironmentVarStrsW(same, same, nullptr, nullptr, 64));
    EXPECT_STREQ(same, L"C:\\Logs\\Again");
    EXPECT_FALSE(KYbpmLocalizeHelpers::expandEnvironmentVarStrsW(nullptr, same, nullptr, nullptr, 64));
}

TEST(KYbpmLocalizeHelpers, VersionValuesOfTheModule) {
    const HMODULE self = GetModuleHandleW(nullptr);
    wchar_t out[64];
    EXPECT_TRUE(KYbpmLocalizeHelpers::obtainVersionQRW(out, 64, 4, self));
    EXPECT_STREQ(out, L"7.3.12.4711");
    EXPECT_TRUE(KYbpmLocalizeHelpers::obtainVersionQRW(out, 64, 13, nullptr));
    EXPECT_STREQ(out, L"42");
    EXPECT_FALSE(KYbpmLocalizeHelpers::obtainVersionQRW(out, 64, 5, self));

    Guarded small(11);  // "7.3.12.4711" needs 12
    EXPECT_FALSE(KYbpmLocalizeHelpers::obtainVersionQRW(small.out(), small.capacity, 4, self));
    EXPECT_TRUE(small.guardIntact());

    EXPECT_TRUE(KYbpmLocalizeHelpers::extractModuleVerValueSFI_OrigFNm(self, out, 64, nullptr, L"StringFileInfo", L'\\'));
    EXPECT_STREQ(out, L"monitor_tests.exe");
    EXPECT_TRUE(KYbpmLocalizeHelpers::extractModuleVerValueSFI_LegalCN(self, out, 64, L"040904b0", L"StringFileInfo", L'\\'));
    EXPECT_STREQ(out, L"Copyright (C) Veltran test build");
    EXPECT_TRUE(KYbpmLocalizeHelpers::extractModuleVerValueSFI_LegalTM(self, out, 64, nullptr, L"StringFileInfo", L'\\'));
    EXPECT_STREQ(out, L"Corvane is a test mark");
    EXPECT_FALSE(KYbpmLocalizeHelpers::extractModuleVerValueSFI_LegalTM(self, out, 64, L"040704b0", L"StringFileInfo", L'\\'))
        << "no German block";
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    EXPECT_FALSE(KYbpmLocalizeHelpers::obtainVersionQRW(out, 64, 4, kernel)) << "no build identifier there";
}

TEST(KYbpmLocalizeHelpers, PunctuatedNumbers) {
    wchar_t separator[8] = L",";
    if (GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_STHOUSAND, separator, 8) <= 0) wcscpy(separator, L",");
    const std::wstring s = separator;
    wchar_t out[40];
    const std::pair<int64_t, std::wstring> cases[] = {
        {0, L"0"}, {999, L"999"}, {1000, L"1" + s + L"000"}, {-1234567, L"-1" + s + L"234" + s + L"567"},
        {INT64_MIN, L"-9" + s + L"223" + s + L"372" + s + L"036" + s + L"854" + s + L"775" + s + L"808"}};
    for (const auto& [value, text] : cases) {
        EXPECT_TRUE(KYbpmLocalizeHelpers::convertIntToPunctuatedStrW(value, out, 40));
        EXPECT_EQ(std::wstring(out), text);
    }
    Guarded small(5);
    EXPECT_FALSE(KYbpmLocalizeHelpers::convertIntToPunctuatedStrW(1234567, small.out(), small.capacity));
    EXPECT_TRUE(small.guardIntact());
}

TEST(KYbpmSysInfoEnvOp, ComputerNameAndDomain) {
    wchar_t expected[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD size = MAX_COMPUTERNAME_LENGTH + 1;
    ASSERT_TRUE(GetComputerNameW(expected, &size));
    KYbpmSysInfoEnvOp info;
    wchar_t out[256];
    EXPECT_TRUE(info.getDataPair(5, nullptr, out, 0, 256));
    EXPECT_STREQ(out, expected);
    EXPECT_FALSE(info.getDataPair(5, nullptr, out, 0, size)) << "no room for the terminator";
    EXPECT_TRUE(info.getDataPair(6, nullptr, out, 0, 256));
    EXPECT_GT(wcslen(out), 0u);
    EXPECT_FALSE(info.getDataPair(7, nullptr, out, 0, 256));
    EXPECT_FALSE(info.getDataPair(6, nullptr, out, 0, 1));
}
