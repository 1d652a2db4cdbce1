#include "window/KYjlpFrameMain.h"

#include "app/KYjlpApp.h"
#include "brander/KYpbr.h"
#include "foundation/KYstdPgmStat.h"
#include "framework/ResourceModule.h"
#include "monitor/KYbpm.h"

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
