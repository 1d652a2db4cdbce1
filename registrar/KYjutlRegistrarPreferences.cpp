// Reading the user's preference store. Reading forgives: a store that doesn't exist,
// a value that is missing, of the wrong kind or out of range gives that value (or its
// whole group) its default. Only a real failure fails ObtainPreferences.
#include "registrar/KYjutlRegistrar.h"

#include <cstring>
#include <cwchar>
#include <new>

#include "registrar/RegistrarText.h"

namespace {

constexpr REGSAM kReadMask = 0x20009;
constexpr const wchar_t* kScreenPositionsKey = L"LV_ItemsScreenPos";
constexpr DWORD kFrameStyleNeverRead = 0x08000000;

constexpr DWORD kDefaultListViewStyle = 0x50000000;
constexpr DWORD kDefaultListViewExtra1 = 512;
constexpr DWORD kDefaultListViewExtra2 = 0;
constexpr DWORD kDefaultFrameStyle = 0x04CFC000;
constexpr DWORD kDefaultFrameExtra1 = 256;
constexpr uint32_t kDefaultControlBars = 31;

}  // namespace

void KYjutlRegistrar::ReadDword(const wchar_t* name, uint32_t failure, DWORD& value) {
    if (!m_keyPreferences) throw uint32_t{69};
    DWORD type = 0, size = sizeof value, data = 0;
    LONG rc = RegQueryValueExW(m_keyPreferences.get(), name, nullptr, &type,
                               reinterpret_cast<BYTE*>(&data), &size);
    if (rc != ERROR_SUCCESS || type != REG_DWORD || size != sizeof data) {
        m_uErrorDetail = static_cast<uint32_t>(rc);
        throw failure;
    }
    value = data;
}

bool KYjutlRegistrar::ObtainPreferences() {
    ClearErrors();
    Guard(202, [&] {
        if (!m_pPreferences) throw uint32_t{201};
        if (!m_hInstance) throw uint32_t{258};
        if (m_keyPreferences) throw uint32_t{68};
        if (!ResolvePreferencesKeyName()) throw uint32_t{0};
        ResetPreferences();
        if (m_pszRestoreFile) {
            m_bKeepPreferences = RestorePreferences();
            if (!m_bKeepPreferences) throw uint32_t{0};
        } else if (!m_bKeepPreferences && !DeletePreferences()) {
            throw uint32_t{0};
        }
        // A store that doesn't exist stays closed: every reader then meets 69 and
        // keeps its defaults. That is the first run.
        LONG rc = RegOpenKeyExW(HKEY_CURRENT_USER, m_strPreferencesKey.c_str(), 0, kReadMask,
                                m_keyPreferences.put());
        if (rc != ERROR_SUCCESS && rc != ERROR_FILE_NOT_FOUND) {
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{93};
        }
        bool read = ObtainSchemaId() && ObtainColors() && ObtainControlBarsStates() &&
                    ObtainColumnIndices() && ObtainItemScreenPositions() && ObtainItemsSortInfo() &&
                    ObtainListViewStyles() && ObtainMainFrameStyles() && ObtainPrintInfInitialDir() &&
                    ObtainWindowPlacement();
        if (!read) throw uint32_t{0};
        // The places really found win over the stored flag.
        KYjutlRegistrar_PREFS& p = *m_pPreferences;
        p.bItemsPlaced = p.pItemPositions && !p.pItemPositions->empty();
    });
    ClosePreferencesKey(true);
    return m_uError == 0;
}

bool KYjutlRegistrar::ObtainSchemaId() {
    ClearErrors();
    Guard(214, [&] {
        DWORD value = 0;
        ReadDword(L"SchemaID", 211, value);
        if (value != 1) throw uint32_t{213};
        m_pPreferences->uSchemaId = value;
    });
    if (Tolerate({69, 210, 211, 213})) m_pPreferences->uSchemaId = 1;
    return m_uError == 0;
}

bool KYjutlRegistrar::ObtainColors() {
    ClearErrors();
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    auto putDefaults = [&] {
        p.crBackground = GetSysColor(COLOR_BACKGROUND);
        p.crForeground = Contrast(p.crBackground);
    };
    Guard(82, [&] {
        putDefaults();
        COLORREF custom[16];
        DefaultCustomColors(custom, 16);
        DWORD background = 0, foreground = 0;
        ReadDword(L"LV_ColorBackground", 105, background);
        ReadDword(L"LV_ColorForeground", 108, foreground);
        // A shorter value overwrites only its own length of the defaults.
        DWORD size = sizeof custom;
        LONG rc = RegQueryValueExW(m_keyPreferences.get(), L"LV_ColorsCustom", nullptr, nullptr,
                                   reinterpret_cast<BYTE*>(custom), &size);
        if (rc != ERROR_SUCCESS) {
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{111};
        }
        p.crBackground = background;
        p.crForeground = foreground;
        std::memcpy(p.crCustom, custom, sizeof custom);
    });
    if (Tolerate({69, 104, 105, 107, 108, 110, 111})) {
        putDefaults();
        DefaultCustomColors(p.crCustom, 16);
    }
    return m_uError == 0;
}

