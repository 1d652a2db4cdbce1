// The frame's bars and their commands: each bar switched on and off by its
// command and kept as the window bits of the preferences, and the busy state
// (wait cursor and message) that long steps show.
#include "app/KYjlpApp.h"
#include "framework/ResourceModule.h"
#include "window/KYjlpFrameMain.h"
#include "window/KYjlpViewList.h"

namespace {
constexpr UINT kToggleMenuBar = 32845, kToggleTitleBar = 32848;
constexpr UINT kNetworkConnect = 32783, kNetworkDisconnect = 32784;
constexpr UINT kHelpFinder = 57667, kHelpDefault = 57671, kHelpFirst = 57666;

bool Wanted(int how, bool now) { return how == 0 ? !now : how > 0; }
}  // namespace

// The frame's own command table, searched after the view and the document.
struct KYjlpFrameCommands {
    static constexpr fw::CommandEntry<KYjlpFrameMain> kTable[] = {
        {kToggleMenuBar, kToggleMenuBar, &KYjlpFrameMain::OnToggleBar, &KYjlpFrameMain::OnUpdateToggleBar},
        {kToggleTitleBar, kToggleTitleBar, &KYjlpFrameMain::OnToggleBar, &KYjlpFrameMain::OnUpdateToggleBar},
        {KYjlpFrameMain::kToolBarId, KYjlpFrameMain::kStatusBarId, &KYjlpFrameMain::OnToggleBar,
         &KYjlpFrameMain::OnUpdateToggleBar},
        {kNetworkConnect, kNetworkDisconnect, &KYjlpFrameMain::OnNetworkDrive, nullptr},
        {KYjlpFrameMain::kSessionPaneId, KYjlpFrameMain::kSessionPaneId, nullptr,
         &KYjlpFrameMain::OnUpdateSessionPane},
        {kHelpFinder, kHelpFinder, &KYjlpFrameMain::OnHelpCommand, &KYjlpFrameMain::OnUpdateHelp},
        {kHelpDefault, kHelpDefault, &KYjlpFrameMain::OnHelpCommand, &KYjlpFrameMain::OnUpdateHelp},
        {kHelpFirst, kHelpDefault, nullptr, &KYjlpFrameMain::OnUpdateHelp},
    };
};

bool KYjlpFrameMain::OnCmdMsg(UINT id, fw::CmdUI* ui) {
    if (fw::View* view = ActiveView(); view && view->OnCmdMsg(id, ui)) return true;
    if (fw::Document* doc = ActiveDocument(); doc && doc->OnCmdMsg(id, ui)) return true;
    if (Route<KYjlpFrameMain>(this, KYjlpFrameCommands::kTable, id, ui)) return true;
    fw::WinApp* app = fw::WinApp::Current();
    return app && app->OnCmdMsg(id, ui);
}

void KYjlpFrameMain::OnToggleBar(UINT id) {
    switch (id) {
    case kToggleMenuBar: ShowMenuBar(0); break;
    case kToggleTitleBar: ShowTitleBar(0); break;
    case kToolBarId: ShowToolBar(0); break;
    case kStatusBarId: ShowStatusBar(0); break;
    default: break;
    }
}

void KYjlpFrameMain::OnUpdateToggleBar(fw::CmdUI& ui) {
    KYjlpApp* app = TheApp();
    auto allowed = [app](int index) { return app && app->m_abShow[index]; };
    switch (ui.m_nID) {
    case kToggleMenuBar:
        ui.Enable(allowed(1));
        ui.SetCheck(Menu() != nullptr);
        break;
    case kToggleTitleBar:
        ui.Enable(allowed(3));
        ui.SetCheck((Style() & WS_CAPTION) == WS_CAPTION);
        break;
    case kToolBarId:
        ui.Enable(allowed(4) && m_pToolBar);
        ui.SetCheck(m_pToolBar && m_pToolBar->IsVisible());
        break;
    default:
        ui.Enable(allowed(2) && m_pStatusBar);
        ui.SetCheck(m_pStatusBar && m_pStatusBar->IsVisible());
        break;
    }
}

void KYjlpFrameMain::ShowStatusBar(int how) {
    if (!m_pStatusBar || !*m_pStatusBar) return;
    const bool show = Wanted(how, m_pStatusBar->IsVisible());
    if (show == m_pStatusBar->IsVisible()) return;
    m_pStatusBar->Show(show ? SW_SHOWNA : SW_HIDE);
    RecalcLayout();
    if (show) EndBusyText();
}

void KYjlpFrameMain::ShowToolBar(int how) {
    if (!m_pToolBar || !*m_pToolBar) return;
    const bool show = Wanted(how, m_pToolBar->IsVisible());
    if (show == m_pToolBar->IsVisible()) return;
    m_pToolBar->Show(show ? SW_SHOWNA : SW_HIDE);
    RecalcLayout();
}

