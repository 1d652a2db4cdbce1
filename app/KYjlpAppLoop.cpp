// The running program: the pump that also waits on the three watch events, the
// registry watches, the watch handlers and the idle counts.
#include "app/KYjlpApp.h"
#include "app/KYjlpItemLaunchRequest.h"
#include "framework/ResourceModule.h"
#include "brander/KYpbr.h"
#include "framework/FrameWnd.h"
#include "monitor/KYbpm.h"
#include "monitor/KYbpmDataQRW.h"
#include "registrar/KYjutlRegistrar.h"
#include "window/KYjlpFrameMain.h"
#include "window/KYjlpViewList.h"

namespace {
const wchar_t kCatalogueKey[] = L"SOFTWARE\\Veltran\\Corvane\\AppServer\\InstalledApps";
const wchar_t kServerKey[] = L"SOFTWARE\\Veltran\\Corvane\\AppServer";
constexpr REGSAM kNotifyAccess = KEY_NOTIFY | READ_CONTROL;  // 0x20010
constexpr DWORD kNotifyFilter = REG_NOTIFY_CHANGE_NAME | REG_NOTIFY_CHANGE_LAST_SET;  // 5
}  // namespace

bool KYjlpApp::PumpMessage() {
    MSG peek;
    if (m_bWatching && !PeekMessageW(&peek, nullptr, 0, 0, PM_NOREMOVE) && WaitForWatchOrMessage())
        return true;
    BOOL got = GetMessageW(&m_msgCur, nullptr, 0, 0);
    if (got == 0) {
        m_bWatching = false;
        m_nExitCode = static_cast<int>(m_msgCur.wParam);
        return false;
    }
    if (got == -1) return true;  // no message was fetched: nothing to dispatch
    if (m_msgCur.message == fw::WM_KICKIDLE) return true;
    if (PreTranslateMessage(m_msgCur)) return true;
    TranslateMessage(&m_msgCur);
    DispatchMessageW(&m_msgCur);
    return true;
}

bool KYjlpApp::WaitForWatchOrMessage() {
    HANDLE handles[3];
    DWORD count = 0;
    for (const auto& event : m_hWatchEvents)
        if (event) handles[count++] = event.get();
    if (count == 0) return false;
    DWORD result = MsgWaitForMultipleObjects(count, handles, FALSE, INFINITE, QS_ALLINPUT);
    if (result == WAIT_TIMEOUT) return true;
    if (result == WAIT_FAILED) return false;
    if (result == WAIT_OBJECT_0 + count) return true;  // input arrived
    if (result >= WAIT_OBJECT_0 + count) return true;
    return DispatchWatchEvent(handles[result - WAIT_OBJECT_0]);
}

bool KYjlpApp::DispatchWatchEvent(HANDLE signalled) {
    try {
        if (signalled == m_hWatchEvents[kWatchPrinters].get()) OnPrintersChanged();
        else if (signalled == m_hWatchEvents[kWatchCatalogue].get()) OnCatalogueChanged();
        else if (signalled == m_hWatchEvents[kWatchServer].get()) OnServerSettingsChanged();
    } catch (...) {
        // A handler that failed unexpectedly must not end the session's shell;
        // the next change of the key is handled afresh.
        if (m_pMonitor && !m_pMonitor->respondToSituation(27015, 0, static_cast<int32_t>(__LINE__),
                                                          L"KYjlpAppLoop.cpp", __DATE__, 0))
            m_pMonitor->forgetSituation();
    }
    // What the change altered (the menu's offer, the list) is shown by the idle
    // update, which a watch event, being no message, would not start: the pump
    // reports it as an empty message, which the loop takes as one that starts idle time.
    m_msgCur = MSG{};
    return true;
}

bool KYjlpApp::StartWatching() {
    m_bWatching = true;
    bool ok = PostWatchEvent(2, true);
    ok = WatchRegistryKey(m_hKeyCatalogue, kCatalogueKey, kWatchCatalogue) && ok;
    ok = WatchRegistryKey(m_hKeyServer, kServerKey, kWatchServer) && ok;
    return ok;
}

bool KYjlpApp::WatchRegistryKey(ky::UniqueHKey& slot, const wchar_t* path, int index) {
    if (m_pMonitor) m_pMonitor->forgetSituation();
    int number = 0;
    DWORD error = 0;
    try {
        slot.reset();
        if (!path || !*path || index < 0 || index > 2) throw 27742;
        LONG rc = RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, kNotifyAccess, slot.put());
        if (rc != ERROR_SUCCESS) {
            error = static_cast<DWORD>(rc);
            throw 27746;
        }
        if (!m_hWatchEvents[index]) {
            m_hWatchEvents[index].reset(CreateEventW(nullptr, FALSE, FALSE, nullptr));
            if (!m_hWatchEvents[index]) {
                error = GetLastError();
                throw 27743;
            }
        }
        rc = RegNotifyChangeKeyValue(slot.get(), TRUE, kNotifyFilter, m_hWatchEvents[index].get(), TRUE);
        if (rc != ERROR_SUCCESS) {
            error = static_cast<DWORD>(rc);
            throw 27744;
        }
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27741;
        error = GetLastError();
    }
    if (number && m_pMonitor) {
        const wchar_t* shown = !path ? L"(NULL)" : !*path ? L"(BLANK)" : path;
        m_pMonitor->recordSituationID(number);
        m_pMonitor->recordArgument(shown);
        if (number != 27742) m_pMonitor->recordArgument(FormatCode(error).c_str());
        RespondAndForget();
    }
    return number == 0;
}

