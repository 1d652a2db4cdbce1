// The preference store read and written through the registrar: defaults, the
// forgiving readers, the all-or-nothing groups, and the store's exact bytes.
#include <cstring>
#include <utility>

#include "tests/registrar/RegistrarTestSupport.h"

using namespace regtest;

namespace {

const HKEY kUser = HKEY_CURRENT_USER;

void SetPlacement(const wchar_t* store, DWORD showState, DWORD restoreMin) {
    const std::pair<const wchar_t*, DWORD> values[] = {
        {L"WinPlacePosMaxULCx", static_cast<DWORD>(-8)}, {L"WinPlacePosMaxULCy", static_cast<DWORD>(-9)},
        {L"WinPlacePosMinULCx", 3000},                   {L"WinPlacePosMinULCy", 3001},
        {L"WinPlacePosNormLRCx", 700},                   {L"WinPlacePosNormLRCy", 500},
        {L"WinPlacePosNormULCx", 100},                   {L"WinPlacePosNormULCy", 50},
        {L"WinPlaceRestoreMin", restoreMin},             {L"WinPlaceShowState", showState},
    };
    for (const auto& [name, value] : values) LP_SET_DWORD(kUser, store, name, value);
}

std::wstring ProgramDirectory() {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring text = path;
    return text.substr(0, text.find_last_of(L'\\') + 1);
}

}  // namespace

TEST_F(RegistrarTest, FirstRunGivesTheDefaultRecordWithoutCreatingTheStore) {
    auto registrar = Started();
    ASSERT_NE(registrar->m_pPreferences, nullptr);
    const KYjutlRegistrar_PREFS& p = *registrar->m_pPreferences;
    EXPECT_EQ(p.uControlBarsStates, 31u);
    EXPECT_EQ(p.crBackground, GetSysColor(COLOR_BACKGROUND));
    EXPECT_EQ(p.crForeground, KYjutlRegistrar::Contrast(p.crBackground));
    EXPECT_EQ(p.crCustom[0], GetSysColor(COLOR_BACKGROUND));
    EXPECT_EQ(p.crCustom[1], 0xFFDFB5u);
    EXPECT_EQ(p.crCustom[9], 0xC67200u);
    EXPECT_EQ(p.crCustom[3], 0xBED8FEu);
    EXPECT_EQ(p.crCustom[11], 0x0263F9u);
    EXPECT_EQ(p.crCustom[7], 0xFFFFFFu);
    EXPECT_EQ(p.crCustom[15], 0x000000u);
    EXPECT_EQ(p.uSortColumnId, 24703u);
    EXPECT_EQ(p.iSortDirection, 1);
    EXPECT_FALSE(p.bItemsPlaced);
    ASSERT_NE(p.pItemPositions, nullptr);
    EXPECT_TRUE(p.pItemPositions->empty());
    EXPECT_EQ(p.dwListViewStyle, 0x50000000u);
    EXPECT_EQ(p.dwListViewExtra1, 512u);
    EXPECT_EQ(p.dwListViewExtra2, 0u);
    EXPECT_EQ(p.dwFrameStyle, 0x04CFC000u);
    EXPECT_EQ(p.dwFrameExtra1, 256u);
    EXPECT_EQ(p.uSchemaId, 1u);
    EXPECT_EQ(std::wstring(p.szPrintInfInitialDir), ProgramDirectory());

    const int cx = GetSystemMetrics(SM_CXSCREEN), cy = GetSystemMetrics(SM_CYSCREEN);
    EXPECT_EQ(p.wpPlacement.length, sizeof(WINDOWPLACEMENT));
    EXPECT_EQ(p.wpPlacement.showCmd, 1u);
    EXPECT_EQ(p.wpPlacement.ptMinPosition.x, -1);
    EXPECT_EQ(p.wpPlacement.ptMaxPosition.y, -1);
    EXPECT_EQ(p.wpPlacement.rcNormalPosition.left, cx / 2 - cx / 3);
    EXPECT_EQ(p.wpPlacement.rcNormalPosition.bottom, cy / 2 + cy / 3);

    EXPECT_FALSE(KeyExists(kUser, kStandardStore)) << "reading must not create the store";
    EXPECT_EQ(registrar->m_uError, 0u);
}

