#include "dialogs/KYstdUI_DlgData.h"

bool KYstdUI_DlgData::Assign(const KYstdUI_DlgData& other) noexcept {
    *this = other;
    return true;
}

void KYstdUI_DlgData::Reset() noexcept { *this = KYstdUI_DlgData{}; }
