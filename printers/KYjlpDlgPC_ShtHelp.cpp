// What-is-this help of the printer dialog: F1, the caption's help button and the
// right mouse button on a control, as the program's other dialogs give it. A
// wizard has none.
#include "foundation/UniqueHandle.h"
#include "framework/ResourceModule.h"
#include "printers/KYjlpDlgPC_Pg.h"
#include "printers/KYjlpDlgPC_Sht.h"
#include "printers/KYjlpPrinterHost.h"

namespace {
constexpr UINT kHtmlHelpControlPopup = 16;
constexpr UINT kWinHelpControlPopup = 8;
constexpr UINT kHelpContents = 11;
constexpr UINT kQuietIds[] = {12320, 65535};

bool IsPageWindow(HWND window) {
    wchar_t name[16] = {};
    ::GetClassNameW(window, name, 16);
    return lstrcmpW(name, L"#32770") == 0 && (::GetWindowLongPtrW(window, GWL_STYLE) & WS_CHILD);
}
}  // namespace

HWND KYjlpDlgPC_Sht::ChildAtLastClick() const {
    HWND child = ::ChildWindowFromPointEx(m_hwnd, m_ptLastClick, CWP_SKIPINVISIBLE);
    if (!child || child == m_hwnd || !::IsChild(m_hwnd, child)) return nullptr;
    if (IsPageWindow(child)) {
        POINT inPage = m_ptLastClick;
        ::MapWindowPoints(m_hwnd, child, &inPage, 1);
        HWND control = ::ChildWindowFromPointEx(child, inPage, CWP_SKIPINVISIBLE);
        return control && control != child ? control : nullptr;
    }
    return child;
}

bool KYjlpDlgPC_Sht::OnRightButton(const MSG& msg, bool down) {
    POINT point = msg.pt;
    ::ScreenToClient(m_hwnd, &point);
    if (!down) {
        m_bSuppressCommand = false;
        if (IsWizard()) return false;
        const HWND target = msg.hwnd;
        const int id = target && ::IsWindow(target) ? ::GetDlgCtrlID(target) : 0;
        m_bSuppressCommand = target == m_hwnd || !::IsWindow(target) ||
                             (!IsPageWindow(target) && (id == 1 || id == 2 || id == 9 || id == kApplyNow));
        return false;
    }
    if (!m_dlgData.bHelpOn) return false;
    m_ptLastClick = point;
    HWND child = ::ChildWindowFromPoint(m_hwnd, point);
    if (!child || child == m_hwnd || !::IsChild(m_hwnd, child)) return false;
    if (m_dlgData.uHelpKind == KYstdUI_DlgData::kHtmlHelp) return ShowHelpAtCursor();
    if (m_dlgData.uHelpKind == KYstdUI_DlgData::kWinHelp) return ShowWhatsThisMenu();
    return false;
}

bool KYjlpDlgPC_Sht::ShowWhatsThisMenu() {
    HMODULE module = fw::ResourceModule();
    if (!::FindResourceW(module, MAKEINTRESOURCEW(m_dlgData.uContextMenu), RT_MENU))
        module = ::GetModuleHandleW(nullptr);
    ky::UniqueHMenu menu(::LoadMenuW(module, MAKEINTRESOURCEW(m_dlgData.uContextMenu)));
    HMENU popup = menu ? ::GetSubMenu(menu.get(), 0) : nullptr;
    if (!popup) return false;
    if (::GetMenuItemCount(popup) == 1 && ::GetMenuItemID(popup, 0) == m_dlgData.uHelpCommand)
        return ShowHelpAtCursor();
    POINT screen = m_ptLastClick;
    ::ClientToScreen(m_hwnd, &screen);
    return ::TrackPopupMenu(popup, m_dlgData.uMenuFlags, screen.x, screen.y, 0, m_hwnd, nullptr) != FALSE;
}

bool KYjlpDlgPC_Sht::ShowHelpAtCursor() {
    HWND control = ChildAtLastClick();
    if (!control || !::IsWindowVisible(control)) return true;
    const int id = ::GetDlgCtrlID(control);
    return id == 0 || ShowControlHelp(static_cast<UINT>(id));
}

bool KYjlpDlgPC_Sht::ShowControlHelp(UINT id) {
    KYjlpDlgPC_Pg* page = ActivePrinterPage();
    if (!m_dlgData.bHelpOn || !m_dlgData.pfnHelp || id == 0 || !page) return false;
    const DWORD helpId = page->GetControlHelpId(id);
    if (helpId == 0) {
        for (UINT quiet : kQuietIds)
            if (id == quiet) return true;
        return false;
    }
    HWND control = ::GetDlgItem(m_hwnd, static_cast<int>(id));
    if (!control) control = ::GetDlgItem(page->Handle(), static_cast<int>(id));
    if (!control || !::IsWindow(control)) return false;
    BOOL shown = FALSE;
    if (m_dlgData.uHelpKind == KYstdUI_DlgData::kHtmlHelp) {
        m_helpRequest[0] = id;
        m_helpRequest[1] = helpId;
        m_helpRequest[2] = 0;
        shown = m_dlgData.pfnHelp(kHtmlHelpControlPopup, reinterpret_cast<DWORD_PTR>(m_helpRequest), control, 0, 0);
    } else {
        shown = m_dlgData.pfnHelp(kWinHelpControlPopup, helpId, control, 0, 0);
    }
    return shown != FALSE;
}

bool KYjlpDlgPC_Sht::OnSheetHelp(const HELPINFO* info) {
    if (IsWizard()) return false;
    if (!info) {
        KYjlpPrinterHost* host = KYjlpPrinterHost::Current();
        return host && host->ShowPrinterHelp(m_dlgData.uHelpKind == KYstdUI_DlgData::kHtmlHelp ? 0 : kHelpContents, 0);
    }
    const UINT id = static_cast<UINT>(info->iCtrlId);
    if (m_dlgData.uHelpKind == KYstdUI_DlgData::kWinHelp && !(::GetWindowLongPtrW(m_hwnd, GWL_STYLE) & WS_CHILD) &&
        ::GetKeyState(static_cast<int>(m_dlgData.uHelpKey)) < 0 && info->hItemHandle) {
        RECT r{};
        ::GetWindowRect(static_cast<HWND>(info->hItemHandle), &r);
        ::SetCursorPos((r.left + r.right) / 2, (r.top + r.bottom) / 2);
        const bool shown = ShowControlHelp(id);
        ::Sleep(m_dlgData.uCursorDelay);
        ::SetCursorPos(info->MousePos.x, info->MousePos.y);
        return shown;
    }
    return ShowControlHelp(id);
}
