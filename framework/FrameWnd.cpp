#include "framework/FrameWnd.h"

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
    bool ok = Create({.className = kFrameClass,
                      .title = app ? app->AppName() : L"",
                      .style = style,
                      .menuOrId = menu.get()});
    if (ok) menu.release();
    return ok;
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
    case WM_SIZE:
        RecalcLayout();
        return 0;
    case WM_NOTIFY:
        if (auto* header = reinterpret_cast<NMHDR*>(l)) {
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
