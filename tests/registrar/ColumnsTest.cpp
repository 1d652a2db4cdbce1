// The details columns: the three attempts at the stored list, the Name column's
// forced place, the order on screen, and reordering; with the core's small rules.
#include "tests/registrar/RegistrarTestSupport.h"

using namespace regtest;

namespace {

std::vector<int> Indices(const KYjutlRegistrar_PREFS& p) {
    return std::vector<int>(p.piColumnIndices, p.piColumnIndices + p.nColumnsShown);
}

}  // namespace

TEST_F(RegistrarTest, ColumnListIsTakenFromTheStoreOrTheNextAttempt) {
    struct Case {
        const wchar_t* stored;
        std::vector<int> shown;
        int nameColumn;
    };
    const Case cases[] = {
        {L"3 4", {5, 3, 4}, 0},
        {L"7, 7, 5", {7, 5}, 1},
        {L"0 1 2 3 4 5 6 7 8 9", {5, 7, 8, 4, 3}, 0},  // ten tokens: refused
        {L"abc", {5, 0}, 0},
        {L"", {5, 7, 8, 4, 3}, 0},
        {L" ,, ", {5, 7, 8, 4, 3}, 0},
        {L"9 -1 12", {5}, 0},
        {L"8,6  2", {5, 8, 6, 2}, 0},
    };
    auto registrar = Started();
    const KYjutlRegistrar_PREFS& p = *registrar->m_pPreferences;
    for (const Case& c : cases) {
        LP_SET_STRING(HKEY_CURRENT_USER, kStandardStore, L"LV_DtlsColIndices", c.stored);
        ASSERT_TRUE(registrar->ObtainPreferences()) << registrar->m_uError;
        EXPECT_EQ(Indices(p), c.shown) << lptest::Narrow(c.stored);
        EXPECT_EQ(p.iNameColumn, c.nameColumn) << lptest::Narrow(c.stored);
        ASSERT_EQ(p.pColumns->size(), c.shown.size());
        for (size_t i = 0; i < c.shown.size(); ++i)
            EXPECT_EQ((*p.pColumns)[i]->iSubItem, 24698 + c.shown[i]);
    }
}

TEST_F(RegistrarTest, NameColumnComesFirstOnScreenWhereverItIsListed) {
    LP_SET_STRING(HKEY_CURRENT_USER, kStandardStore, L"LV_DtlsColIndices", L"7 8 5 3");
    auto registrar = Started();
    const auto& columns = *registrar->m_pPreferences->pColumns;
    ASSERT_EQ(columns.size(), 4u);
    EXPECT_EQ(columns[0]->iOrder, 1);  // Size
    EXPECT_EQ(columns[1]->iOrder, 2);  // Type
    EXPECT_EQ(columns[2]->iOrder, 0);  // Name
    EXPECT_EQ(columns[3]->iOrder, 3);  // Location
    EXPECT_EQ(columns[2]->mask, 47u);
    EXPECT_STREQ(columns[3]->pszText, L"Location");
    EXPECT_EQ(columns[3]->cx, 300);
}

TEST_F(RegistrarTest, ReorderFollowsTheDraggedOrderAndTheStoreKeepsIt) {
    auto registrar = Started();
    KYjutlRegistrar_PREFS& p = *registrar->m_pPreferences;
    const int ids[5] = {24705, 24703, 24706, 24701, 24702};
    ASSERT_TRUE(registrar->ReorderColumns(5, ids));
    EXPECT_EQ(Indices(p), (std::vector<int>{7, 5, 8, 3, 4}));
    EXPECT_EQ((*p.pColumns)[3]->iSubItem, 24701);
    EXPECT_EQ(p.iNameColumn, 1);

    ASSERT_TRUE(registrar->StorePreferences()) << registrar->m_uError;
    std::wstring stored;
    ASSERT_TRUE(lptest::GetString(HKEY_CURRENT_USER, kStandardStore, L"LV_DtlsColIndices", stored));
    EXPECT_EQ(stored, L"7 5 8 3 4") << "numbers joined by one blank, no comma";

    const int unknown[5] = {24705, 24703, 24698, 24701, 24702};
    EXPECT_FALSE(registrar->ReorderColumns(5, unknown));
    EXPECT_FALSE(registrar->ReorderColumns(4, ids)) << "the count must match the shown columns";
}

TEST_F(RegistrarTest, StoringWithoutTheNameColumnIsRefused) {
    auto registrar = Started();
    KYjutlRegistrar_PREFS& p = *registrar->m_pPreferences;
    p.piColumnIndices[0] = 0;  // Name replaced by Accessed
    EXPECT_FALSE(registrar->StorePreferences());
    EXPECT_EQ(registrar->m_uError, 136u);
    p.piColumnIndices[0] = 7;  // Size twice
    EXPECT_FALSE(registrar->StorePreferences());
    EXPECT_EQ(registrar->m_uError, 135u);
}

TEST_F(RegistrarTest, SmallAccessorsKeepTheirLimits) {
    auto registrar = Started();
    const std::wstring fits = Repeat(L'd', 255);
    EXPECT_TRUE(registrar->SetPrintInfInitialDir(fits.c_str()));
    EXPECT_FALSE(registrar->SetPrintInfInitialDir(Repeat(L'e', 256).c_str()));
    std::wstring directory;
    EXPECT_TRUE(registrar->GetPrintInfInitialDir(directory));
    EXPECT_EQ(directory, fits);
    wchar_t small[10];
    EXPECT_FALSE(registrar->GetPrintInfInitialDir(small, 10));
    EXPECT_TRUE(registrar->SetPrintInfInitialDir(L""));
    EXPECT_TRUE(registrar->GetPrintInfInitialDir(small, 10));
    EXPECT_STREQ(small, L"");

    wcscpy(registrar->m_szSharedAccounts, L"guest");
    wchar_t one[1] = {L'x'};
    EXPECT_TRUE(registrar->GetSharedAccounts(one, 1));
    EXPECT_EQ(one[0], L'\0');
    wchar_t three[3];
    EXPECT_TRUE(registrar->GetSharedAccounts(three, 3));
    EXPECT_STREQ(three, L"gu");
    EXPECT_FALSE(registrar->GetSharedAccounts(three, 0));
}
