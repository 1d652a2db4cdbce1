// The store as a whole: deleted, saved to a hive file and restored from one.
#include <utility>

#include "foundation/UniqueHandle.h"
#include "tests/registrar/RegistrarTestSupport.h"

using namespace regtest;

namespace {

const HKEY kUser = HKEY_CURRENT_USER;

void FillStore() {
    const int32_t place[4] = {1, 2, 3, 4};
    const uint32_t sort[3] = {24705, static_cast<uint32_t>(-1), 1};
    LP_SET_DWORD(kUser, kStandardStore, L"ControlBarsStates", 12);
    LP_SET_STRING(kUser, kStandardStore, L"LV_DtlsColIndices", L"5 1");
    LP_SET_STRING(kUser, kStandardStore, L"PrintInfInitialDir", L"F:\\printers\\");
    LP_SET_BINARY(kUser, kStandardStore, L"LV_ItemsSortInfo", sort, 12);
    LP_SET_BINARY(kUser, kPositionsKey, L"Editor", place, 16);
}

}  // namespace

TEST_F(RegistrarTest, BackupThenRestoreGivesTheSameStoreBack) {
    FillStore();
    const StoreDump original = DumpKey(kUser, kStandardStore);
    lptest::TempDir dir;
    const std::wstring file = dir / L"prefs.hiv";

    auto registrar = Started();
    ASSERT_TRUE(registrar->BackupPreferences(file.c_str()))
        << registrar->m_uError << " " << registrar->m_uErrorDetail;
    ASSERT_TRUE(lptest::FileExists(file));
    ASSERT_TRUE(registrar->BackupPreferences(file.c_str())) << "an existing file is replaced";

    LP_SET_DWORD(kUser, kStandardStore, L"ControlBarsStates", 3);
    LP_SET_DWORD(kUser, kStandardStore, L"Intruder", 1);
    lptest::DeleteTree(kUser, kPositionsKey);
    registrar->m_pszRestoreFile = file.c_str();
    ASSERT_TRUE(registrar->ObtainPreferences()) << registrar->m_uError << " " << registrar->m_uErrorDetail;
    EXPECT_TRUE(registrar->m_bKeepPreferences);
    EXPECT_EQ(DumpKey(kUser, kStandardStore), original);
    const KYjutlRegistrar_PREFS& p = *registrar->m_pPreferences;
    EXPECT_EQ(p.uControlBarsStates, 12u);
    EXPECT_EQ(p.uSortColumnId, 24705u);
    EXPECT_EQ(p.pItemPositions->size(), 1u);
    EXPECT_TRUE(p.bItemsPlaced);
}

