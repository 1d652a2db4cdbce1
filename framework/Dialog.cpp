#include "framework/Dialog.h"

#include "framework/FrameWnd.h"
#include "framework/ResourceModule.h"
#include "framework/WinApp.h"

namespace fw {

namespace {
Dialog* g_innermost = nullptr;

// Messages whose result a dialog procedure gives as its own return value.
bool ReturnsDirectly(UINT msg) {
    return (msg >= WM_CTLCOLORMSGBOX && msg <= WM_CTLCOLORSTATIC) || msg == WM_COMPAREITEM ||
           msg == WM_VKEYTOITEM || msg == WM_CHARTOITEM || msg == WM_QUERYDRAGICON || msg == WM_INITDIALOG;
}

// The control a message to its parent is about, for reflection to its object.
HWND ControlOf(UINT msg, WPARAM w, LPARAM l) {
    if (msg >= WM_CTLCOLORMSGBOX && msg <= WM_CTLCOLORSTATIC) return reinterpret_cast<HWND>(l);
    if (msg == WM_DRAWITEM && w != 0) return reinterpret_cast<const DRAWITEMSTRUCT*>(l)->hwndItem;
    if (msg == WM_NOTIFY) return reinterpret_cast<const NMHDR*>(l)->hwndFrom;
    if (msg == WM_COMMAND && l != 0) return reinterpret_cast<HWND>(l);
    return nullptr;
}
}  // namespace

Dialog::~Dialog() {
    if (m_hwnd && ::IsWindow(m_hwnd)) {
        ::SetWindowLongPtrW(m_hwnd, DWLP_USER, 0);
        ::DestroyWindow(m_hwnd);
    }
}

HWND Dialog::Owner() const {
    if (m_args.parent) return m_args.parent;
    WinApp* app = WinApp::Current();
    FrameWnd* frame = app ? app->MainWindow() : nullptr;
    return frame && *frame && frame->IsVisible() ? frame->Handle() : nullptr;
}

INT_PTR Dialog::DoModal() {
    if (m_bModal) return -1;
    HMODULE module = ResourceModule();
    HRSRC found = ::FindResourceW(module, MAKEINTRESOURCEW(m_args.templateId), RT_DIALOG);
    HGLOBAL loaded = found ? ::LoadResource(module, found) : nullptr;
    auto* dialogTemplate = loaded ? static_cast<const DLGTEMPLATE*>(::LockResource(loaded)) : nullptr;
    if (!dialogTemplate) return -1;
    const HWND owner = Owner();
    const bool ownerEnabled = owner && ::IsWindowEnabled(owner);
    m_bEnded = false;
    m_nResult = -1;
    m_bModal = true;
    m_pOuter = g_innermost;
    g_innermost = this;
    HWND hwnd = ::CreateDialogIndirectParamW(module, dialogTemplate, owner, StaticProc,
                                             reinterpret_cast<LPARAM>(this));
    if (hwnd && !m_bEnded) {
        if (ownerEnabled) ::EnableWindow(owner, FALSE);
        if (!::IsWindowVisible(hwnd)) ::ShowWindow(hwnd, SW_SHOWNORMAL);
        RunModalLoop();
    }
    // The owner comes back before the dialog goes, so that it takes the activation.
    if (ownerEnabled) ::EnableWindow(owner, TRUE);
    if (hwnd && ::IsWindow(hwnd)) {
        if (owner && ::GetActiveWindow() == hwnd) ::SetActiveWindow(owner);
        ::DestroyWindow(hwnd);
    }
    g_innermost = m_pOuter;
    m_pOuter = nullptr;
    m_bModal = false;
    return hwnd ? m_nResult : -1;
}

void Dialog::RunModalLoop() {
    WinApp* app = WinApp::Current();
    while (!m_bEnded) {
        if (app) {
            if (!app->PumpMessage()) {
                // The program is asked to end: the dialog goes first, the request stays.
                ::PostQuitMessage(app->m_nExitCode);
                EndDialog(-1);
            }
            continue;
        }
        MSG msg;
        const BOOL got = ::GetMessageW(&msg, nullptr, 0, 0);
        if (got <= 0) {
            if (got == 0) ::PostQuitMessage(static_cast<int>(msg.wParam));
            EndDialog(-1);
            continue;
        }
        if (PreTranslateForModal(msg)) continue;
        ::TranslateMessage(&msg);
        ::DispatchMessageW(&msg);
    }
}

bool Dialog::PreTranslateForModal(MSG& msg) {
    Dialog* dialog = g_innermost;
    if (!dialog || !dialog->m_hwnd || !msg.hwnd) return false;
    if (msg.hwnd != dialog->m_hwnd && !::IsChild(dialog->m_hwnd, msg.hwnd)) return false;
    try {
        if (dialog->PreTranslateMessage(msg)) return true;
    } catch (...) {
        // A handler that failed leaves the message to the dialog's own keys.
    }
    return ::IsDialogMessageW(dialog->m_hwnd, &msg) != FALSE;
}

void Dialog::EndDialog(INT_PTR result) noexcept {
    m_nResult = result;
    m_bEnded = true;
    // Wakes a pump that waits for input, so that the loop sees the end at once.
    if (m_hwnd) ::PostMessageW(m_hwnd, WM_NULL, 0, 0);
}

bool Dialog::UpdateData(bool save) {
    if (!m_hwnd) return false;
    DataExchange dx(m_hwnd, save);
    DoDataExchange(dx);
    OnDataExchanged(save);
    return !dx.Failed();
}

void Dialog::CenterWindow() {
    RECT dialog{}, area{};
    ::GetWindowRect(m_hwnd, &dialog);
    HWND owner = ::GetWindow(m_hwnd, GW_OWNER);
    if (!owner || !::IsWindowVisible(owner) || ::IsIconic(owner) || !::GetWindowRect(owner, &area))
        ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    const int width = dialog.right - dialog.left, height = dialog.bottom - dialog.top;
    const int left = area.left + (area.right - area.left - width) / 2;
    const int top = area.top + (area.bottom - area.top - height) / 2;
    ::SetWindowPos(m_hwnd, nullptr, left < 0 ? 0 : left, top < 0 ? 0 : top, 0, 0,
                   SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

bool Dialog::OnCommand(UINT id, UINT code, HWND control) {
    (void)control;
    if (code != BN_CLICKED && code != 1) return false;
    if (id == IDOK) {
        OnOK();
        return true;
    }
    if (id == IDCANCEL) {
        OnCancel();
        return true;
    }
    return false;
}

bool Dialog::OnInitDialog() {
    UpdateData(false);
    return true;
}

void Dialog::OnOK() {
    if (UpdateData(true)) EndDialog(IDOK);
}

bool Dialog::OnDialogMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) {
    (void)msg;
    (void)w;
    (void)l;
    (void)result;
    return false;
}

bool Dialog::Reflect(UINT msg, WPARAM w, LPARAM l, LRESULT& result) {
    HWND control = ControlOf(msg, w, l);
    WindowImpl* object = control && control != m_hwnd ? WindowImpl::FromHandle(control) : nullptr;
    if (!object) return false;
    if (msg == WM_NOTIFY) return object->OnReflectedNotify(*reinterpret_cast<NMHDR*>(l), result);
    return object->OnReflectedMessage(msg, w, l, result);
}

INT_PTR Dialog::Dispatch(UINT msg, WPARAM w, LPARAM l) {
    LRESULT result = 0;
    bool handled = false;
    switch (msg) {
    case WM_INITDIALOG:
        result = OnInitDialog() ? TRUE : FALSE;
        handled = true;
        break;
    case WM_COMMAND:
        handled = Reflect(msg, w, l, result) || OnCommand(LOWORD(w), HIWORD(w), reinterpret_cast<HWND>(l));
        break;
    case WM_HELP:
        handled = l && OnHelpInfo(*reinterpret_cast<const HELPINFO*>(l));
        result = TRUE;
        break;
    default:
        handled = Reflect(msg, w, l, result) || OnDialogMessage(msg, w, l, result);
        break;
    }
    if (!handled) return FALSE;
    if (ReturnsDirectly(msg)) return static_cast<INT_PTR>(result);
    ::SetWindowLongPtrW(m_hwnd, DWLP_MSGRESULT, result);
    return TRUE;
}

INT_PTR CALLBACK Dialog::StaticProc(HWND hwnd, UINT msg, WPARAM w, LPARAM l) noexcept {
    auto* self = reinterpret_cast<Dialog*>(::GetWindowLongPtrW(hwnd, DWLP_USER));
    if (!self && msg == WM_INITDIALOG) self = reinterpret_cast<Dialog*>(l);
    return Run(self, hwnd, msg, w, l);
}

INT_PTR Dialog::Run(Dialog* self, HWND hwnd, UINT msg, WPARAM w, LPARAM l) noexcept {
    if (!self) return FALSE;
    if (msg == WM_INITDIALOG && !::GetWindowLongPtrW(hwnd, DWLP_USER)) {
        self->m_hwnd = hwnd;
        ::SetWindowLongPtrW(hwnd, DWLP_USER, reinterpret_cast<LONG_PTR>(self));
    }
    INT_PTR answer = FALSE;
    try {
        answer = self->Dispatch(msg, w, l);
    } catch (...) {
        // A handler must not take the loop down: a dialog that cannot set itself up ends.
        if (msg == WM_INITDIALOG) self->OnSetUpFailed();
        answer = FALSE;
    }
    if (msg == WM_NCDESTROY) {
        ::SetWindowLongPtrW(hwnd, DWLP_USER, 0);
        self->m_hwnd = nullptr;
        self->OnDestroyed();
    }
    return answer;
}

}  // namespace fw