bool KYjutlRegistrar::ObtainControlBarsStates() {
    ClearErrors();
    Guard(87, [&] {
        DWORD value = 0;
        ReadDword(L"ControlBarsStates", 85, value);
        m_pPreferences->uControlBarsStates = value % 32;
    });
    if (Tolerate({69, 84, 85})) m_pPreferences->uControlBarsStates = kDefaultControlBars;
    return m_uError == 0;
}

bool KYjutlRegistrar::ObtainItemScreenPositions() {
    ClearErrors();
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    auto emptyPositions = [&] {
        if (!p.pItemPositions) return;
        for (KYjutlRegistrar_LVISP* entry : *p.pItemPositions) {
            if (entry) free(entry->pszItemName);
            delete entry;
        }
        p.pItemPositions->clear();
    };
    ky::UniqueHKey positions;
    Guard(172, [&] {
        if (p.pItemPositions) {
            emptyPositions();
        } else {
            p.pItemPositions = new (std::nothrow) KYjutlRegistrar_LVISPArray;
            if (!p.pItemPositions) throw uint32_t{170};
        }
        if (!m_keyPreferences) throw uint32_t{69};
        LONG rc = RegOpenKeyExW(m_keyPreferences.get(), kScreenPositionsKey, 0, kReadMask,
                                positions.put());
        if (rc == ERROR_FILE_NOT_FOUND) throw uint32_t{0};
        if (rc != ERROR_SUCCESS) {
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{167};
        }
        ReadItemScreenPositions(positions.get());
    });
    if (CloseKey(positions) != ERROR_SUCCESS) RecordLateError(163);
    if (Tolerate({69, 157, 159, 160, 161, 166, 167, 169, 170, 171})) {
        emptyPositions();
        p.bItemsPlaced = false;
    }
    return m_uError == 0;
}

void KYjutlRegistrar::ReadItemScreenPositions(HKEY positions) {
    DWORD values = 0;
    LONG rc = RegQueryInfoKeyW(positions, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                               &values, nullptr, nullptr, nullptr, nullptr);
    if (rc != ERROR_SUCCESS) throw uint32_t{169};
    for (DWORD i = 0; i < values; ++i) {
        DWORD chars = kScratchChars, type = 0;
        int32_t data[4] = {};
        DWORD size = sizeof data;
        rc = RegEnumValueW(positions, i, m_wszA, &chars, nullptr, &type,
                           reinterpret_cast<BYTE*>(data), &size);
        // One bad value discards every place: a half-restored layout is worse than none.
        if (rc != ERROR_SUCCESS || type != REG_BINARY || size != sizeof data) {
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{157};
        }
        KYjutlRegistrar_LVISP entry{m_wszA, {data[0], data[1]}, {data[2], data[3]}};
        if (!AddItemScreenPosition(entry, nullptr)) throw uint32_t{0};
    }
}

bool KYjutlRegistrar::ObtainItemsSortInfo() {
    ClearErrors();
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    auto putDefaults = [&] {
        p.uSortColumnId = kRegistrarNameColumnId;
        p.iSortDirection = 1;
        p.bItemsPlaced = false;
    };
    Guard(179, [&] {
        if (!m_keyPreferences) throw uint32_t{69};
        uint32_t data[3] = {};
        DWORD type = 0, size = sizeof data;
        LONG rc = RegQueryValueExW(m_keyPreferences.get(), L"LV_ItemsSortInfo", nullptr, &type,
                                   reinterpret_cast<BYTE*>(data), &size);
        if (rc == ERROR_FILE_NOT_FOUND) {
            putDefaults();
            throw uint32_t{0};
        }
        if (rc != ERROR_SUCCESS || type != REG_BINARY || size != sizeof data) throw uint32_t{175};
        uint32_t column = data[0];
        int32_t direction = static_cast<int32_t>(data[1]);
        if (column < kRegistrarFirstColumnId || column >= kRegistrarFirstColumnId + kRegistrarColumnKinds)
            throw uint32_t{177};
        if (direction < -1 || direction > 1) throw uint32_t{178};
        p.uSortColumnId = column;
        p.iSortDirection = direction == 0 ? 1 : direction;
        p.bItemsPlaced = data[2] != 0;
    });
    if (Tolerate({69, 174, 175, 177, 178})) putDefaults();
    return m_uError == 0;
}