bool KYjlpApp::PostWatchEvent(int action, bool create) {
    if (m_pMonitor) m_pMonitor->forgetSituation();
    int number = 0;
    DWORD error = 0;
    try {
        HANDLE event = m_hWatchEvents[kWatchPrinters].get();
        if (event) {
            BOOL ok = action == 1 ? PulseEvent(event) : action == 2 ? ResetEvent(event)
                    : action == 3 ? SetEvent(event) : FALSE;
            if (!ok) {
                error = GetLastError();
                throw 27589;
            }
        } else if (create) {
            m_hWatchEvents[kWatchPrinters].reset(CreateEventW(nullptr, FALSE, action == 3, nullptr));
            if (!m_hWatchEvents[kWatchPrinters]) {
                error = GetLastError();
                throw 27588;
            }
        } else {
            throw 27590;
        }
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27587;
    }
    if (number && m_pMonitor) {
        m_pMonitor->recordSituationID(number);
        m_pMonitor->recordArgument(static_cast<int32_t>(action));
        if (number != 27590) m_pMonitor->recordArgument(FormatCode(error).c_str());
        RespondAndForget();
    }
    return number == 0;
}

bool KYjlpApp::OnCatalogueChanged() {
    WatchRegistryKey(m_hKeyCatalogue, kCatalogueKey, kWatchCatalogue);
    return RefreshItems();
}

bool KYjlpApp::OnServerSettingsChanged() {
    if (m_bStandalone) return true;
    WatchRegistryKey(m_hKeyServer, kServerKey, kWatchServer);
    if (m_pMonitor) m_pMonitor->setBehaviorCriteria(KYbpmDataQRW::obtainBehaviorCriteria() |
                                                    KYbpmCriteria::kInSession | KYbpmCriteria::kSessionLog);
    if (!m_pRegistrar) return false;
    const std::wstring oldShared = m_pRegistrar->m_szSharedAccounts;
    const uint32_t oldTimeout = m_pRegistrar->m_uSessionTimeout;
    if (!m_pRegistrar->ObtainSharedAccounts()) {
        lstrcpynW(m_pRegistrar->m_szSharedAccounts, oldShared.c_str(), 260);
        return false;
    }
    if (!m_pRegistrar->ObtainSessionTimeout()) {
        m_pRegistrar->m_uSessionTimeout = oldTimeout;
        return false;
    }
    // Disconnect is offered for any non-zero time-out: a change between two
    // non-zero values changes nothing the user sees.
    const uint32_t newTimeout = m_pRegistrar->m_uSessionTimeout;
    const bool same = lstrcmpiW(oldShared.c_str(), m_pRegistrar->m_szSharedAccounts) == 0 &&
                      (oldTimeout == newTimeout || (oldTimeout != 0 && newTimeout != 0));
    if (!same)
        if (auto* frame = dynamic_cast<KYjlpFrameMain*>(MainWindow())) frame->RebuildMenu();
    return true;
}

bool KYjlpApp::OnIdle(long count) {
    try {
        return IdleStep(count);
    } catch (...) {
        return false;  // idle work is retried on the next idle sequence
    }
}

bool KYjlpApp::IdleStep(long count) {
    if (fw::WinApp::OnIdle(count)) return true;
    switch (count) {
    case 1:
        // Wine's list lays its icons out again once the window has shown and
        // painted: the places the user gave them are put back then, once.
        if (!m_bIconPlacesRestored) {
            m_bIconPlacesRestored = true;
            if (KYjlpViewList* view = GetListView()) view->RestoreIconPlaces();
        }
        return true;
    case 2:
        if (!m_bPrintersAttempted && !m_bPrintersActive) return true;
        if (MainWindow()) ShowLaunchStatus(DrainLaunchRequests(kLaunchLimitSeconds, nullptr, nullptr));
        return false;
    case 3:
        if (!m_bPrintersAttempted && !m_bPrintersActive) AcquireClientPrinters(true);
        return false;
    default:
        return false;
    }
}

// While the newest launch still starts, the first pane names it; then the count again.
void KYjlpApp::ShowLaunchStatus(bool starting) {
    auto* frame = dynamic_cast<KYjlpFrameMain*>(MainWindow());
    if (!frame || !frame->StatusBar()) return;
    const KYjlpItemLaunchRequest* head = m_listLaunchRequests.empty() ? nullptr : m_listLaunchRequests.front().get();
    if (starting && head && head->pszName) {
        wchar_t text[512] = {};
        _snwprintf(text, 511, fw::ResString(24598).c_str(), head->pszName.get());
        if (frame->StatusBar()->PaneText(0) != text) frame->SetBusyText(text);
    } else if (frame->StatusBar()->IsOverridden(0)) {
        frame->EndBusyText();
    }
}
