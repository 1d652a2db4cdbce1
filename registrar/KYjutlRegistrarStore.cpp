// Writing the preference record back to the user's store. Every value is written
// with the kind the readers expect; a failed write doesn't roll back earlier ones.
#include "registrar/KYjutlRegistrar.h"

#include <cwchar>

namespace {

constexpr REGSAM kWriteMask = 0x20006;  // KEY_WRITE
constexpr const wchar_t* kScreenPositionsKey = L"LV_ItemsScreenPos";
constexpr DWORD kFrameStyleNeverStored = 0x08000000;

}  // namespace

void KYjutlRegistrar::WriteBinary(const wchar_t* name, const void* data, DWORD size, uint32_t failure) {
    if (!m_keyPreferences) throw uint32_t{69};
    LONG rc = RegSetValueExW(m_keyPreferences.get(), name, 0, REG_BINARY,
                             static_cast<const BYTE*>(data), size);
    if (rc != ERROR_SUCCESS) {
        m_uErrorDetail = static_cast<uint32_t>(rc);
        throw failure;
    }
}

void KYjutlRegistrar::WriteDword(const wchar_t* name, DWORD value, uint32_t failure) {
    if (!m_keyPreferences) throw uint32_t{69};
    LONG rc = RegSetValueExW(m_keyPreferences.get(), name, 0, REG_DWORD,
                             reinterpret_cast<const BYTE*>(&value), sizeof value);
    if (rc != ERROR_SUCCESS) {
        m_uErrorDetail = static_cast<uint32_t>(rc);
        throw failure;
    }
}

void KYjutlRegistrar::WriteText(const wchar_t* name, const wchar_t* text, uint32_t failure) {
    if (!m_keyPreferences) throw uint32_t{69};
    DWORD size = static_cast<DWORD>((wcslen(text) + 1) * sizeof(wchar_t));
    LONG rc = RegSetValueExW(m_keyPreferences.get(), name, 0, REG_SZ,
                             reinterpret_cast<const BYTE*>(text), size);
    if (rc != ERROR_SUCCESS) {
        m_uErrorDetail = static_cast<uint32_t>(rc);
        throw failure;
    }
}

bool KYjutlRegistrar::StorePreferences() {
    ClearErrors();
    Guard(251, [&] {
        if (!m_pPreferences) throw uint32_t{201};
        if (!m_hInstance) throw uint32_t{258};
        if (m_keyPreferences) throw uint32_t{68};
        if (!OpenPreferencesKeyForWriting()) throw uint32_t{0};
        bool stored = StoreColors() && StoreControlBarsStates() && StoreColumnIndices() &&
                      StoreItemScreenPositions() && StoreItemsSortInfo() && StoreListViewStyles() &&
                      StoreMainFrameStyles() && StorePrintInfInitialDir() && StoreSchemaId() &&
                      StoreWindowPlacement();
        if (!stored) throw uint32_t{0};
    });
    ClosePreferencesKey(false);
    return m_uError == 0;
}

bool KYjutlRegistrar::StoreColors() {
    ClearErrors();
    Guard(83, [&] {
        const KYjutlRegistrar_PREFS& p = *m_pPreferences;
        WriteDword(L"LV_ColorBackground", p.crBackground, 106);
        WriteDword(L"LV_ColorForeground", p.crForeground, 109);
        WriteBinary(L"LV_ColorsCustom", p.crCustom, sizeof p.crCustom, 112);
    });
    return m_uError == 0;
}

bool KYjutlRegistrar::StoreControlBarsStates() {
    ClearErrors();
    Guard(88, [&] { WriteDword(L"ControlBarsStates", m_pPreferences->uControlBarsStates, 86); });
    return m_uError == 0;
}