bool KYjutlRegistrar::ObtainListViewStyles() {
    ClearErrors();
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    Guard(190, [&] {
        DWORD basic = 0, extra1 = 0, extra2 = 0;
        ReadDword(L"LV_StylesBasic", 182, basic);
        ReadDword(L"LV_StylesExtra1", 185, extra1);
        ReadDword(L"LV_StylesExtra2", 188, extra2);
        p.dwListViewStyle = basic;
        p.dwListViewExtra1 = extra1;
        p.dwListViewExtra2 = extra2;
    });
    if (Tolerate({69, 181, 182, 184, 185, 187, 188})) {
        p.dwListViewStyle = kDefaultListViewStyle;
        p.dwListViewExtra1 = kDefaultListViewExtra1;
        p.dwListViewExtra2 = kDefaultListViewExtra2;
    }
    return m_uError == 0;
}

bool KYjutlRegistrar::ObtainMainFrameStyles() {
    ClearErrors();
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    Guard(199, [&] {
        DWORD basic = 0, extra1 = 0;
        ReadDword(L"MF_StylesBasic", 194, basic);
        ReadDword(L"MF_StylesExtra1", 197, extra1);
        p.dwFrameStyle = basic & ~kFrameStyleNeverRead;
        p.dwFrameExtra1 = extra1;
    });
    if (Tolerate({69, 193, 194, 196, 197})) {
        p.dwFrameStyle = kDefaultFrameStyle;
        p.dwFrameExtra1 = kDefaultFrameExtra1;
    }
    return m_uError == 0;
}

bool KYjutlRegistrar::ObtainPrintInfInitialDir() {
    ClearErrors();
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    Guard(208, [&] {
        if (!m_keyPreferences) throw uint32_t{69};
        wchar_t local[257];
        if (QueryText(m_keyPreferences.get(), L"PrintInfInitialDir", local, std::size(local)) !=
            ERROR_SUCCESS)
            throw uint32_t{205};
        size_t length = wcslen(local);
        if (length == 0 || length >= std::size(p.szPrintInfInitialDir)) throw uint32_t{207};
        wmemcpy(p.szPrintInfInitialDir, local, length + 1);
    });
    if (Tolerate({69, 205, 207})) DefaultPrintInfInitialDir();
    return m_uError == 0;
}

void KYjutlRegistrar::DefaultPrintInfInitialDir() {
    wchar_t* target = m_pPreferences->szPrintInfInitialDir;
    target[0] = L'\0';
    DWORD chars = GetModuleFileNameW(nullptr, m_wszA, kScratchChars);
    if (chars == 0 || chars >= kScratchChars) return;
    size_t length = registrar_text::DirectoryLength(m_wszA);
    if (length >= std::size(m_pPreferences->szPrintInfInitialDir)) return;
    wmemcpy(target, m_wszA, length);
    target[length] = L'\0';
}

bool KYjutlRegistrar::ObtainWindowPlacement() {
    ClearErrors();
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    Guard(217, [&] {
        WINDOWPLACEMENT local{};
        if (!DefaultWindowPlacement(p.wpPlacement) || !DefaultWindowPlacement(local))
            throw uint32_t{216};
        auto readSigned = [&](const wchar_t* name, uint32_t failure, LONG& field) {
            DWORD value = 0;
            ReadDword(name, failure, value);
            field = static_cast<LONG>(value);
        };
        readSigned(L"WinPlacePosMaxULCx", 219, local.ptMaxPosition.x);
        readSigned(L"WinPlacePosMaxULCy", 222, local.ptMaxPosition.y);
        readSigned(L"WinPlacePosMinULCx", 225, local.ptMinPosition.x);
        readSigned(L"WinPlacePosMinULCy", 228, local.ptMinPosition.y);
        readSigned(L"WinPlacePosNormLRCx", 231, local.rcNormalPosition.right);
        readSigned(L"WinPlacePosNormLRCy", 234, local.rcNormalPosition.bottom);
        readSigned(L"WinPlacePosNormULCx", 237, local.rcNormalPosition.left);
        readSigned(L"WinPlacePosNormULCy", 240, local.rcNormalPosition.top);
        DWORD flags = 0, show = 0;
        ReadDword(L"WinPlaceRestoreMin", 243, flags);
        if (flags & ~DWORD{3}) throw uint32_t{245};
        ReadDword(L"WinPlaceShowState", 247, show);
        if (show < 1 || show > 3) throw uint32_t{249};
        local.flags = flags;
        local.showCmd = show == SW_SHOWMINIMIZED ? SW_SHOWNORMAL : show;  // never start minimized
        p.wpPlacement = local;
    });
    if (Tolerate({69, 218, 219, 221, 222, 224, 225, 227, 228, 230, 231, 233, 234, 236, 237, 239,
                  240, 242, 243, 245, 246, 247, 249})) {
        if (!DefaultWindowPlacement(p.wpPlacement)) p.wpPlacement = WINDOWPLACEMENT{};
    }
    return m_uError == 0;
}
