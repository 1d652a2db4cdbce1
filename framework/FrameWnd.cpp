#include "framework/FrameWnd.h"

#include <commctrl.h>

#include "foundation/UniqueHandle.h"
#include "framework/Document.h"
#include "framework/ResourceModule.h"
#include "framework/View.h"
#include "framework/WinApp.h"

namespace fw {

namespace {
const wchar_t kFrameClass[] = L"LaunchPanelFrame";
}

bool FrameWnd::LoadFrame(UINT resourceId, DWORD style) {
    // The window owns the menu once it stands; until then the menu is ours.
    ky::UniqueHMenu menu(::LoadMenuW(ResourceModule(), MAKEINTRESOURCEW(resourceId)));
    WinApp* app = WinApp::Current();
    WindowCreateArgs args{.className = kFrameClass,
                          .title = app ? app->AppName() : L"",
                          .style = style,
                          .menuOrId = menu.get()};
    PreCreateWindow(args);
    if (!Create(args)) return false;
    m_hMenuDefault = menu.release();
    m_hAccel = ::LoadAcceleratorsW(ResourceModule(), MAKEINTRESOURCEW(resourceId));
    return true;
}

bool FrameWnd::PreTranslateMessage(MSG& msg) {
    if (!m_hAccel || msg.message < WM_KEYFIRST || msg.message > WM_KEYLAST) return false;
    return ::TranslateAcceleratorW(m_hwnd, m_hAccel, &msg) != 0;
}

std::wstring FrameWnd::CommandText(UINT id, bool tooltip) {
    std::wstring text = ResString(id);
    const size_t split = text.find(L'\n');
    if (split == std::wstring::npos) return tooltip ? std::wstring() : text;
    return tooltip ? text.substr(split + 1) : text.substr(0, split);
}

// The status bar tells what the highlighted menu item does; the idle text
// comes back when the menu closes.
LRESULT FrameWnd::OnMenuSelectPrompt(UINT item, UINT flags, HMENU menu) {
    if (flags == 0xFFFF && !menu) SetMessageText(std::wstring());
    else if (!(flags & (MF_POPUP | MF_SEPARATOR)) && item != 0) SetMessageText(CommandText(item, false));
    return 0;
}

bool FrameWnd::OnToolTipText(NMHDR& header) {
    auto& info = reinterpret_cast<NMTTDISPINFOW&>(header);
    if (info.uFlags & TTF_IDISHWND) return false;
    static std::wstring tip;  // must outlive the notification; one tooltip shows at a time
    tip = CommandText(static_cast<UINT>(header.idFrom), true);
    info.lpszText = tip.data();
    info.hinst = nullptr;
    SetMessageText(CommandText(static_cast<UINT>(header.idFrom), false));
    return true;
}

Document* FrameWnd::ActiveDocument() const { return m_pView ? m_pView->GetDocument() : nullptr; }

bool FrameWnd::OnCmdMsg(UINT id, CmdUI* ui) {
    if (m_pView && m_pView->OnCmdMsg(id, ui)) return true;
    if (Document* doc = ActiveDocument(); doc && doc->OnCmdMsg(id, ui)) return true;
    WinApp* app = WinApp::Current();
    return app && app->OnCmdMsg(id, ui);
}

void FrameWnd::InitialUpdateFrame(Document* doc, bool makeVisible) {
    (void)doc;
    if (m_pView) m_pView->OnInitialUpdate();
    RecalcLayout();
    if (makeVisible) {
        WinApp* app = WinApp::Current();
        Show(app ? app->m_nCmdShow : SW_SHOWNORMAL);
        Update();
    }
}

void FrameWnd::RecalcLayout() {
    if (!m_pView || !*m_pView) return;
    RECT r;
    GetClientRect(r);
    m_pView->Move(r);
}

void FrameWnd::OnClose() { Destroy(); }

void FrameWnd::UpdateMenuItems(HMENU menu) {
    int count = ::GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        UINT id = ::GetMenuItemID(menu, i);
        if (id == 0 || id == static_cast<UINT>(-1)) continue;  // separator or submenu
        CmdUI ui(id, menu, static_cast<UINT>(i));
        if (!OnCmdMsg(id, &ui)) ui.Enable(false);
    }
}

LRESULT FrameWnd::OnMessage(UINT msg, WPARAM w, LPARAM l) {
    switch (msg) {
    case WM_COMMAND:
        if (OnCmdMsg(LOWORD(w), nullptr)) return 0;
        break;
    case WM_INITMENUPOPUP:
        if (!HIWORD(l)) UpdateMenuItems(reinterpret_cast<HMENU>(w));
        return 0;
    case WM_CREATE:
        return OnCreate();
    case WM_MENUSELECT:
        OnMenuSelectPrompt(LOWORD(w), HIWORD(w), reinterpret_cast<HMENU>(l));
        return 0;
    case WM_SIZE:
        RecalcLayout();
        return 0;
    case WM_NOTIFY:
        if (auto* header = reinterpret_cast<NMHDR*>(l)) {
            if (header->code == TTN_GETDISPINFOW && OnToolTipText(*header)) return 0;
            LRESULT result = 0;
            WindowImpl* child = WindowImpl::FromHandle(header->hwndFrom);
            if (child && child->OnReflectedNotify(*header, result)) return result;
        }
        break;
    case WM_CLOSE:
        OnClose();
        return 0;
    case WM_DESTROY:
        if (WinApp* app = WinApp::Current(); app && app->MainWindow() == this) {
            app->SetMainWindow(nullptr);
            ::PostQuitMessage(0);
        }
        break;
    default:
        break;
    }
    return DefaultProc(msg, w, l);
}

}  // namespace fw