TEST_F(RegistrarTest, ValuesOfWrongKindSizeOrRangeTakeTheirDefaults) {
    LP_SET_DWORD(kUser, kStandardStore, L"SchemaID", 2);
    const uint64_t wide = 7;
    LP_SET_BINARY(kUser, kStandardStore, L"ControlBarsStates", &wide, 8, REG_QWORD);
    const uint32_t shortSort[3] = {24705, 1, 0};
    LP_SET_BINARY(kUser, kStandardStore, L"LV_ItemsSortInfo", shortSort, 11);
    LP_SET_STRING(kUser, kStandardStore, L"MF_StylesBasic", L"12");
    LP_SET_DWORD(kUser, kStandardStore, L"MF_StylesExtra1", 7);
    LP_SET_STRING(kUser, kStandardStore, L"PrintInfInitialDir", L"");
    LP_SET_DWORD(kUser, kStandardStore, L"LV_DtlsColFmtName", 3);
    LP_SET_DWORD(kUser, kStandardStore, L"LV_DtlsColWdthName", 0);
    LP_SET_DWORD(kUser, kStandardStore, L"LV_DtlsColFmtSize", 1);  // valid: centred
    LP_SET_DWORD(kUser, kStandardStore, L"LV_DtlsColWdthSize", static_cast<DWORD>(-5));
    const DWORD four = 1;
    LP_SET_BINARY(kUser, kStandardStore, L"LV_StylesBasic", &four, 4);  // right size, wrong kind
    LP_SET_DWORD(kUser, kStandardStore, L"LV_StylesExtra1", 2);
    LP_SET_DWORD(kUser, kStandardStore, L"LV_StylesExtra2", 3);

    auto registrar = Started();
    const KYjutlRegistrar_PREFS& p = *registrar->m_pPreferences;
    EXPECT_EQ(registrar->m_uError, 0u);
    EXPECT_EQ(p.uSchemaId, 1u);
    EXPECT_EQ(p.uControlBarsStates, 31u);
    EXPECT_EQ(p.uSortColumnId, 24703u);
    EXPECT_EQ(p.dwFrameStyle, 0x04CFC000u);
    EXPECT_EQ(p.dwFrameExtra1, 256u) << "a valid value of a refused group is discarded too";
    EXPECT_EQ(p.dwListViewStyle, 0x50000000u);
    EXPECT_EQ(p.dwListViewExtra2, 0u);
    EXPECT_EQ(std::wstring(p.szPrintInfInitialDir), ProgramDirectory());
    ASSERT_EQ(p.pColumns->size(), 5u);
    const LVCOLUMNW* name = (*p.pColumns)[0];
    const LVCOLUMNW* size = (*p.pColumns)[1];
    EXPECT_EQ(name->iSubItem, 24703);
    EXPECT_EQ(name->fmt, LVCFMT_LEFT);
    EXPECT_EQ(name->cx, 165);
    EXPECT_EQ(size->iSubItem, 24705);
    EXPECT_EQ(size->fmt, LVCFMT_CENTER) << "each column value stands on its own";
    EXPECT_EQ(size->cx, 70);
}

