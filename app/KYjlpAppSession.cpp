// The session the program runs in: the session device that tells a server
// session from a standalone run, and the signal to the logon manager.
#include "app/KYjlpApp.h"
#include "framework/FrameWnd.h"
#include "registrar/KYjutlRegistrar.h"
#include "brander/KYpbr.h"
#include "monitor/KYbpm.h"

namespace {
constexpr DWORD kIoctlGetSessionIdPlus = 0x80FF0044;
const wchar_t kSessionDevice[] = L"\\\\.\\Sorel";
const wchar_t kLogonManagerEvent[] = L"LogonManager_LaunchPanel_Exchange";
}  // namespace

void KYjlpApp::DetectSession() {
    m_bSessionDetected = true;
    ky::UniqueFile device(CreateFileW(kSessionDevice, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (device) {
        BYTE answer[16] = {};
        DWORD returned = 0;
        BOOL result = DeviceIoControl(device.get(), kIoctlGetSessionIdPlus, nullptr, 0, answer,
                                      sizeof answer, &returned, nullptr);
        device.reset();
        if (result == 1) {
            if (m_bShell) {
                // The list window needs the session library; without it the session is not usable.
                m_hSessionLibrary = LoadLibraryW(L"Tessel.dll");
                if (m_hSessionLibrary) m_bStandalone = false;
            } else {
                m_bStandalone = false;
            }
        }
    }
    if (m_bStandalone) m_bPrintersAttempted = true;
}

bool KYjlpApp::SignalLogonManager() {
    int number = 0;
    DWORD error = 0;
    ky::UniqueHandle event;
    try {
        event.reset(OpenEventW(EVENT_MODIFY_STATE, FALSE, kLogonManagerEvent));
        if (!event) {
            error = GetLastError();
            throw 27116;
        }
        if (!SetEvent(event.get())) {
            error = GetLastError();
            throw 27117;
        }
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27113;
    }
    if (number && m_pMonitor) {
        m_pMonitor->recordSituationID(number);
        if (error) m_pMonitor->recordArgument(FormatCode(error).c_str());
        SetLastError(0);
        if (number == 27116 || number == 27117) {
            wchar_t attribute[128] = {};
            if (m_pBrander) m_pBrander->loadText(KYpbr::kLogonManagerName, attribute, 128);
            m_pMonitor->recordArgument(kLogonManagerEvent);
            m_pMonitor->recordArgument(attribute);
        }
        RespondAndForget();
    }
    return number == 0;
}

namespace {
using SharedAccountFn = int (*)(uint32_t*, int);
using DisconnectFn = int (*)();
using ClientVersionFn = int (*)(wchar_t*);
const wchar_t kSessionLibrary[] = L"Tessel.dll";
const wchar_t kShutdownEvent[] = L"qrSessionShutdownEvent";
constexpr int kAnswerCancel = IDCANCEL, kAnswerYes = IDYES;
}  // namespace

// A session without a time-out offers no disconnect, and neither does a shared
// account: the user could not come back to it. 1 yes, 0 no, -1 unknown.
int KYjlpApp::IsDisconnectAvailable(bool refresh) {
    if (m_bStandalone) return 0;
    auto shared = reinterpret_cast<SharedAccountFn>(m_pfnIsSharedAccountSession);
    if (!shared) return -1;
    uint32_t isShared = 0;
    if (shared(&isShared, refresh ? 1 : 0) != 0) return -1;
    if (isShared == 1) return 0;
    if (!m_pRegistrar) return -1;
    if (refresh && !m_pRegistrar->ObtainSessionTimeout()) return -1;
    return m_pRegistrar->m_uSessionTimeout == 0 ? 0 : 1;
}

bool KYjlpApp::ObtainClientVersion() {
    if (m_bStandalone) return true;
    int number = 0;
    DWORD error = 0;
    try {
        auto version = reinterpret_cast<ClientVersionFn>(
            reinterpret_cast<void*>(GetProcAddress(m_hSessionLibrary, "tessGetClientVersion")));
        if (!version) {
            error = GetLastError();
            throw 27775;
        }
        WipeScratch();
        version(m_wszScratch1);
        m_wszScratch1[kScratchChars - 1] = L'\0';
        std::wstring text = m_wszScratch1;
        for (wchar_t& c : text)
            if (c == L',') c = L'.';
        m_strClientVersion = text;
        WipeScratch();
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27729;
        error = GetLastError();
    }
    if (number && m_pMonitor) {
        m_pMonitor->recordSituationID(number);
        m_pMonitor->recordArgument(FormatCode(error));
        if (number == 27775) {
            m_pMonitor->recordArgument(kSessionLibrary);
            m_pMonitor->recordArgument(L"tessGetClientVersion");
        }
    }
    return number == 0;
}

// Disconnect: the user is asked first; the program then ends with the session,
// not by itself.
void KYjlpApp::OnAppDisconnect(UINT) {
    SetLastError(0);
    if (m_bStandalone || !m_pMonitor) return;
    int number = 0, result = 0;
    DWORD error = 0;
    try {
        if (IsDisconnectAvailable(true) != 1) throw 27730;
        HMODULE library = GetModuleHandleW(kSessionLibrary);
        if (!library) {
            error = GetLastError();
            throw 27731;
        }
        auto disconnect = reinterpret_cast<DisconnectFn>(
            reinterpret_cast<void*>(GetProcAddress(library, "tessDisconnectSession")));
        if (!disconnect) {
            error = GetLastError();
            throw 27732;
        }
        if (AskDisconnect() == kAnswerCancel) return;
        if (IsDisconnectAvailable(true) != 1) throw 27730;
        result = disconnect();
        if (result != 0) throw 27734;
        number = 27739;
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27729;
        error = GetLastError();
    }
    ReportDisconnect(number, error, result);
}

// The announcement: with a time-out the user learns how long the programs wait.
int KYjlpApp::AskDisconnect() {
    const int32_t timeout = static_cast<int32_t>(m_pRegistrar ? m_pRegistrar->m_uSessionTimeout : 0);
    m_pMonitor->recordSituationID(timeout < 0 ? 27737 : 27738);
    if (timeout > 0) m_pMonitor->recordArgument(timeout);
    m_pMonitor->respondToSituation();
    const int answer = m_pMonitor->getDisplayDlgBoxResult();
    m_pMonitor->forgetSituation();
    return answer;
}

void KYjlpApp::ReportDisconnect(int number, DWORD error, int result) {
    if (number == 0 || !m_pMonitor) return;
    m_pMonitor->recordSituationID(number);
    switch (number) {
    case 27729:
        m_pMonitor->recordArgument(FormatCode(error));
        m_pMonitor->recordArgument(static_cast<uint32_t>(result));
        break;
    case 27731:
    case 27732:
        m_pMonitor->recordArgument(FormatCode(error));
        m_pMonitor->recordArgument(kSessionLibrary);
        m_pMonitor->recordArgument(L"tessDisconnectSession");
        break;
    case 27733:
    case 27734:
        m_pMonitor->recordArgument(kSessionLibrary);
        m_pMonitor->recordArgument(L"tessDisconnectSession");
        m_pMonitor->recordArgument(static_cast<uint32_t>(result));
        if (number != 27733) m_pMonitor->recordArgument(static_cast<int32_t>(result));
        break;
    default:
        break;
    }
    RespondAndForget();
}

// Log off: asked first; then the window closes (saving the preferences) and the
// session side is told through its shutdown event, if it listens.
void KYjlpApp::OnAppLogoff(UINT) {
    if (m_bStandalone || !m_pMonitor) return;
    m_pMonitor->respondToSituation(27774, 0);
    const int answer = m_pMonitor->getDisplayDlgBoxResult();
    m_pMonitor->forgetSituation();
    if (answer != kAnswerYes) return;
    if (fw::FrameWnd* frame = MainWindow(); frame && *frame) frame->Send(WM_CLOSE);
    ky::UniqueHandle shutdown(OpenEventW(EVENT_MODIFY_STATE, FALSE, kShutdownEvent));
    if (shutdown) SetEvent(shutdown.get());
}
