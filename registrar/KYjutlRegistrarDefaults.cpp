// The preference record's defaults and the ownership of what it points to: the
// shown columns, their indices and the remembered item places.
#include "registrar/KYjutlRegistrar.h"

#include <cstdlib>
#include <new>

namespace {

constexpr COLORREF kWhite = 0xFFFFFF;
constexpr COLORREF kBlack = 0x000000;

struct ColourPair {
    COLORREF background;
    COLORREF foreground;
};
// Pairs 1 to 3 of the custom colours; pair 0 is the desktop colour and its contrast.
constexpr ColourPair kPresetPairs[] = {
    {0xFFDFB5, 0xC67200},
    {0xE2FFCA, 0x499E00},
    {0xBED8FE, 0x0263F9},
};

}  // namespace

COLORREF KYjutlRegistrar::Contrast(COLORREF color) noexcept {
    unsigned sum = GetRValue(color) + GetGValue(color) + GetBValue(color);
    return sum > 383 ? kBlack : kWhite;
}

bool KYjutlRegistrar::DefaultCustomColors(COLORREF* colors, int count) {
    if (!colors || count < 1) return false;
    if (count % 2 != 0) {
        for (int i = 0; i < count; ++i) colors[i] = kWhite;
        return true;
    }
    const int half = count / 2;
    for (int i = 0; i < half; ++i) {
        ColourPair pair{kWhite, kBlack};
        if (i == 0) {
            pair.background = GetSysColor(COLOR_BACKGROUND);
            pair.foreground = Contrast(pair.background);
        } else if (i <= static_cast<int>(std::size(kPresetPairs))) {
            pair = kPresetPairs[i - 1];
        }
        colors[i] = pair.background;
        colors[i + half] = pair.foreground;
    }
    return true;
}

bool KYjutlRegistrar::DefaultWindowPlacement(WINDOWPLACEMENT& placement) {
    placement = WINDOWPLACEMENT{};
    placement.length = sizeof(WINDOWPLACEMENT);
    placement.flags = 0;
    placement.showCmd = SW_SHOWNORMAL;
    placement.ptMinPosition = {-1, -1};
    placement.ptMaxPosition = {-1, -1};
    placement.rcNormalPosition = {0, 0, 427, 320};
    const int cx = GetSystemMetrics(SM_CXSCREEN);
    const int cy = GetSystemMetrics(SM_CYSCREEN);
    if (cx == 0 || cy == 0) return true;
    placement.rcNormalPosition = {cx / 2 - cx / 3, cy / 2 - cy / 3, cx / 2 + cx / 3, cy / 2 + cy / 3};
    return true;
}

void KYjutlRegistrar::ResetPreferences() {
    if (!m_pPreferences) return;
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    DefaultWindowPlacement(p.wpPlacement);
    p.uControlBarsStates = 31;
    p.iNameColumn = -1;
    p.nColumnsKnown = kRegistrarColumnKinds;
    p.nColumnsShown = 0;
    for (int i = 0; i < kRegistrarColumnKinds; ++i) p.uColumnIds[i] = kRegistrarFirstColumnId + i;
    FreeColumns();
    FreeItemScreenPositions(&p.pItemPositions);
    p.uSortColumnId = kRegistrarNameColumnId;
    p.iSortDirection = 1;
    p.bItemsPlaced = false;
    p.crBackground = kWhite;
    p.crForeground = kBlack;
    p.dwListViewStyle = 0x50000000;
    p.dwListViewExtra1 = 512;
    p.dwListViewExtra2 = 0;
    p.dwFrameStyle = 0x04CFC000;
    p.dwFrameExtra1 = 256;
    p.uSchemaId = 1;
    p.szPrintInfInitialDir[0] = L'\0';
    DefaultCustomColors(p.crCustom, 16);
}

void KYjutlRegistrar::FreeColumn(LVCOLUMNW* column) noexcept {
    if (!column) return;
    free(column->pszText);
    delete column;
}

void KYjutlRegistrar::FreeColumns() {
    if (!m_pPreferences) return;
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    if (p.pColumns) {
        for (LVCOLUMNW* column : *p.pColumns) FreeColumn(column);
        delete p.pColumns;
        p.pColumns = nullptr;
    }
    delete[] p.piColumnIndices;
    p.piColumnIndices = nullptr;
}

bool KYjutlRegistrar::AddItemScreenPosition(const KYjutlRegistrar_LVISP& position,
                                            KYjutlRegistrar_LVISPArray* target) {
    ClearErrors();
    KYjutlRegistrar_LVISP* entry = nullptr;
    Guard(162, [&] {
        if (!m_pPreferences) throw uint32_t{201};
        if (!target) target = m_pPreferences->pItemPositions;
        if (!target) throw uint32_t{171};
        entry = new (std::nothrow) KYjutlRegistrar_LVISP{nullptr, position.ptIconView,
                                                         position.ptSmallIconView};
        if (!entry) throw uint32_t{159};
        entry->pszItemName = _wcsdup(position.pszItemName ? position.pszItemName : L"");
        if (!entry->pszItemName) throw uint32_t{160};
        try {
            target->push_back(entry);
        } catch (...) {
            throw uint32_t{161};
        }
        entry = nullptr;  // the array owns it now
    });
    if (entry) {
        free(entry->pszItemName);
        delete entry;
    }
    return m_uError == 0;
}

void KYjutlRegistrar::FreeItemScreenPositions(KYjutlRegistrar_LVISPArray** array) {
    if (!array) {
        if (!m_pPreferences) return;
        array = &m_pPreferences->pItemPositions;
    }
    if (!*array) return;
    for (KYjutlRegistrar_LVISP* entry : **array) {
        if (entry) free(entry->pszItemName);
        delete entry;
    }
    delete *array;
    *array = nullptr;
}