bool KYjutlRegistrar::StoreItemScreenPositions() {
    ClearErrors();
    bool openedHere = false;
    ky::UniqueHKey positions;
    Guard(173, [&] {
        if (!m_pPreferences) throw uint32_t{201};
        if (!m_keyPreferences) {
            if (!OpenPreferencesKeyForWriting()) throw uint32_t{0};
            openedHere = true;
        }
        LONG rc = RecurseDeleteKey(m_keyPreferences.get(), kScreenPositionsKey);
        if (rc != ERROR_SUCCESS && rc != ERROR_FILE_NOT_FOUND) {
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{165};
        }
        rc = RegCreateKeyExW(m_keyPreferences.get(), kScreenPositionsKey, 0, nullptr, 0, kWriteMask,
                             nullptr, positions.put(), nullptr);
        if (rc != ERROR_SUCCESS) {
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{168};
        }
        if (!m_pPreferences->pItemPositions) throw uint32_t{0};
        for (const KYjutlRegistrar_LVISP* entry : *m_pPreferences->pItemPositions) {
            if (!entry || !entry->pszItemName || !entry->pszItemName[0]) continue;
            const int32_t data[4] = {entry->ptIconView.x, entry->ptIconView.y,
                                     entry->ptSmallIconView.x, entry->ptSmallIconView.y};
            rc = RegSetValueExW(positions.get(), entry->pszItemName, 0, REG_BINARY,
                                reinterpret_cast<const BYTE*>(data), sizeof data);
            if (rc != ERROR_SUCCESS) {
                m_uErrorDetail = static_cast<uint32_t>(rc);
                throw uint32_t{158};
            }
        }
    });
    if (CloseKey(positions) != ERROR_SUCCESS) RecordLateError(164);
    if (openedHere) ClosePreferencesKey(false);
    return m_uError == 0;
}

bool KYjutlRegistrar::StoreItemsSortInfo() {
    ClearErrors();
    Guard(180, [&] {
        const KYjutlRegistrar_PREFS& p = *m_pPreferences;
        const uint32_t data[3] = {p.uSortColumnId, static_cast<uint32_t>(p.iSortDirection),
                                  p.bItemsPlaced ? 1u : 0u};
        WriteBinary(L"LV_ItemsSortInfo", data, sizeof data, 176);
    });
    return m_uError == 0;
}

bool KYjutlRegistrar::StoreListViewStyles() {
    ClearErrors();
    Guard(191, [&] {
        const KYjutlRegistrar_PREFS& p = *m_pPreferences;
        WriteDword(L"LV_StylesBasic", p.dwListViewStyle, 183);
        WriteDword(L"LV_StylesExtra1", p.dwListViewExtra1, 186);
        WriteDword(L"LV_StylesExtra2", p.dwListViewExtra2, 189);
    });
    return m_uError == 0;
}

bool KYjutlRegistrar::StoreMainFrameStyles() {
    ClearErrors();
    Guard(200, [&] {
        KYjutlRegistrar_PREFS& p = *m_pPreferences;
        p.dwFrameStyle &= ~kFrameStyleNeverStored;
        WriteDword(L"MF_StylesBasic", p.dwFrameStyle, 195);
        WriteDword(L"MF_StylesExtra1", p.dwFrameExtra1, 198);
    });
    return m_uError == 0;
}

bool KYjutlRegistrar::StorePrintInfInitialDir() {
    ClearErrors();
    Guard(209, [&] { WriteText(L"PrintInfInitialDir", m_pPreferences->szPrintInfInitialDir, 206); });
    return m_uError == 0;
}

bool KYjutlRegistrar::StoreSchemaId() {
    ClearErrors();
    Guard(215, [&] { WriteDword(L"SchemaID", m_pPreferences->uSchemaId, 212); });
    return m_uError == 0;
}

bool KYjutlRegistrar::StoreWindowPlacement() {
    ClearErrors();
    Guard(250, [&] {
        WINDOWPLACEMENT& w = m_pPreferences->wpPlacement;
        if (w.showCmd == SW_SHOWMINIMIZED) w.showCmd = SW_SHOWNORMAL;
        auto write = [&](const wchar_t* name, LONG value, uint32_t failure) {
            WriteDword(name, static_cast<DWORD>(value), failure);
        };
        write(L"WinPlacePosMaxULCx", w.ptMaxPosition.x, 220);
        write(L"WinPlacePosMaxULCy", w.ptMaxPosition.y, 223);
        write(L"WinPlacePosMinULCx", w.ptMinPosition.x, 226);
        write(L"WinPlacePosMinULCy", w.ptMinPosition.y, 229);
        write(L"WinPlacePosNormLRCx", w.rcNormalPosition.right, 232);
        write(L"WinPlacePosNormLRCy", w.rcNormalPosition.bottom, 235);
        write(L"WinPlacePosNormULCx", w.rcNormalPosition.left, 238);
        write(L"WinPlacePosNormULCy", w.rcNormalPosition.top, 241);
        WriteDword(L"WinPlaceRestoreMin", w.flags, 244);
        WriteDword(L"WinPlaceShowState", w.showCmd, 248);
    });
    return m_uError == 0;
}