TEST_F(RegistrarTest, ValidValuesAreReadAsStored) {
    LP_SET_DWORD(kUser, kStandardStore, L"ControlBarsStates", 33);
    LP_SET_DWORD(kUser, kStandardStore, L"MF_StylesBasic", 0x0CCF0000);
    LP_SET_DWORD(kUser, kStandardStore, L"MF_StylesExtra1", 9);
    LP_SET_STRING(kUser, kStandardStore, L"PrintInfInitialDir", L"D:\\drivers\\");
    LP_SET_DWORD(kUser, kStandardStore, L"LV_DtlsColFmtType", 2);
    LP_SET_STRING(kUser, kStandardStore, L"LV_DtlsColTextType", L"Kind");

    auto registrar = Started();
    const KYjutlRegistrar_PREFS& p = *registrar->m_pPreferences;
    EXPECT_EQ(p.uControlBarsStates, 1u) << "taken modulo 32";
    EXPECT_EQ(p.dwFrameStyle, 0x04CF0000u) << "the 0x08000000 bit is never read";
    EXPECT_EQ(p.dwFrameExtra1, 9u);
    EXPECT_STREQ(p.szPrintInfInitialDir, L"D:\\drivers\\");
    const LVCOLUMNW* type = (*p.pColumns)[2];
    EXPECT_EQ(type->iSubItem, 24706);
    EXPECT_EQ(type->fmt, LVCFMT_RIGHT);
    EXPECT_STREQ(type->pszText, L"Kind");
    EXPECT_STREQ((*p.pColumns)[0]->pszText, L"Name") << "the heading from the resource module";
}

TEST_F(RegistrarTest, GroupsAreReadAllOrNothing) {
    LP_SET_DWORD(kUser, kStandardStore, L"LV_ColorBackground", 0x112233);
    LP_SET_DWORD(kUser, kStandardStore, L"LV_ColorForeground", 0x445566);
    LP_SET_DWORD(kUser, kStandardStore, L"LV_StylesBasic", 1);
    LP_SET_DWORD(kUser, kStandardStore, L"LV_StylesExtra1", 2);
    SetPlacement(kStandardStore, 1, 4);  // one bad value among ten

    auto registrar = Started();
    {
        const KYjutlRegistrar_PREFS& p = *registrar->m_pPreferences;
        EXPECT_EQ(p.crBackground, GetSysColor(COLOR_BACKGROUND)) << "custom colours missing";
        EXPECT_EQ(p.crForeground, KYjutlRegistrar::Contrast(p.crBackground));
        EXPECT_EQ(p.dwListViewStyle, 0x50000000u) << "LV_StylesExtra2 missing";
        EXPECT_EQ(p.dwListViewExtra1, 512u);
        EXPECT_EQ(p.wpPlacement.rcNormalPosition.right,
                  GetSystemMetrics(SM_CXSCREEN) / 2 + GetSystemMetrics(SM_CXSCREEN) / 3);
        EXPECT_EQ(p.wpPlacement.ptMinPosition.x, -1);
    }

    const COLORREF two[2] = {0xABCDEF, 0x123456};  // shorter than 64 bytes
    LP_SET_BINARY(kUser, kStandardStore, L"LV_ColorsCustom", two, sizeof two);
    LP_SET_DWORD(kUser, kStandardStore, L"LV_StylesExtra2", 3);
    LP_SET_DWORD(kUser, kStandardStore, L"WinPlaceRestoreMin", 2);
    ASSERT_TRUE(registrar->ObtainPreferences()) << registrar->m_uError;
    const KYjutlRegistrar_PREFS& p = *registrar->m_pPreferences;
    EXPECT_EQ(p.crBackground, 0x112233u);
    EXPECT_EQ(p.crForeground, 0x445566u);
    EXPECT_EQ(p.crCustom[0], 0xABCDEFu);
    EXPECT_EQ(p.crCustom[1], 0x123456u);
    EXPECT_EQ(p.crCustom[2], 0xE2FFCAu) << "beyond the stored bytes the defaults stay";
    EXPECT_EQ(p.dwListViewStyle, 1u);
    EXPECT_EQ(p.dwListViewExtra1, 2u);
    EXPECT_EQ(p.dwListViewExtra2, 3u);
    EXPECT_EQ(p.wpPlacement.flags, 2u);
    EXPECT_EQ(p.wpPlacement.ptMaxPosition.x, -8);
    EXPECT_EQ(p.wpPlacement.ptMaxPosition.y, -9);
    EXPECT_EQ(p.wpPlacement.ptMinPosition.y, 3001);
    EXPECT_EQ(p.wpPlacement.rcNormalPosition.left, 100);
    EXPECT_EQ(p.wpPlacement.rcNormalPosition.top, 50);
    EXPECT_EQ(p.wpPlacement.rcNormalPosition.right, 700);
    EXPECT_EQ(p.wpPlacement.rcNormalPosition.bottom, 500);
}

