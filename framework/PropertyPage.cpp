#include "framework/PropertyPage.h"

#include "framework/PropertySheet.h"
#include "framework/ResourceModule.h"

namespace fw {

PropertyPage::PropertyPage(const PropertyPageArgs& args) : Dialog({.templateId = args.templateId}), m_args(args) {}

HWND PropertyPage::SheetHandle() const noexcept { return m_pSheet ? m_pSheet->Handle() : nullptr; }

HPROPSHEETPAGE PropertyPage::CreatePage(PropertySheet& sheet, const PageLook& look) {
    m_pSheet = &sheet;
    PROPSHEETPAGEW page{};
    page.dwSize = sizeof page;
    page.hInstance = ResourceModule();
    page.pszTemplate = MAKEINTRESOURCEW(m_args.templateId);
    page.pfnDlgProc = PageProc;
    page.lParam = reinterpret_cast<LPARAM>(this);
    if (!look.wizard && m_args.captionId && LoadResString(m_args.captionId, m_caption) && !m_caption.empty()) {
        page.dwFlags |= PSP_USETITLE;
        page.pszTitle = m_caption.c_str();
    }
    if (look.wizard && look.hideHeader) page.dwFlags |= PSP_HIDEHEADER;
    if (look.wizard && !look.hideHeader) {
        if (m_args.headerTitleId && LoadResString(m_args.headerTitleId, m_headerTitle)) {
            page.dwFlags |= PSP_USEHEADERTITLE;
            page.pszHeaderTitle = m_headerTitle.c_str();
        }
        if (m_args.headerSubtitleId && LoadResString(m_args.headerSubtitleId, m_headerSubtitle)) {
            page.dwFlags |= PSP_USEHEADERSUBTITLE;
            page.pszHeaderSubTitle = m_headerSubtitle.c_str();
        }
    }
    if (look.helpButton) page.dwFlags |= PSP_HASHELP;
    return ::CreatePropertySheetPageW(&page);
}

void PropertyPage::SetModified(bool modified) noexcept {
    const HWND sheet = SheetHandle();
    if (!sheet || !m_hwnd) return;
    ::SendMessageW(sheet, modified ? PSM_CHANGED : PSM_UNCHANGED, reinterpret_cast<WPARAM>(m_hwnd), 0);
}

bool PropertyPage::OnDialogMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) {
    if (msg == WM_NOTIFY && l) {
        const auto& header = *reinterpret_cast<const NMHDR*>(l);
        if (header.hwndFrom == SheetHandle() || header.hwndFrom == ::GetParent(m_hwnd))
            return OnSheetNotify(header, result);
    }
    return Dialog::OnDialogMessage(msg, w, l, result);
}

// The sheet's notifications in the system's terms: a non-zero answer refuses.
bool PropertyPage::OnSheetNotify(const NMHDR& header, LRESULT& result) {
    switch (header.code) {
    case PSN_SETACTIVE:
        result = OnSetActive() ? 0 : -1;
        return true;
    case PSN_KILLACTIVE:
        result = OnKillActive() ? FALSE : TRUE;
        return true;
    case PSN_WIZBACK:
        result = OnWizardBack();
        return true;
    case PSN_WIZNEXT:
        result = OnWizardNext();
        return true;
    case PSN_WIZFINISH:
        if (OnWizardFinish()) {
            if (m_pSheet) m_pSheet->NoteFinished();
            result = FALSE;
        } else {
            result = TRUE;
        }
        return true;
    case PSN_APPLY:
        result = OnApply() ? PSNRET_NOERROR : PSNRET_INVALID_NOCHANGEPAGE;
        return true;
    case PSN_RESET:
        OnReset();
        result = 0;
        return true;
    default:
        return false;
    }
}

// The system hands a page its object through the page's record, not the dialog's parameter.
INT_PTR CALLBACK PropertyPage::PageProc(HWND hwnd, UINT msg, WPARAM w, LPARAM l) noexcept {
    auto* self = reinterpret_cast<Dialog*>(::GetWindowLongPtrW(hwnd, DWLP_USER));
    if (!self && msg == WM_INITDIALOG && l)
        self = reinterpret_cast<PropertyPage*>(reinterpret_cast<const PROPSHEETPAGEW*>(l)->lParam);
    return Run(self, hwnd, msg, w, l);
}

// A page that cannot set itself up ends its sheet.
void PropertyPage::OnSetUpFailed() noexcept {
    if (m_pSheet) m_pSheet->EndDialog(-1);
}

}  // namespace fw
