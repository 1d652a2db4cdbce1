// The administrator's settings of the monitor, read from the real registry.
#include <gtest/gtest.h>

#include "MonitorTestSupport.h"
#include "monitor/KYbpmDataQRW.h"
#include "tests/support/TestSupport.h"

using namespace montest;
using lptest::kServerKey;

class KYbpmRegistry : public lptest::RegistryTest {};

TEST_F(KYbpmRegistry, BehaviorCriteriaFromDwordOrQword) {
    lptest::DeleteValue(HKEY_LOCAL_MACHINE, kServerKey, L"PM_BehaviorCriteria");
    EXPECT_EQ(KYbpmDataQRW::obtainBehaviorCriteria(), 0);
    LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"PM_BehaviorCriteria", 0x80000003u);
    EXPECT_EQ(KYbpmDataQRW::obtainBehaviorCriteria(), int64_t{0x80000003});
    const uint64_t wide = 0x0000000500000001ull;
    LP_SET_BINARY(HKEY_LOCAL_MACHINE, kServerKey, L"PM_BehaviorCriteria", &wide, sizeof wide, REG_QWORD);
    EXPECT_EQ(KYbpmDataQRW::obtainBehaviorCriteria(), int64_t{0x0000000500000001});
    LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"PM_BehaviorCriteria", L"1");
    EXPECT_EQ(KYbpmDataQRW::obtainBehaviorCriteria(), 0) << "another kind of value counts as missing";
    lptest::DeleteTree(HKEY_LOCAL_MACHINE, kServerKey);
    EXPECT_EQ(KYbpmDataQRW::obtainBehaviorCriteria(), 0);
}

TEST_F(KYbpmRegistry, UpdateAddsTheRegistrysBitsToTheData) {
    const int64_t session = KYbpmCriteria::kInSession | KYbpmCriteria::kSessionLog;
    // Without the registry's bits an attended monitor can always show a box.
    auto plain = MakeData({.criteria = session});
    EXPECT_TRUE(KYbpmDataQRW::updateBehaviorCriteria(plain.get()));
    MonitorPtr attended(KYbpm::create(plain.get()));
    ASSERT_TRUE(attended);
    EXPECT_EQ(attended->canRespondToSituations(), KYbpm_FUZZY_CHOICE::Yes);

    LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"PM_BehaviorCriteria",
                 static_cast<DWORD>(KYbpmCriteria::kUnattended));
    auto data = MakeData({.criteria = session});
    EXPECT_TRUE(KYbpmDataQRW::updateBehaviorCriteria(data.get()));
    MonitorPtr monitor(KYbpm::create(data.get()));
    ASSERT_TRUE(monitor);
    EXPECT_EQ(monitor->canRespondToSituations(), KYbpm_FUZZY_CHOICE::Unsure)
        << "unattended, and the session's event log bit kept";
    EXPECT_FALSE(KYbpmDataQRW::updateBehaviorCriteria(nullptr));
}
