#include "window/KYjlpFrameMain.h"

#include "app/KYjlpApp.h"
#include "framework/ResourceModule.h"
#include "registrar/KYjutlRegistrar.h"
#include "window/KYjlpViewList.h"

namespace {
constexpr DWORD kDefaultFrameStyle = 0x04CFC000;
constexpr DWORD kDefaultFrameExtra = WS_EX_WINDOWEDGE;
constexpr DWORD kStatusBarStyle = 0x40008200;  // child, along the bottom, top border, hidden
constexpr DWORD kToolBarStyle = 0x40002800;    // child, along the top, prompts on hover, hidden
constexpr int kSessionPaneWidth = 220;         // at 96 dots per inch

// The registered message by which the session tells that the client's facts changed.
const UINT g_uClientEnvVarChange = RegisterWindowMessageW(L"QRClientEnvVarChange");

KYjutlRegistrar_PREFS* Preferences(KYjlpApp* app) {
    return app && app->m_pRegistrar ? app->m_pRegistrar->m_pPreferences : nullptr;
}
}  // namespace

KYjlpFrameMain::~KYjlpFrameMain() {
    // The bars are children of the window: they go with it, then their objects.
    m_pToolBar.reset();
    m_pStatusBar.reset();
}

bool KYjlpFrameMain::LoadFrame(UINT resourceId, DWORD style) {
    m_nResourceId = resourceId;
    return fw::FrameWnd::LoadFrame(resourceId, style);
}

// The styles the user's preferences keep; the window is shown by RestoreWindow.
void KYjlpFrameMain::PreCreateWindow(fw::WindowCreateArgs& args) {
    KYjutlRegistrar_PREFS* prefs = Preferences(TheApp());
    args.style = prefs ? prefs->dwFrameStyle : kDefaultFrameStyle;
    args.exStyle = prefs ? prefs->dwFrameExtra1 : kDefaultFrameExtra;
    args.style &= ~static_cast<DWORD>(WS_VISIBLE | WS_CHILD | WS_POPUP);
    args.style |= WS_CLIPCHILDREN;
}

int KYjlpFrameMain::OnCreate() {
    KYjlpApp* app = TheApp();
    int number = 0;
    SetLastError(0);
    try {
        auto icon = static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(128), IMAGE_ICON,
                                                  GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON),
                                                  LR_SHARED));
        if (!icon) throw 27505;
        Send(WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
        if (app && app->m_abShow[2]) number = CreateBarStatus();
        if (number == 0 && app && app->m_abShow[4]) number = CreateBarTool();
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27505;
    }
    if (number == 0) return 0;
    if (number != 27506 && (number < 27515 || number > 27528)) number = 27505;
    if (app) app->ReportStartupFailure(number, nullptr, MB_ICONERROR);
    m_pToolBar.reset();
    m_pStatusBar.reset();
    return -1;
}

int KYjlpFrameMain::CreateBarStatus() {
    KYjlpApp* app = TheApp();
    if (!app || !app->m_abShow[2]) return 27520;
    if (m_pStatusBar) return 27516;
    auto bar = std::make_unique<KYjlpStatusBar>();
    if (!bar->Create(m_hwnd, kStatusBarId, kStatusBarStyle)) return 27515;
    const int edges[2] = {-1, -1};
    if (!bar->SetIndicatorsTracked(edges, 2)) return 27519;
    bar->SetText(fw::ResString(24618).c_str());
    m_pStatusBar = std::move(bar);
    return 0;
}

int KYjlpFrameMain::CreateBarTool() {
    KYjlpApp* app = TheApp();
    if (!app || !app->m_abShow[4]) return 27527;
    if (m_pToolBar) return 27523;
    auto bar = std::make_unique<fw::ToolBar>();
    if (!bar->Create(m_hwnd, kToolBarStyle, kToolBarId)) return 27521;
    if (!bar->LoadToolBar(131)) return 27524;
    if (!bar->SetText(fw::ResString(24619).c_str())) return 27526;
    m_pToolBar = std::move(bar);
    return 0;
}

void KYjlpFrameMain::RecalcLayout() {
    RECT r{};
    GetClientRect(r);
    if (m_pToolBar && *m_pToolBar) {
        m_pToolBar->Send(TB_AUTOSIZE);
        r.top += m_pToolBar->Height();
    }
    if (m_pStatusBar && *m_pStatusBar) {
        m_pStatusBar->Send(WM_SIZE, 0, 0);
        // The session's pane keeps its width at the right; the message pane takes the rest.
        const UINT dpi = GetDpiForWindow(m_hwnd);
        const int pane = MulDiv(kSessionPaneWidth, dpi ? static_cast<int>(dpi) : 96, 96);
        const int edges[2] = {r.right > pane ? r.right - pane : r.right / 2, -1};
        m_pStatusBar->Send(SB_SETPARTS, 2, reinterpret_cast<LPARAM>(edges));
        r.bottom -= m_pStatusBar->Height();
    }
    if (r.bottom < r.top) r.bottom = r.top;
    if (fw::View* view = ActiveView(); view && *view) view->Move(r);
}

void KYjlpFrameMain::SetMessageText(const std::wstring& text) {
    if (!m_pStatusBar || !m_pStatusBar->IsVisible()) return;
    if (text.empty()) {
        // The menu closed: the count comes back instead of an idle message.
        EndBusyText();
        return;
    }
    m_pStatusBar->SetOverrideText(0, text);
}

void KYjlpFrameMain::SetBusyText(const std::wstring& text) {
    if (!m_pStatusBar || !m_pStatusBar->SetOverrideText(0, text)) EndBusyText();
}

void KYjlpFrameMain::EndBusyText() {
    if (!m_pStatusBar) return;
    m_pStatusBar->ClearOverride(0);
    m_pStatusBar->RefreshPaneCount(dynamic_cast<KYjlpViewList*>(ActiveView()));
}

LRESULT KYjlpFrameMain::OnMessage(UINT msg, WPARAM w, LPARAM l) {
    if (msg == g_uClientEnvVarChange && msg != 0) return OnClientEnvVarChange();
    switch (msg) {
    case fw::WM_IDLEUPDATECMDUI:
        // The framework's idle update: the first pane follows the list's count,
        // the buttons and the session's pane follow their update handlers.
        if (m_pStatusBar) m_pStatusBar->RefreshPaneCount(dynamic_cast<KYjlpViewList*>(ActiveView()));
        if (m_pToolBar && m_pToolBar->IsVisible()) m_pToolBar->UpdateButtons(*this);
        UpdateSessionPane();
        break;
    case WM_SYSCOMMAND:
        if (OnSysCommand(w)) return 0;
        break;
    case WM_WINDOWPOSCHANGING: {
        LRESULT result = fw::FrameWnd::OnMessage(msg, w, l);
        OnWindowPosChanging(*reinterpret_cast<WINDOWPOS*>(l));
        return result;
    }
    case WM_MENUSELECT:
        OnTopMenuSelect(LOWORD(w), HIWORD(w), reinterpret_cast<HMENU>(l));
        if (HIWORD(w) & MF_POPUP) return 0;
        break;
    case WM_SETTINGCHANGE:
        fw::FrameWnd::OnMessage(msg, w, l);
        OnSettingChange(static_cast<UINT>(w), reinterpret_cast<const wchar_t*>(l));
        return 0;
    case WM_HELP:
        if (OnHelpInfo()) return TRUE;
        break;
    default:
        break;
    }
    return fw::FrameWnd::OnMessage(msg, w, l);
}
