#include "framework/PropertySheet.h"

#include "framework/FrameWnd.h"
#include "framework/WinApp.h"

namespace fw {

namespace {
constexpr UINT_PTR kSubclassId = 1;
}

PropertySheet::PropertySheet(const PropertySheetArgs& args) : Dialog({.parent = args.parent}), m_args(args) {}

PropertySheet::~PropertySheet() {
    // Pages that never reached a sheet window are the system's to free here.
    for (HPROPSHEETPAGE page : m_handles)
        if (page) ::DestroyPropertySheetPage(page);
    if (m_hwnd && ::IsWindow(m_hwnd)) {
        ::RemoveWindowSubclass(m_hwnd, SheetProc, kSubclassId);
        ::DestroyWindow(m_hwnd);
    }
}

void PropertySheet::AddPage(PropertyPage& page, const PageLook& look) {
    HPROPSHEETPAGE handle = page.CreatePage(*this, look);
    if (!handle) return;
    m_pages.push_back(&page);
    m_handles.push_back(handle);
}

PropertyPage* PropertySheet::GetPage(int index) const noexcept {
    return index >= 0 && index < GetPageCount() ? m_pages[static_cast<size_t>(index)] : nullptr;
}

int PropertySheet::GetPageIndex(const PropertyPage* page) const noexcept {
    for (int i = 0; i < GetPageCount(); ++i)
        if (m_pages[static_cast<size_t>(i)] == page) return i;
    return -1;
}

PropertyPage* PropertySheet::GetActivePage() const noexcept {
    if (!m_hwnd) return nullptr;
    const HWND current = PropSheet_GetCurrentPageHwnd(m_hwnd);
    if (!current) return nullptr;
    for (PropertyPage* page : m_pages)
        if (page->Handle() == current) return page;
    return nullptr;
}

bool PropertySheet::SetActivePage(int index) noexcept {
    if (!m_hwnd) {
        m_nStartPage = index;
        return index >= 0 && index < GetPageCount();
    }
    if (index < 0 || index >= GetPageCount()) return false;
    return PropSheet_SetCurSel(m_hwnd, nullptr, index) != FALSE;
}

void PropertySheet::SetTitle(const std::wstring& title) noexcept {
    m_args.caption = title;
    if (m_hwnd) ::SetWindowTextW(m_hwnd, title.c_str());
}

void PropertySheet::SetWizardButtons(DWORD buttons) const noexcept {
    if (m_hwnd) ::PostMessageW(m_hwnd, PSM_SETWIZBUTTONS, 0, static_cast<LPARAM>(buttons));
}

void PropertySheet::PressButton(int button) const noexcept {
    if (m_hwnd) ::PostMessageW(m_hwnd, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0);
}

HWND PropertySheet::Owner() const noexcept {
    if (m_args.parent) return m_args.parent;
    WinApp* app = WinApp::Current();
    FrameWnd* frame = app ? app->MainWindow() : nullptr;
    return frame && *frame && frame->IsVisible() ? frame->Handle() : nullptr;
}

HWND PropertySheet::CreateSheet(HWND owner) {
    PROPSHEETHEADERW header{};
    header.dwSize = sizeof header;
    header.dwFlags = PSH_MODELESS;
    header.hwndParent = owner;
    header.pszCaption = m_args.caption.c_str();
    header.nPages = static_cast<UINT>(m_handles.size());
    header.nStartPage = static_cast<UINT>(m_nStartPage >= 0 && m_nStartPage < GetPageCount() ? m_nStartPage : 0);
    header.phpage = m_handles.data();
    if (m_args.icon) {
        header.dwFlags |= PSH_USEHICON;
        header.hIcon = m_args.icon;
    }
    if (m_args.wizard) {
        header.dwFlags |= PSH_WIZARD97 | PSH_WATERMARK | PSH_HEADER | PSH_USEHBMWATERMARK | PSH_USEHBMHEADER;
        header.hbmWatermark = m_args.watermark;
        header.hbmHeader = m_args.header;
    } else if (m_args.helpButton) {
        header.dwFlags |= PSH_HASHELP;
    }
    const INT_PTR made = ::PropertySheetW(&header);
    // From here the sheet owns the pages, whatever became of its window.
    m_handles.clear();
    return made > 0 ? reinterpret_cast<HWND>(made) : nullptr;
}

INT_PTR PropertySheet::DoModal() {
    if (m_pages.empty()) return -1;
    const HWND owner = Owner();
    const bool ownerEnabled = owner && ::IsWindowEnabled(owner);
    m_bFinished = false;
    m_hwnd = CreateSheet(owner);
    if (!m_hwnd) return -1;
    ::SetWindowSubclass(m_hwnd, SheetProc, kSubclassId, reinterpret_cast<DWORD_PTR>(this));
    if (ownerEnabled) ::EnableWindow(owner, FALSE);
    OnSheetCreated();
    RunLoop();
    // The owner comes back before the sheet goes, so that it takes the activation.
    if (ownerEnabled) ::EnableWindow(owner, TRUE);
    if (m_hwnd && ::IsWindow(m_hwnd)) {
        if (owner && ::GetActiveWindow() == m_hwnd) ::SetActiveWindow(owner);
        ::RemoveWindowSubclass(m_hwnd, SheetProc, kSubclassId);
        ::DestroyWindow(m_hwnd);
    }
    m_hwnd = nullptr;
    return ModalResult();
}

// The system ends a modeless sheet by leaving it without a current page: Finish
// when a page allowed it, Cancel otherwise. OK of a dialog ends through EndDialog.
void PropertySheet::RunLoop() {
    while (!Ended()) {
        if (!PropSheet_GetCurrentPageHwnd(m_hwnd)) {
            EndDialog(m_bFinished ? kFinished : kCancel);
            break;
        }
        MSG msg;
        const BOOL got = ::GetMessageW(&msg, nullptr, 0, 0);
        if (got <= 0) {
            // The program is asked to end: the sheet goes first, the request stays.
            if (got == 0) ::PostQuitMessage(static_cast<int>(msg.wParam));
            EndDialog(-1);
            break;
        }
        bool taken = false;
        if (msg.hwnd && (msg.hwnd == m_hwnd || ::IsChild(m_hwnd, msg.hwnd))) {
            try {
                taken = PreTranslateMessage(msg);
            } catch (...) {
                taken = false;  // a failed handler leaves the message to the sheet's keys
            }
            if (!taken) taken = PropSheet_IsDialogMessage(m_hwnd, &msg) != FALSE;
        }
        if (taken) continue;
        ::TranslateMessage(&msg);
        ::DispatchMessageW(&msg);
    }
}

bool PropertySheet::PreTranslateMessage(MSG& msg) {
    PropertyPage* page = GetActivePage();
    if (!page || !page->Handle() || (msg.hwnd != page->Handle() && !::IsChild(page->Handle(), msg.hwnd)))
        return false;
    return Dialog::PreTranslateForPage(*page, msg);
}

bool PropertySheet::OnSheetMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) {
    (void)msg;
    (void)w;
    (void)l;
    (void)result;
    return false;
}

LRESULT CALLBACK PropertySheet::SheetProc(HWND hwnd, UINT msg, WPARAM w, LPARAM l, UINT_PTR id,
                                          DWORD_PTR data) noexcept {
    (void)id;
    auto* self = reinterpret_cast<PropertySheet*>(data);
    try {
        if (msg == WM_COMMAND && l && self->OnSheetCommand(LOWORD(w))) return 0;
        LRESULT result = 0;
        if (msg != WM_COMMAND && msg != WM_NCDESTROY && self->OnSheetMessage(msg, w, l, result)) return result;
    } catch (...) {
        // A handler that failed leaves the message to the system's sheet.
    }
    if (msg == WM_NCDESTROY) ::RemoveWindowSubclass(hwnd, SheetProc, kSubclassId);
    return ::DefSubclassProc(hwnd, msg, w, l);
}

}  // namespace fw
