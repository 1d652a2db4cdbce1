// The remembered places of one list item in the two icon views.
#pragma once
#include <windows.h>
#include <cstdint>
#include <vector>

// A coordinate with this value means that no place is known.
inline constexpr LONG kRegistrarUnknownCoordinate = static_cast<LONG>(0x80000000u);

struct KYjutlRegistrar_LVISP {
    wchar_t* pszItemName;   // own heap copy (malloc), released with free
    POINT ptIconView;       // large-icon view
    POINT ptSmallIconView;  // small-icon view
};

using KYjutlRegistrar_LVISPArray = std::vector<KYjutlRegistrar_LVISP*>;
