#include "window/KYjlpFrameMain.h"

#include "app/KYjlpApp.h"
#include "brander/KYpbr.h"
#include "foundation/KYstdPgmStat.h"
#include "framework/ResourceModule.h"
#include "monitor/KYbpm.h"
#include "window/KYjlpViewList.h"

namespace {
constexpr UINT kStatusBarId = 0xE801;  // the framework's id of the status bar
}  // namespace

bool KYjlpFrameMain::LoadFrame(UINT resourceId, DWORD style) {
    if (!fw::FrameWnd::LoadFrame(resourceId, style)) return false;
    // Two panes: the count or a message, and the session's pane at the right.
    if (m_statusBar.Create(m_hwnd, kStatusBarId)) {
        const int edges[2] = {-1, -1};
        m_statusBar.SetIndicatorsTracked(edges, 1);
    }
    return true;
}

void KYjlpFrameMain::RecalcLayout() {
    RECT r{};
    GetClientRect(r);
    if (m_statusBar) {
        SendMessageW(m_statusBar.Handle(), WM_SIZE, 0, 0);
        r.bottom -= m_statusBar.Height();
    }
    if (fw::View* view = ActiveView(); view && *view) view->Move(r);
}

void KYjlpFrameMain::SetBusyText(const std::wstring& text) {
    if (!m_statusBar.SetOverrideText(0, text)) EndBusyText();
}

void KYjlpFrameMain::EndBusyText() {
    m_statusBar.ClearOverride(0);
    m_statusBar.RefreshPaneCount(dynamic_cast<KYjlpViewList*>(ActiveView()));
}

LRESULT KYjlpFrameMain::OnMessage(UINT msg, WPARAM w, LPARAM l) {
    // The framework's idle update: the first pane follows the list's count.
    if (msg == fw::WM_IDLEUPDATECMDUI) m_statusBar.RefreshPaneCount(dynamic_cast<KYjlpViewList*>(ActiveView()));
    return fw::FrameWnd::OnMessage(msg, w, l);
}

bool KYjlpFrameMain::RestoreWindow(const wchar_t* caller) {
    KYjlpApp* app = TheApp();
    if (!app || !*this) return false;
    if (app->m_pMonitor) app->m_pMonitor->forgetSituation();
    app->m_nCmdShow = SW_SHOWNORMAL;
    // The window bits, placement and icon from the preferences come with the frame's features.
    // The first showing follows the list's building at once: there is nothing to bring up to date.
    if (m_bShown) app->RefreshItems();
    m_bShown = true;
    std::wstring title;
    app->GetTagText(title, 7);
    if (title.empty()) title = fw::ResString(57344);
    if (!SetText(title.c_str()) && app->m_pMonitor &&
        !app->m_pMonitor->respondToSituation(27512, 0, caller ? caller : L"NULL"))
        app->m_pMonitor->forgetSituation();
    Show(app->m_nCmdShow);
    Update();
    return !app->m_pMonitor || app->m_pMonitor->isSituationNormal();
}

void KYjlpFrameMain::RebuildMenu() {
    if (*this) DrawMenuBar(m_hwnd);
}

void KYjlpFrameMain::OnClose() {
    // The watches stop first, so that no handler runs while the window goes.
    if (KYjlpApp* app = TheApp()) {
        app->m_bWatching = false;
        app->CloseWinHelp();
        // A store that could not be written is told: the user's settings are
        // not silently lost.
        if (!app->SavePreferences() && app->m_pMonitor && app->m_pStatus &&
            !app->m_pMonitor->respondToSituation(static_cast<int>(app->m_pStatus->FirstSituation()), 0))
            app->m_pMonitor->forgetSituation();
    }
    fw::FrameWnd::OnClose();
}
