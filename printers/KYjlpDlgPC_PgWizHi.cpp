#include "printers/KYjlpDlgPC_PgWizHi.h"

#include "framework/PropertySheet.h"

namespace {
constexpr int kTitle = 1037;
// The welcome page's title is ten times the finish page's; the template is made for it.
constexpr int kWelcomeScale = 10;
}  // namespace

void SetBigTitleFont(HWND page, int controlId, int scale) {
    const auto font = reinterpret_cast<HFONT>(::SendMessageW(page, WM_GETFONT, 0, 0));
    HWND control = ::GetDlgItem(page, controlId);
    if (!font || !control || !::IsWindow(control)) return;
    LOGFONTW look{};
    if (!::GetObjectW(font, sizeof look, &look)) return;
    HDC dc = ::GetDC(control);
    if (!dc) return;
    look.lfHeight = ::GetDeviceCaps(dc, LOGPIXELSY) * 28 / 72 * scale;
    HFONT title = ::CreateFontIndirectW(&look);
    if (title) {
        ::SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(title), TRUE);
        ::DeleteObject(title);
    }
    ::ReleaseDC(control, dc);
}

DWORD KYjlpDlgPC_PgWizHi::GetControlHelpId(UINT id) {
    (void)id;
    return 0;
}

bool KYjlpDlgPC_PgWizHi::OnInitDialog() {
    const bool result = KYjlpDlgPC_Pg::OnInitDialog();
    SetBigTitleFont(m_hwnd, kTitle, kWelcomeScale);
    return result;
}

bool KYjlpDlgPC_PgWizHi::OnSetActive() {
    KYjlpDlgPC_Pg::OnSetActive();
    if (Sheet()) Sheet()->SetWizardButtons(PSWIZB_NEXT);
    return true;
}
