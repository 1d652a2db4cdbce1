// The details columns of the preference store: which column kinds show, in which
// order, and each one's heading, alignment and width. The Name column can never be
// dropped, and on screen it always comes first.
#include "registrar/KYjutlRegistrar.h"

#include <algorithm>
#include <cstdlib>
#include <cwchar>
#include <new>
#include <utility>

#include "registrar/RegistrarText.h"

namespace {

struct ColumnKind {
    const wchar_t* suffix;  // of LV_DtlsColText<kind>, LV_DtlsColFmt<kind>, LV_DtlsColWdth<kind>
    DWORD alignment;        // as stored: 0 left, 1 centre, 2 right
    int width;
};
constexpr ColumnKind kColumnKinds[kRegistrarColumnKinds] = {
    {L"Accessed", 0, 140}, {L"Attribs", 2, 75}, {L"Created", 0, 140},
    {L"Location", 0, 300}, {L"Modified", 0, 140}, {L"Name", 0, 165},
    {L"Params", 0, 100},   {L"Size", 2, 70},    {L"Type", 0, 200},
};
constexpr const wchar_t* kDefaultColumnIndices = L"5, 7, 8, 4, 3";
constexpr UINT kColumnMask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM | LVCF_ORDER;  // 47

bool ValueName(wchar_t (&name)[64], const wchar_t* prefix, int kind) {
    return swprintf(name, std::size(name), L"%ls%ls", prefix, kColumnKinds[kind].suffix) > 0;
}

bool IsSeparator(wchar_t c) { return c == L',' || c == L' '; }

}  // namespace

bool KYjutlRegistrar::ObtainColumnIndices() {
    ClearErrors();
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    Guard(140, [&] {
        p.nColumnsKnown = kRegistrarColumnKinds;
        for (int i = 0; i < kRegistrarColumnKinds; ++i) p.uColumnIds[i] = kRegistrarFirstColumnId + i;
        int taken[kRegistrarColumnKinds] = {};
        bool good = false;
        for (int attempt = 1; attempt <= 3 && !good; ++attempt) {
            if (attempt == 1)
                good = m_keyPreferences && QueryText(m_keyPreferences.get(), L"LV_DtlsColIndices",
                                                     m_wszA, kScratchChars) == ERROR_SUCCESS;
            else if (attempt == 2)
                good = registrar_text::CopyText(kDefaultColumnIndices, m_wszA, kScratchChars);
            else
                good = swprintf(m_wszA, kScratchChars, L"%d", kRegistrarNameColumnIndex) > 0;
            good = good && ParseColumnIndices(m_wszA, taken);
        }
        if (!good || p.nColumnsShown < 1) throw uint32_t{128};
        delete[] p.piColumnIndices;
        p.piColumnIndices = new (std::nothrow) int[p.nColumnsShown];
        if (!p.piColumnIndices) throw uint32_t{133};
        std::copy_n(taken, p.nColumnsShown, p.piColumnIndices);
        if (!ObtainColumns()) throw uint32_t{0};
    });
    if (m_uError != 0) FreeColumns();
    return m_uError == 0;
}

bool KYjutlRegistrar::ParseColumnIndices(const wchar_t* text, int* taken) {
    int tokens[kRegistrarColumnKinds];
    int count = 0;
    for (const wchar_t* c = text; *c;) {
        if (IsSeparator(*c)) {
            ++c;
            continue;
        }
        const wchar_t* start = c;
        while (*c && !IsSeparator(*c)) ++c;
        if (count == kRegistrarColumnKinds) return false;  // more tokens than column kinds
        wchar_t token[16] = {};
        wmemcpy(token, start, std::min<size_t>(c - start, std::size(token) - 1));
        tokens[count++] = _wtoi(token);
    }
    if (count == 0) return false;
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    p.nColumnsShown = 0;
    p.iNameColumn = -1;
    bool seen[kRegistrarColumnKinds] = {};
    for (int i = 0; i < count; ++i) {
        int index = tokens[i];
        if (index < 0 || index >= kRegistrarColumnKinds || seen[index]) continue;
        seen[index] = true;
        if (index == kRegistrarNameColumnIndex) p.iNameColumn = p.nColumnsShown;
        taken[p.nColumnsShown++] = index;
    }
    if (p.iNameColumn < 0) {
        std::move_backward(taken, taken + p.nColumnsShown, taken + p.nColumnsShown + 1);
        taken[0] = kRegistrarNameColumnIndex;
        p.iNameColumn = 0;
        ++p.nColumnsShown;
    }
    return true;
}