TEST_F(RegistrarTest, AnEmptyStoreIsRestoredWithoutMountingItsHive) {
    LP_CREATE_KEY(kUser, kStandardStore);
    lptest::TempDir dir;
    const std::wstring file = dir / L"empty.hiv";
    auto registrar = Started();
    ASSERT_TRUE(registrar->BackupPreferences(file.c_str())) << registrar->m_uError;
    FillStore();
    // Another reader of the file: mounting the hive, which wants the file to
    // itself, would fail now.
    ky::UniqueFile reader(
        CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(reader);
    registrar->m_pszRestoreFile = file.c_str();
    EXPECT_TRUE(registrar->ObtainPreferences()) << registrar->m_uError << " " << registrar->m_uErrorDetail;
    EXPECT_EQ(CountEntries(kUser, kStandardStore), 0);
}

TEST_F(RegistrarTest, ARelativeRestoreFileIsFoundFromTheCurrentFolder) {
    FillStore();
    const StoreDump original = DumpKey(kUser, kStandardStore);
    lptest::TempDir dir;
    ASSERT_TRUE(CreateDirectoryW((dir / L"saved").c_str(), nullptr));
    auto registrar = Started();
    ASSERT_TRUE(registrar->BackupPreferences((dir / L"saved\\prefs.hiv").c_str())) << registrar->m_uError;
    wchar_t previous[MAX_PATH];
    ASSERT_GT(GetCurrentDirectoryW(MAX_PATH, previous), 0u);
    for (const auto& [folder, name] : {std::pair{dir.path(), L"saved\\prefs.hiv"},
                                       std::pair{dir / L"saved", L"prefs.hiv"}}) {
        lptest::DeleteTree(kUser, kStandardStore);
        ASSERT_TRUE(SetCurrentDirectoryW(folder.c_str()));
        registrar->m_pszRestoreFile = name;
        const bool restored = registrar->ObtainPreferences();
        SetCurrentDirectoryW(previous);
        EXPECT_TRUE(restored) << lptest::Narrow(name) << ": " << registrar->m_uError;
        EXPECT_EQ(DumpKey(kUser, kStandardStore), original) << lptest::Narrow(name);
    }
}

TEST_F(RegistrarTest, MissingRestoreFileLeavesTheOldStore) {
    FillStore();
    const StoreDump original = DumpKey(kUser, kStandardStore);
    lptest::TempDir dir;
    const std::wstring file = dir / L"absent.hiv";
    auto registrar = Started();
    registrar->m_pszRestoreFile = file.c_str();
    EXPECT_FALSE(registrar->ObtainPreferences());
    EXPECT_EQ(registrar->m_uError, 98u);
    EXPECT_FALSE(registrar->m_bKeepPreferences);
    EXPECT_EQ(DumpKey(kUser, kStandardStore), original);
}

TEST_F(RegistrarTest, GarbageHiveLeavesAnEmptyStoreAnd95) {
    FillStore();
    lptest::TempDir dir;
    const std::wstring file = dir / L"garbage.hiv";
    LP_WRITE_FILE(file, std::string(8192, 'g'));
    auto registrar = Started();
    registrar->m_pszRestoreFile = file.c_str();
    EXPECT_FALSE(registrar->ObtainPreferences());
    EXPECT_EQ(registrar->m_uError, 95u);
    EXPECT_EQ(CountEntries(kUser, kStandardStore), 0) << "the old store is gone, the new key is empty";

    registrar->m_pszRestoreFile = nullptr;
    ASSERT_TRUE(registrar->ObtainPreferences());
    EXPECT_EQ(registrar->m_pPreferences->uControlBarsStates, 31u) << "the next read starts from defaults";
}

TEST_F(RegistrarTest, BackupRefusesADirectoryAndAMissingName) {
    FillStore();
    lptest::TempDir dir;
    const std::wstring folder = dir / L"folder";
    ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
    auto registrar = Started();
    EXPECT_FALSE(registrar->BackupPreferences(folder.c_str()));
    EXPECT_EQ(registrar->m_uError, 102u);
    EXPECT_FALSE(registrar->BackupPreferences(L""));
    EXPECT_EQ(registrar->m_uError, 103u);
}

TEST_F(RegistrarTest, DeleteRemovesOnlyTheModesStore) {
    auto registrar = Started();
    EXPECT_TRUE(registrar->DeletePreferences()) << "no Settings key: nothing to delete";
    FillStore();
    LP_SET_DWORD(kUser, kClassicStore, L"ControlBarsStates", 5);
    EXPECT_TRUE(registrar->DeletePreferences()) << registrar->m_uError << " " << registrar->m_uErrorDetail;
    EXPECT_FALSE(KeyExists(kUser, kStandardStore));
    EXPECT_TRUE(KeyExists(kUser, kClassicStore));
    EXPECT_TRUE(registrar->DeletePreferences()) << "no store of the mode under Settings";

    auto classic = Started(KYjutlRegistrar::kModeClassic);
    EXPECT_EQ(classic->m_pPreferences->uControlBarsStates, 5u);
    classic->m_bKeepPreferences = false;
    ASSERT_TRUE(classic->ObtainPreferences());
    EXPECT_EQ(classic->m_pPreferences->uControlBarsStates, 31u);
    EXPECT_FALSE(KeyExists(kUser, kClassicStore));
}