void KYjlpFrameMain::ShowTitleBar(int how) {
    const bool now = (Style() & WS_CAPTION) == WS_CAPTION;
    const bool show = Wanted(how, now);
    if (show == now || !*this) return;
    LONG_PTR style = Style();
    style = show ? (style | WS_CAPTION) : (style & ~static_cast<LONG_PTR>(WS_CAPTION));
    SetWindowLongPtrW(m_hwnd, GWL_STYLE, style);
    SetWindowPos(m_hwnd, nullptr, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

void KYjlpFrameMain::ShowMenuBar(int how) {
    const bool now = Menu() != nullptr;
    const bool show = Wanted(how, now);
    if (show == now || !*this) return;
    if (show) {
        ShowMenuFromResource();
        return;
    }
    HMENU menu = Menu();
    if (menu == DefaultMenu()) SetDefaultMenu(nullptr);
    SetMenu(m_hwnd, nullptr);
    ky::UniqueHMenu gone(menu);
}

// The menu comes back from the resource library, made ready as at start.
bool KYjlpFrameMain::ShowMenuFromResource() {
    ky::UniqueHMenu menu(LoadMenuW(fw::ResourceModule(), MAKEINTRESOURCEW(m_nResourceId)));
    if (!menu || !SetMenu(m_hwnd, menu.get())) return false;
    SetDefaultMenu(menu.release());
    AdjustMenuTexts(Menu());
    AddDisconnectItem(Menu());
    DrawMenuBar(m_hwnd);
    return true;
}

uint32_t KYjlpFrameMain::ObtainBarState() const {
    uint32_t bits = 0;
    if (Menu()) bits |= 2;
    if (m_pStatusBar && m_pStatusBar->IsVisible()) bits |= 4;
    if ((Style() & WS_CAPTION) == WS_CAPTION) bits |= 8;
    if (m_pToolBar && m_pToolBar->IsVisible()) bits |= 16;
    return bits;
}

void KYjlpFrameMain::ShowBusy(HCURSOR* saved, UINT messageId, const wchar_t* argument, LPCWSTR cursor) {
    std::wstring text;
    if (m_pStatusBar && m_pStatusBar->IsVisible()) {
        const std::wstring pattern = fw::ResString(messageId);
        wchar_t buffer[512] = {};
        if (argument) _snwprintf(buffer, 511, pattern.c_str(), argument);
        text = argument ? buffer : pattern;
    }
    if (!cursor) cursor = argument ? IDC_APPSTARTING : IDC_WAIT;
    SetBusyCursor(saved, cursor, true, text.empty() ? nullptr : text.c_str(), 0);
}

void KYjlpFrameMain::SetBusyCursor(HCURSOR* saved, LPCWSTR cursor, bool system, const wchar_t* text, int pane) {
    if (saved) *saved = nullptr;
    if (cursor) {
        HCURSOR loaded = LoadCursorW(system ? nullptr : fw::ResourceModule(), cursor);
        HCURSOR previous = loaded ? SetCursor(loaded) : nullptr;
        if (saved) *saved = previous;
    }
    if (!text || !m_pStatusBar || !m_pStatusBar->IsVisible()) return;
    if (!m_pStatusBar->SetOverrideText(pane, text)) EndBusyText();
}

void KYjlpFrameMain::EndBusy(HCURSOR* saved, int pane) {
    if (saved && *saved) SetCursor(*saved);
    if (!m_pStatusBar) return;
    m_pStatusBar->ClearOverride(pane);
    if (m_pStatusBar->IsVisible()) m_pStatusBar->RefreshPaneCount(dynamic_cast<KYjlpViewList*>(ActiveView()));
}

void KYjlpFrameMain::OnUpdateSessionPane(fw::CmdUI& ui) { ui.Enable(true); }

// The second pane tells where the session's user sits: the client computer in a
// session, this computer outside one. Its id's update handler decides whether it
// shows; a pane its handler disables stands empty.
void KYjlpFrameMain::UpdateSessionPane() {
    if (!m_pStatusBar || !m_pStatusBar->IsVisible()) return;
    KYjlpApp* app = TheApp();
    fw::CmdUI pane(kSessionPaneId);
    OnCmdMsg(kSessionPaneId, &pane);
    std::wstring text;
    if (!pane.m_bEnabled) {
        text.clear();
    } else if (app && !app->m_bStandalone) {
        wchar_t client[260] = {};
        GetEnvironmentVariableW(L"CLIENTCOMPUTERNAME", client, 260);
        wchar_t buffer[400] = {};
        _snwprintf(buffer, 399, fw::ResString(client[0] ? 24670 : 24671).c_str(), client);
        text = buffer;
    } else {
        text = fw::ResString(24672);
    }
    if (text == m_strSessionPane) return;
    m_strSessionPane = text;
    m_pStatusBar->Send(SB_SETTEXTW, 1, reinterpret_cast<LPARAM>(text.c_str()));
}