bool KYjutlRegistrar::ObtainColumns() {
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    int position = -1;
    Guard(119, [&] {
        if (p.nColumnsShown < 1 || p.nColumnsShown > p.nColumnsKnown) throw uint32_t{128};
        if (!p.piColumnIndices) throw uint32_t{134};
        if (p.pColumns) {
            for (LVCOLUMNW* column : *p.pColumns) FreeColumn(column);
            p.pColumns->clear();
        } else {
            p.pColumns = new (std::nothrow) KYjutlRegistrar_ColumnArray;
            if (!p.pColumns) throw uint32_t{117};
        }
        for (position = 0; position < p.nColumnsShown; ++position) {
            LVCOLUMNW* column = ObtainColumn(position, p.uColumnIds[p.piColumnIndices[position]]);
            if (!column) throw uint32_t{114};
            try {
                p.pColumns->push_back(column);
            } catch (...) {
                FreeColumn(column);
                throw uint32_t{115};
            }
        }
    });
    if (m_uError != 0) {
        if (position >= 0) m_iErrorItem = position + 1;
        FreeColumns();
    }
    return m_uError == 0;
}

LVCOLUMNW* KYjutlRegistrar::ObtainColumn(int position, uint32_t id) {
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    LVCOLUMNW* column = nullptr;
    Guard(143, [&] {
        if (id < kRegistrarFirstColumnId || id >= kRegistrarFirstColumnId + kRegistrarColumnKinds)
            throw uint32_t{144};
        if (position < 0 || position >= p.nColumnsKnown) throw uint32_t{139};
        column = new (std::nothrow) LVCOLUMNW{};
        if (!column) throw uint32_t{113};
        column->mask = kColumnMask;
        column->iSubItem = static_cast<int>(id);
        if (id == kRegistrarNameColumnId)
            column->iOrder = 0;
        else
            column->iOrder = position < p.iNameColumn ? position + 1 : position;
        const int kind = static_cast<int>(id - kRegistrarFirstColumnId);
        ObtainColumnHeading(*column, kind);
        ObtainColumnFormat(*column, kind);
        ObtainColumnWidth(*column, kind);
    });
    if (m_uError != 0) {
        FreeColumn(column);
        column = nullptr;
    }
    return column;
}

void KYjutlRegistrar::ObtainColumnHeading(LVCOLUMNW& column, int kind) {
    wchar_t name[64];
    Guard(148, [&] {
        if (!m_keyPreferences) throw uint32_t{69};
        if (!ValueName(name, L"LV_DtlsColText", kind)) throw uint32_t{145};
        if (QueryText(m_keyPreferences.get(), name, m_wszB, kScratchChars) != ERROR_SUCCESS)
            throw uint32_t{146};
    });
    if (m_uError != 0) {
        if (!Tolerate({69, 145, 146})) throw uint32_t{0};
        if (LoadStringW(m_hInstance, column.iSubItem, m_wszB, kScratchChars) <= 0) throw uint32_t{142};
    }
    column.pszText = _wcsdup(m_wszB);
    if (!column.pszText) throw uint32_t{121};
}

void KYjutlRegistrar::ObtainColumnFormat(LVCOLUMNW& column, int kind) {
    wchar_t name[64];
    DWORD alignment = 0;
    Guard(126, [&] {
        if (!ValueName(name, L"LV_DtlsColFmt", kind)) throw uint32_t{122};
        ReadDword(name, 123, alignment);
        if (alignment > 2) throw uint32_t{125};
    });
    if (m_uError != 0) {
        if (!Tolerate({69, 122, 123, 125})) throw uint32_t{0};
        alignment = kColumnKinds[kind].alignment;
    }
    // The store keeps 1 for centre and 2 for right; the list view has them the other way.
    column.fmt = alignment == 0 ? LVCFMT_LEFT : alignment == 1 ? LVCFMT_CENTER : LVCFMT_RIGHT;
}

void KYjutlRegistrar::ObtainColumnWidth(LVCOLUMNW& column, int kind) {
    wchar_t name[64];
    DWORD width = 0;
    Guard(154, [&] {
        if (!ValueName(name, L"LV_DtlsColWdth", kind)) throw uint32_t{150};
        ReadDword(name, 151, width);
        if (static_cast<int>(width) <= 0) throw uint32_t{153};
    });
    if (m_uError != 0) {
        if (!Tolerate({69, 150, 151, 153})) throw uint32_t{0};
        width = static_cast<DWORD>(kColumnKinds[kind].width);
    }
    column.cx = static_cast<int>(width);
}