TEST_F(RegistrarTest, PlacementMinimizedIsReadAndStoredAsNormal) {
    SetPlacement(kStandardStore, 2, 0);
    auto registrar = Started();
    WINDOWPLACEMENT& w = registrar->m_pPreferences->wpPlacement;
    EXPECT_EQ(w.showCmd, 1u);
    EXPECT_EQ(w.rcNormalPosition.right, 700);

    w.showCmd = SW_SHOWMINIMIZED;
    ASSERT_TRUE(registrar->StorePreferences()) << registrar->m_uError;
    DWORD stored = 0;
    ASSERT_TRUE(lptest::GetDword(kUser, kStandardStore, L"WinPlaceShowState", stored));
    EXPECT_EQ(stored, 1u);
    EXPECT_EQ(w.showCmd, 1u);
    SetPlacement(kStandardStore, 4, 0);
    ASSERT_TRUE(registrar->ObtainPreferences());
    EXPECT_EQ(w.rcNormalPosition.right, GetSystemMetrics(SM_CXSCREEN) / 2 + GetSystemMetrics(SM_CXSCREEN) / 3)
        << "a show state out of range sends the placement back to its default";
}

TEST_F(RegistrarTest, SortInfoKeepsValidFieldsAndRefusesTheRest) {
    struct Case {
        uint32_t data[3];
        uint32_t column;
        int direction;
    };
    const Case cases[] = {
        {{24705, static_cast<uint32_t>(-1), 0}, 24705, -1},
        {{24698, 0, 0}, 24698, 1},
        {{24700, 2, 0}, 24703, 1},
        {{24697, 1, 0}, 24703, 1},
        {{24707, 1, 0}, 24703, 1},
    };
    auto registrar = Started();
    for (const Case& c : cases) {
        LP_SET_BINARY(kUser, kStandardStore, L"LV_ItemsSortInfo", c.data, 12);
        ASSERT_TRUE(registrar->ObtainPreferences());
        EXPECT_EQ(registrar->m_pPreferences->uSortColumnId, c.column) << c.data[0] << " " << c.data[1];
        EXPECT_EQ(registrar->m_pPreferences->iSortDirection, c.direction) << c.data[0] << " " << c.data[1];
    }
    const uint32_t asText[3] = {24705, 1, 0};
    LP_SET_BINARY(kUser, kStandardStore, L"LV_ItemsSortInfo", asText, 12, REG_DWORD_BIG_ENDIAN);
    ASSERT_TRUE(registrar->ObtainPreferences());
    EXPECT_EQ(registrar->m_pPreferences->uSortColumnId, 24703u) << "only binary values count";
}

TEST_F(RegistrarTest, ScreenPositionsDecideWhetherItemsArePlaced) {
    const int32_t first[4] = {10, 20, 30, 40};
    const int32_t second[4] = {-1, static_cast<int32_t>(0x80000000), 5, 6};
    LP_SET_BINARY(kUser, kPositionsKey, L"Editor", first, 16);
    LP_SET_BINARY(kUser, kPositionsKey, L"Mail", second, 16);
    const uint32_t sort[3] = {24703, 1, 0};
    LP_SET_BINARY(kUser, kStandardStore, L"LV_ItemsSortInfo", sort, 12);

    auto registrar = Started();
    KYjutlRegistrar_PREFS& p = *registrar->m_pPreferences;
    ASSERT_EQ(p.pItemPositions->size(), 2u);
    EXPECT_TRUE(p.bItemsPlaced) << "places found win over the stored flag";
    const KYjutlRegistrar_LVISP* mail = nullptr;
    for (const KYjutlRegistrar_LVISP* entry : *p.pItemPositions)
        if (std::wstring(entry->pszItemName) == L"Mail") mail = entry;
    ASSERT_NE(mail, nullptr);
    EXPECT_EQ(mail->ptIconView.x, -1);
    EXPECT_EQ(mail->ptIconView.y, kRegistrarUnknownCoordinate);
    EXPECT_EQ(mail->ptSmallIconView.y, 6);

    const int32_t shortOne[4] = {1, 2, 3, 4};
    LP_SET_BINARY(kUser, kPositionsKey, L"Broken", shortOne, 15);
    ASSERT_TRUE(registrar->ObtainPreferences());
    EXPECT_TRUE(p.pItemPositions->empty()) << "one bad value discards all places";
    EXPECT_FALSE(p.bItemsPlaced);

    lptest::DeleteTree(kUser, kPositionsKey);
    const uint32_t placed[3] = {24703, 1, 1};
    LP_SET_BINARY(kUser, kStandardStore, L"LV_ItemsSortInfo", placed, 12);
    ASSERT_TRUE(registrar->ObtainPreferences());
    EXPECT_FALSE(p.bItemsPlaced) << "no places, so nothing stands placed";
}

