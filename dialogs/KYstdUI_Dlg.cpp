#include "dialogs/KYstdUI_Dlg.h"

#include "dialogs/DialogHelpIds.h"
#include "foundation/UniqueHandle.h"
#include "framework/ResourceModule.h"

namespace {
// The help commands: a control's topic as a popup, for each kind of help.
constexpr UINT kHtmlHelpControlPopup = 16;  // HH_TP_HELP_CONTEXTMENU
constexpr UINT kWinHelpControlPopup = 8;    // HELP_CONTEXTPOPUP
// What the system makes of F1 in some message loops; the key itself is answered.
constexpr UINT kKeyF1Message = 0x004D;
}  // namespace

KYstdUI_Dlg::KYstdUI_Dlg(const KYstdUI_DlgArgs& args)
    : fw::Dialog({.templateId = args.templateId, .parent = args.parent}) {
    m_data.Reset();
    if (args.data) m_data.Assign(*args.data);
}

DWORD KYstdUI_Dlg::HelpIdFromControl(WORD controlId) const {
    if (controlId < 1 || controlId > 11) return 0;
    return lphelp::ForControl(controlId);
}

bool KYstdUI_Dlg::OnInitDialog() {
    if (!fw::Dialog::OnInitDialog()) return false;
    // Without help the caption shows no help button.
    if (!m_data.bHelpOn)
        ::SetWindowLongPtrW(m_hwnd, GWL_EXSTYLE, ExStyle() & ~static_cast<LONG_PTR>(WS_EX_CONTEXTHELP));
    return true;
}

HWND KYstdUI_Dlg::ChildAt(POINT client) const {
    HWND child = ::ChildWindowFromPoint(m_hwnd, client);
    if (!child || child == m_hwnd || !::IsChild(m_hwnd, child) || !::IsWindow(child)) return nullptr;
    return child;
}

bool KYstdUI_Dlg::PreTranslateMessage(MSG& msg) {
    if (!m_data.bHelpOn) return false;
    if (msg.message == kKeyF1Message) return true;  // F1 is answered below, once
    if (msg.message == WM_KEYDOWN && msg.wParam == m_data.uHelpKey) return HelpForFocus();
    if (msg.message != WM_RBUTTONDOWN) return false;
    POINT point = msg.pt;
    ::ScreenToClient(m_hwnd, &point);
    m_ptRightClick = point;
    if (!ChildAt(point)) return false;
    if (m_data.uHelpKind == KYstdUI_DlgData::kHtmlHelp) return ShowHelpAtPoint();
    if (m_data.uHelpKind == KYstdUI_DlgData::kWinHelp) return ShowContextMenu();
    return false;
}

// The key of help asks about the control that has the focus, as the system's
// F1 does: the dialog gets WM_HELP for it.
bool KYstdUI_Dlg::HelpForFocus() {
    HWND focus = ::GetFocus();
    if (!focus || (focus != m_hwnd && !::IsChild(m_hwnd, focus))) focus = m_hwnd;
    HELPINFO info{};
    info.cbSize = sizeof info;
    info.iContextType = HELPINFO_WINDOW;
    info.iCtrlId = focus == m_hwnd ? 0 : ::GetDlgCtrlID(focus);
    info.hItemHandle = focus;
    info.dwContextId = ::GetWindowContextHelpId(focus);
    ::GetCursorPos(&info.MousePos);
    ::SendMessageW(m_hwnd, WM_HELP, 0, reinterpret_cast<LPARAM>(&info));
    return true;
}

bool KYstdUI_Dlg::ShowContextMenu() {
    HMODULE module = fw::ResourceModule();
    if (!::FindResourceW(module, MAKEINTRESOURCEW(m_data.uContextMenu), RT_MENU))
        module = ::GetModuleHandleW(nullptr);
    ky::UniqueHMenu menu(::LoadMenuW(module, MAKEINTRESOURCEW(m_data.uContextMenu)));
    HMENU popup = menu ? ::GetSubMenu(menu.get(), 0) : nullptr;
    if (!popup || ::GetMenuItemCount(popup) < 1) return false;
    // A menu of the help command alone is not worth a click: help shows at once.
    if (::GetMenuItemCount(popup) == 1 && ::GetMenuItemID(popup, 0) == m_data.uHelpCommand)
        return ShowHelpAtPoint();
    POINT screen = m_ptRightClick;
    ::ClientToScreen(m_hwnd, &screen);
    ::TrackPopupMenu(popup, m_data.uMenuFlags, screen.x, screen.y, 0, m_hwnd, nullptr);
    return true;
}

bool KYstdUI_Dlg::ShowHelpAtPoint() {
    HWND child = ChildAt(m_ptRightClick);
    return child && ShowControlHelp(static_cast<UINT>(::GetDlgCtrlID(child)));
}