bool KYjutlRegistrar::StoreColumnIndices() {
    ClearErrors();
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    Guard(141, [&] {
        bool seen[kRegistrarColumnKinds] = {};
        size_t used = 0;
        m_wszA[0] = L'\0';
        for (int i = 0; p.piColumnIndices && i < p.nColumnsShown; ++i) {
            int index = p.piColumnIndices[i];
            if (index < 0 || index >= p.nColumnsKnown || index >= kRegistrarColumnKinds)
                throw uint32_t{139};
            if (seen[index]) throw uint32_t{135};
            seen[index] = true;
            int n = swprintf(m_wszA + used, kScratchChars - used, i == 0 ? L"%d" : L" %d", index);
            if (n < 0) throw uint32_t{137};
            used += static_cast<size_t>(n);
        }
        if (!m_wszA[0]) throw uint32_t{138};
        if (!seen[kRegistrarNameColumnIndex]) throw uint32_t{136};
        WriteText(L"LV_DtlsColIndices", m_wszA, 131);
        if (!StoreColumns()) throw uint32_t{0};
    });
    return m_uError == 0;
}

bool KYjutlRegistrar::StoreColumns() {
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    Guard(120, [&] {
        if (!p.pColumns) throw uint32_t{118};
        if (p.pColumns->empty()) throw uint32_t{116};
        if (p.nColumnsShown < 1 || p.nColumnsShown > p.nColumnsKnown) throw uint32_t{128};
        if (!p.piColumnIndices) throw uint32_t{134};
        for (const LVCOLUMNW* column : *p.pColumns) {
            if (!column) throw uint32_t{114};
            if (!StoreColumn(*column)) throw m_uError;
        }
    });
    return m_uError == 0;
}

bool KYjutlRegistrar::StoreColumn(const LVCOLUMNW& column) {
    Guard(156, [&] {
        const int id = column.iSubItem;
        if (id < static_cast<int>(kRegistrarFirstColumnId) ||
            id >= static_cast<int>(kRegistrarFirstColumnId) + kRegistrarColumnKinds)
            throw uint32_t{144};
        const int kind = id - static_cast<int>(kRegistrarFirstColumnId);
        wchar_t name[64];
        if (!ValueName(name, L"LV_DtlsColText", kind)) throw uint32_t{145};
        WriteText(name, column.pszText ? column.pszText : L"", 147);
        if (!ValueName(name, L"LV_DtlsColFmt", kind)) throw uint32_t{122};
        DWORD alignment = 0;
        switch (column.fmt & LVCFMT_JUSTIFYMASK) {
            case LVCFMT_LEFT: alignment = 0; break;
            case LVCFMT_RIGHT: alignment = 2; break;
            case LVCFMT_CENTER: alignment = 1; break;
            default: throw uint32_t{124};
        }
        WriteDword(name, alignment, 124);
        if (!ValueName(name, L"LV_DtlsColWdth", kind)) throw uint32_t{150};
        WriteDword(name, static_cast<DWORD>(column.cx), 152);
    });
    return m_uError == 0;
}

bool KYjutlRegistrar::ReorderColumns(uint32_t count, const int* ids) {
    if (!m_pPreferences || !ids) return false;
    KYjutlRegistrar_PREFS& p = *m_pPreferences;
    if (!p.pColumns || !p.piColumnIndices) return false;
    if (count != static_cast<uint32_t>(p.nColumnsShown) || count != p.pColumns->size()) return false;
    KYjutlRegistrar_ColumnArray& columns = *p.pColumns;
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t j = i;
        while (j < count && (!columns[j] || columns[j]->iSubItem != ids[i])) ++j;
        if (j == count) return false;
        std::swap(columns[i], columns[j]);
        std::swap(p.piColumnIndices[i], p.piColumnIndices[j]);
        if (ids[i] == static_cast<int>(kRegistrarNameColumnId)) p.iNameColumn = static_cast<int>(i);
    }
    return true;
}

bool KYjutlRegistrar::ReplaceColumn(int index, LVCOLUMNW* column, bool freeOld) {
    if (!m_pPreferences || !m_pPreferences->pColumns || !column) return false;
    KYjutlRegistrar_ColumnArray& columns = *m_pPreferences->pColumns;
    if (index < 0 || static_cast<size_t>(index) >= columns.size()) return false;
    LVCOLUMNW* old = std::exchange(columns[index], column);
    if (freeOld && old != column) FreeColumn(old);
    return true;
}
