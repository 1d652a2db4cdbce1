// The program status: one per process, fixed capacities, lists that never grow.
#include <gtest/gtest.h>

#include <memory>

#include "foundation/KYstdPgmStat.h"

namespace {

std::unique_ptr<KYstdPgmStat_DATA> PreparedData(const wchar_t* title) {
    auto data = std::make_unique<KYstdPgmStat_DATA>();
    data->SetResources(GetModuleHandleW(nullptr));
    data->AllocateSituations(5);
    data->AllocateDetails(10);
    data->SetTitle(title);
    return data;
}

TEST(ProgramStatus, ATitleStartingWithABlankCreatesNoStatus) {
    auto data = PreparedData(L" Launch Panel");
    EXPECT_FALSE(data->IsValid());
    EXPECT_EQ(KYstdPgmStat::CreateStatus(data), nullptr);
    EXPECT_NE(data, nullptr) << "a refused data object stays with its holder";
}

TEST(ProgramStatus, OneStatusPerProcessUntilItIsDeleted) {
    auto first = PreparedData(L"Launch Panel");
    std::unique_ptr<KYstdPgmStat> status(KYstdPgmStat::CreateStatus(first));
    ASSERT_NE(status, nullptr);
    EXPECT_EQ(first, nullptr) << "the status took the data over";
    auto second = PreparedData(L"Launch Panel");
    EXPECT_EQ(KYstdPgmStat::CreateStatus(second), status.get());
    status.reset();
    std::unique_ptr<KYstdPgmStat> again(KYstdPgmStat::CreateStatus(second));
    EXPECT_NE(again, nullptr);
}

TEST(ProgramStatus, ListsNeverGrowPastTheirCapacity) {
    auto data = PreparedData(L"Launch Panel");
    for (uint32_t n = 1; n <= 5; ++n)
        EXPECT_NE(data->AddSituation(27000 + n, KYstdPgmStat_DATA::kAfterLast), nullptr);
    EXPECT_EQ(data->AddSituation(27006, KYstdPgmStat_DATA::kAfterLast), nullptr);
    EXPECT_EQ(data->SituationCount(), 5u);
    EXPECT_EQ(data->Situation(4), 27005u);
    for (uint32_t n = 0; n < 10; ++n)
        EXPECT_NE(data->AddDetail(n, KYstdPgmStat_DATA::kAfterLast), nullptr);
    EXPECT_EQ(data->AddDetail(10, KYstdPgmStat_DATA::kAfterLast), nullptr);
    EXPECT_EQ(data->AddSituation(1, 5), nullptr) << "an index at the capacity is refused";
}

TEST(ProgramStatus, AnIndexPastTheCountLeavesZerosBefore) {
    auto data = PreparedData(L"Launch Panel");
    ASSERT_NE(data->AddSituation(27148, 3), nullptr);
    EXPECT_EQ(data->SituationCount(), 4u);
    for (uint32_t i = 0; i < 3; ++i) EXPECT_EQ(data->Situation(i), 0u);
    EXPECT_EQ(data->Situation(3), 27148u);
}

TEST(ProgramStatus, ClearingKeepsArraysAndCapacities) {
    auto data = PreparedData(L"Launch Panel");
    std::unique_ptr<KYstdPgmStat> status(KYstdPgmStat::CreateStatus(data));
    ASSERT_NE(status, nullptr);
    status->Data()->AddSituation(27151, KYstdPgmStat_DATA::kAfterLast);
    status->Data()->AddDetail(7, KYstdPgmStat_DATA::kAfterLast);
    EXPECT_EQ(status->FirstSituation(), 27151u);
    status->ClearStatus();
    EXPECT_TRUE(status->IsClean());
    EXPECT_EQ(status->Data()->SituationCapacity(), 5u);
    EXPECT_EQ(status->Data()->DetailCapacity(), 10u);
    EXPECT_NE(status->Data()->AddSituation(27152, KYstdPgmStat_DATA::kAfterLast), nullptr);
}

}  // namespace