bool KYstdUI_Dlg::ShowControlHelp(UINT controlId) {
    if (!m_data.bHelpOn || !m_data.pfnHelp || controlId == 0) return false;
    const DWORD helpId = HelpIdFromControl(static_cast<WORD>(controlId));
    if (helpId == 0) return controlId == lphelp::kQuietControl || controlId == lphelp::kStaticControl;
    HWND control = ::GetDlgItem(m_hwnd, static_cast<int>(controlId));
    if (!control || !::IsWindow(control)) return false;
    BOOL shown = FALSE;
    if (m_data.uHelpKind == KYstdUI_DlgData::kHtmlHelp) {
        m_helpPair[0] = controlId;
        m_helpPair[1] = helpId;
        m_helpPair[2] = m_helpPair[3] = 0;
        shown = m_data.pfnHelp(kHtmlHelpControlPopup, reinterpret_cast<DWORD_PTR>(m_helpPair), control, 0, 0);
    } else if (m_data.uHelpKind == KYstdUI_DlgData::kWinHelp) {
        shown = m_data.pfnHelp(kWinHelpControlPopup, helpId, control, 0, 0);
    }
    return shown != FALSE;
}

bool KYstdUI_Dlg::OnHelpInfo(const HELPINFO& info) {
    if (!m_data.bHelpOn) return true;
    try {
        POINT moved{};
        bool pointerMoved = false;
        // Classic help shows its popup at the pointer: F1 brings the pointer to the control.
        if (m_data.uHelpKind == KYstdUI_DlgData::kWinHelp && !(Style() & WS_CHILD) &&
            ::GetKeyState(static_cast<int>(m_data.uHelpKey)) < 0 && info.hItemHandle) {
            RECT r{};
            ::GetWindowRect(static_cast<HWND>(info.hItemHandle), &r);
            moved = {(r.left + r.right) / 2, (r.top + r.bottom) / 2};
            if (moved.x != info.MousePos.x || moved.y != info.MousePos.y)
                pointerMoved = ::SetCursorPos(moved.x, moved.y) != FALSE;
        }
        const bool handled = ShowControlHelp(static_cast<UINT>(info.iCtrlId));
        if (pointerMoved) {
            ::Sleep(m_data.uCursorDelay);
            ::SetCursorPos(info.MousePos.x, info.MousePos.y);
        }
        return handled;
    } catch (...) {
        return true;
    }
}

bool KYstdUI_Dlg::OnCommand(UINT id, UINT code, HWND control) {
    if (id == m_data.uHelpCommand && m_data.uHelpCommand != 0 && control == nullptr) {
        ShowHelpAtPoint();
        return true;
    }
    return fw::Dialog::OnCommand(id, code, control);
}

bool KYstdUI_Dlg::OnDialogMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) {
    if (msg == WM_SYSCOMMAND && (w & 0xFFF0) == SC_CONTEXTHELP && m_data.bHelpOn) {
        RunContextHelpMode();
        result = 0;
        return true;
    }
    return fw::Dialog::OnDialogMessage(msg, w, l, result);
}

// The caption's help button: the pointer becomes the help pointer, and the next
// click on a control shows that control's help. Any other key or button, or the
// capture going elsewhere, ends the mode with nothing shown.
void KYstdUI_Dlg::RunContextHelpMode() {
    ::SetCapture(m_hwnd);
    ::SetCursor(::LoadCursorW(nullptr, IDC_HELP));
    MSG msg{};
    BOOL got = TRUE;
    while (::GetCapture() == m_hwnd && (got = ::GetMessageW(&msg, nullptr, 0, 0)) > 0) {
        if (msg.message == WM_LBUTTONDOWN || msg.message == WM_NCLBUTTONDOWN) {
            POINT point = msg.pt;
            ::ScreenToClient(m_hwnd, &point);
            ::ReleaseCapture();
            if (HWND child = ChildAt(point)) {
                m_ptRightClick = point;
                ShowControlHelp(static_cast<UINT>(::GetDlgCtrlID(child)));
            }
            return;
        }
        if (msg.message == WM_KEYDOWN || msg.message == WM_RBUTTONDOWN || msg.message == WM_NCRBUTTONDOWN) break;
        if (msg.message == WM_MOUSEMOVE || msg.message == WM_SETCURSOR) {
            ::SetCursor(::LoadCursorW(nullptr, IDC_HELP));
            continue;
        }
        ::TranslateMessage(&msg);
        ::DispatchMessageW(&msg);
    }
    if (::GetCapture() == m_hwnd) ::ReleaseCapture();
    if (got == 0) ::PostQuitMessage(static_cast<int>(msg.wParam));  // the end of the program stays asked
}
