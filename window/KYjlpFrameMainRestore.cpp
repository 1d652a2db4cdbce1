// The frame's showing: RestoreWindow brings the window in line with the
// preferences at the end of start-up and after a settings restore; the Classic
// desktop keeps its title and its place behind every other window.
#include "app/KYjlpApp.h"
#include "brander/KYpbr.h"
#include "foundation/KYstdPgmStat.h"
#include "framework/ResourceModule.h"
#include "monitor/KYbpm.h"
#include "registrar/KYjutlRegistrar.h"
#include "window/KYjlpFrameMain.h"

namespace {
constexpr int kBrandIcon = 10;
constexpr DWORD kNoWindow = ERROR_INVALID_WINDOW_HANDLE;  // 1400
}  // namespace

// One report of the display step: the error's text and who asked; the steps go on.
void KYjlpFrameMain::ReportRestore(int number, const wchar_t* caller, DWORD error) {
    KYjlpApp* app = TheApp();
    if (!app || !app->m_pMonitor) return;
    KYbpm& monitor = *app->m_pMonitor;
    monitor.recordSituationID(number);
    if (number != 27508) monitor.recordArgument(app->FormatCode(error ? error : kNoWindow));
    monitor.recordArgument(caller);
    if (!monitor.respondToSituation()) monitor.forgetSituation();
}

bool KYjlpFrameMain::RestoreWindow(const wchar_t* caller) {
    KYjlpApp* app = TheApp();
    if (!app) return false;
    if (!caller) caller = L"NULL";
    int number = 0;
    try {
        if (app->m_pMonitor) app->m_pMonitor->forgetSituation();
        app->m_nCmdShow = SW_SHOWNORMAL;
        if (KYjutlRegistrar_PREFS* prefs = app->m_pRegistrar ? app->m_pRegistrar->m_pPreferences : nullptr) {
            const uint32_t bits = prefs->uControlBarsStates;
            ShowMenuBar((bits & 2) ? 1 : -1);
            ShowStatusBar((bits & 4) ? 1 : -1);
            ShowTitleBar((bits & 8) ? 1 : -1);
            ShowToolBar((bits & 16) ? 1 : -1);
        }
        // The first showing follows the list's building at once: there is nothing to bring up to date.
        if (m_bShown) app->RefreshItems();
        SetPlacement(caller);
        SetFrameIcon(caller);
        SetTitle(caller);
        Show(app->m_nCmdShow);
        if (!IsVisible() && app->m_nCmdShow != SW_HIDE) throw 27514;
        m_bShown = true;
        if (app->m_bClassicDesktop &&
            !SetWindowPos(m_hwnd, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE))
            ReportRestore(27509, caller, GetLastError());
        if (!Update()) ReportRestore(27513, caller, GetLastError());
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27507;
    }
    if (number) ReportRestore(number, caller, GetLastError());
    return !app->m_pMonitor || app->m_pMonitor->isSituationNormal();
}

void KYjlpFrameMain::SetPlacement(const wchar_t* caller) {
    KYjlpApp* app = TheApp();
    KYjutlRegistrar_PREFS* prefs = app->m_pRegistrar ? app->m_pRegistrar->m_pPreferences : nullptr;
    if (!prefs) return;
    WINDOWPLACEMENT placement = prefs->wpPlacement;
    placement.length = sizeof placement;
    // Shown by the showing step below, not while it is placed.
    const UINT show = placement.showCmd;
    placement.showCmd = SW_HIDE;
    if (SetWindowPlacement(m_hwnd, &placement)) app->m_nCmdShow = static_cast<int>(show);
    else ReportRestore(27510, caller, GetLastError());
}

void KYjlpFrameMain::SetFrameIcon(const wchar_t* caller) {
    KYjlpApp* app = TheApp();
    if (!app->m_pBrander) {
        ReportRestore(27508, caller, 0);
        return;
    }
    auto icon = static_cast<HICON>(app->m_pBrander->loadImage(kBrandIcon, GetSystemMetrics(SM_CXICON),
                                                               GetSystemMetrics(SM_CYICON), 0));
    if (icon) Send(WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
    // The message answers the icon it replaced, so the icon is read back instead.
    if (!icon || reinterpret_cast<HICON>(Send(WM_GETICON, ICON_BIG)) != icon)
        ReportRestore(27511, caller, GetLastError());
}

void KYjlpFrameMain::SetTitle(const wchar_t* caller) {
    KYjlpApp* app = TheApp();
    std::wstring title;
    if (app->m_bClassicDesktop) {
        title = kClassicTitle;
    } else {
        wchar_t product[260] = {}, edition[260] = {};
        if (app->m_pBrander) {
            app->m_pBrander->loadText(7, product, 260);
            app->m_pBrander->loadText(9, edition, 260);
        }
        if (product[0] && edition[0]) {
            wchar_t buffer[600] = {};
            _snwprintf(buffer, 599, fw::ResString(24612).c_str(), product, edition);
            title = buffer;
        }
        if (title.empty()) title = product;
        if (title.empty()) title = fw::ResString(57344);
    }
    if (!SetText(title.c_str()) && app->m_pMonitor && !app->m_pMonitor->respondToSituation(27512, 0, caller))
        app->m_pMonitor->forgetSituation();
}

// The Classic desktop takes its title once, and no change but the one that
// sends it to the bottom moves it in the z-order: it stays behind every window.
void KYjlpFrameMain::OnWindowPosChanging(WINDOWPOS& pos) {
    KYjlpApp* app = TheApp();
    if (!app || !app->m_bClassicDesktop) return;
    if (!m_bClassicTitleSet && SetText(kClassicTitle)) m_bClassicTitleSet = true;
    if (pos.hwndInsertAfter != HWND_BOTTOM) pos.flags |= SWP_NOZORDER;
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