TEST_F(RegistrarTest, ItemPositionsAreStoredAloneAndNamelessOnesSkipped) {
    auto registrar = Started();
    KYjutlRegistrar_LVISP entry{const_cast<wchar_t*>(L"Calc"), {1, 2}, {3, 4}};
    ASSERT_TRUE(registrar->AddItemScreenPosition(entry, nullptr));
    KYjutlRegistrar_LVISP nameless{const_cast<wchar_t*>(L""), {5, 6}, {7, 8}};
    ASSERT_TRUE(registrar->AddItemScreenPosition(nameless, nullptr));
    LP_SET_BINARY(kUser, kPositionsKey, L"Stale", "0123456789abcdef", 16);

    ASSERT_TRUE(registrar->StoreItemScreenPositions()) << registrar->m_uError;
    StoreDump dump = DumpKey(kUser, kPositionsKey);
    ASSERT_EQ(dump.size(), 1u) << "the old places are replaced, the nameless one skipped";
    const int32_t expected[4] = {1, 2, 3, 4};
    ASSERT_EQ(dump[L"Calc"].data.size(), 16u);
    EXPECT_EQ(std::memcmp(dump[L"Calc"].data.data(), expected, 16), 0);
    EXPECT_EQ(dump[L"Calc"].type, static_cast<DWORD>(REG_BINARY));

    registrar->FreeItemScreenPositions(nullptr);
    EXPECT_EQ(registrar->m_pPreferences->pItemPositions, nullptr);
    KYjutlRegistrar_LVISPArray* own = nullptr;
    EXPECT_FALSE(registrar->AddItemScreenPosition(entry, own));
    EXPECT_EQ(registrar->m_uError, 171u);
}

