// All preferences of one user and one store (Standard or Classic).
#pragma once
#include <windows.h>
#include <commctrl.h>
#include <cstdint>
#include <vector>

#include "registrar/KYjutlRegistrar_LVISP.h"

inline constexpr int kRegistrarColumnKinds = 9;
inline constexpr uint32_t kRegistrarFirstColumnId = 24698;  // Accessed
inline constexpr uint32_t kRegistrarNameColumnId = 24703;
inline constexpr int kRegistrarNameColumnIndex = 5;

// Shown columns as ready list-view records: each is allocated with new, its
// pszText with malloc (see KYjutlRegistrar::FreeColumn).
using KYjutlRegistrar_ColumnArray = std::vector<LVCOLUMNW*>;

struct KYjutlRegistrar_PREFS {
    uint32_t uControlBarsStates;  // 1 headers, 2 menu, 4 status bar, 8 title bar, 16 tool bar
    COLORREF crBackground;
    COLORREF crForeground;
    COLORREF crCustom[16];
    int nColumnsKnown;            // always 9
    int nColumnsShown;
    KYjutlRegistrar_ColumnArray* pColumns;
    uint32_t uColumnIds[kRegistrarColumnKinds];  // 24698 + index
    int iNameColumn;              // place of Name among the shown columns; -1 unknown
    int* piColumnIndices;         // nColumnsShown entries (new[]): column kind of each shown column
    KYjutlRegistrar_LVISPArray* pItemPositions;
    uint32_t uSortColumnId;
    int iSortDirection;           // 1 or -1
    bool bItemsPlaced;
    DWORD dwListViewStyle;
    DWORD dwListViewExtra1;
    DWORD dwListViewExtra2;
    DWORD dwFrameStyle;
    DWORD dwFrameExtra1;
    wchar_t szPrintInfInitialDir[256];
    uint32_t uSchemaId;           // always 1
    WINDOWPLACEMENT wpPlacement;
};