TEST_F(RegistrarTest, EachStoreReadThenWrittenGivesItsBytesBack) {
    const COLORREF custom[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    const uint32_t sort[3] = {24701, static_cast<uint32_t>(-1), 1};
    const int32_t place[4] = {11, 12, 13, 14};
    for (const auto& [mode, storeKey] : {std::pair{KYjutlRegistrar::kModeStandard, kStandardStore},
                                         std::pair{KYjutlRegistrar::kModeClassic, kClassicStore}}) {
        const std::wstring store = storeKey;
        LP_SET_DWORD(kUser, store, L"SchemaID", 1);
        LP_SET_DWORD(kUser, store, L"LV_ColorBackground", 0x00102030);
        LP_SET_DWORD(kUser, store, L"LV_ColorForeground", 0x00405060);
        LP_SET_BINARY(kUser, store, L"LV_ColorsCustom", custom, sizeof custom);
        LP_SET_DWORD(kUser, store, L"ControlBarsStates", 21);
        LP_SET_STRING(kUser, store, L"LV_DtlsColIndices", L"8 5 1");
        for (const wchar_t* kind : {L"Type", L"Name", L"Attribs"}) {
            LP_SET_STRING(kUser, store, std::wstring(L"LV_DtlsColText") + kind, std::wstring(L"H-") + kind);
            LP_SET_DWORD(kUser, store, std::wstring(L"LV_DtlsColFmt") + kind, kind[0] == L'T' ? 1 : 2);
            LP_SET_DWORD(kUser, store, std::wstring(L"LV_DtlsColWdth") + kind, 77);
        }
        LP_SET_BINARY(kUser, store + L"\\LV_ItemsScreenPos", L"Editor", place, 16);
        LP_SET_BINARY(kUser, store, L"LV_ItemsSortInfo", sort, 12);
        LP_SET_DWORD(kUser, store, L"LV_StylesBasic", 0x50000001);
        LP_SET_DWORD(kUser, store, L"LV_StylesExtra1", 513);
        LP_SET_DWORD(kUser, store, L"LV_StylesExtra2", 4);
        LP_SET_DWORD(kUser, store, L"MF_StylesBasic", 0x04CF0000);
        LP_SET_DWORD(kUser, store, L"MF_StylesExtra1", 257);
        LP_SET_STRING(kUser, store, L"PrintInfInitialDir", L"E:\\inf\\");
        SetPlacement(storeKey, 3, 1);
        const StoreDump original = DumpKey(kUser, store);

        auto registrar = Started(mode);
        EXPECT_EQ(registrar->m_pPreferences->iNameColumn, 1);
        lptest::DeleteTree(kUser, store);
        ASSERT_TRUE(registrar->StorePreferences()) << registrar->m_uError;
        EXPECT_EQ(DumpKey(kUser, store), original) << lptest::Narrow(store);
    }
}

TEST_F(RegistrarTest, OverlongStringsAreRefusedWithoutOverrun) {
    LP_SET_STRING(kUser, kStandardStore, L"PrintInfInitialDir", Repeat(L'p', 256));
    LP_SET_STRING(kUser, kStandardStore, L"LV_DtlsColTextName", Repeat(L'n', 1023));
    LP_SET_STRING(kUser, kStandardStore, L"LV_DtlsColTextSize", Repeat(L's', 1024));
    const std::wstring unterminated = Repeat(L't', 1024);
    LP_SET_BINARY(kUser, kStandardStore, L"LV_DtlsColTextType", unterminated.data(), 2048, REG_SZ);
    LP_SET_STRING(kUser, kStandardStore, L"LV_DtlsColIndices", L"4 " + Repeat(L' ', 1100) + L"3");

    auto registrar = Started();
    const KYjutlRegistrar_PREFS& p = *registrar->m_pPreferences;
    EXPECT_EQ(registrar->m_uError, 0u);
    EXPECT_EQ(std::wstring(p.szPrintInfInitialDir), ProgramDirectory());
    ASSERT_EQ(p.nColumnsShown, 5) << "an overlong column list gives the default list";
    EXPECT_EQ(std::wstring((*p.pColumns)[0]->pszText), Repeat(L'n', 1023)) << "1023 characters fit";
    EXPECT_STREQ((*p.pColumns)[1]->pszText, L"Size");
    EXPECT_STREQ((*p.pColumns)[2]->pszText, L"Type");

    LP_SET_STRING(kUser, kStandardStore, L"PrintInfInitialDir", Repeat(L'q', 255));
    ASSERT_TRUE(registrar->ObtainPreferences());
    EXPECT_EQ(std::wstring(p.szPrintInfInitialDir), Repeat(L'q', 255));
}

TEST_F(RegistrarTest, StoreNeedsItsRecordAndAFailedStartLeavesNothing) {
    auto registrar = Fresh();
    EXPECT_FALSE(registrar->StorePreferences());
    EXPECT_EQ(registrar->m_uError, 201u);

    auto unresourced = std::make_unique<KYjutlRegistrar>();
    EXPECT_FALSE(unresourced->Initialize(nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(unresourced->m_uError, 258u);
    EXPECT_EQ(unresourced->m_pPreferences, nullptr);
    EXPECT_TRUE(unresourced->m_strPreferencesKey.empty());
    EXPECT_FALSE(unresourced->ObtainPreferences());
    EXPECT_EQ(unresourced->m_uError, 201u);
}
