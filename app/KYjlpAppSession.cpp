// The session the program runs in: the session device that tells a server
// session from a standalone run, and the signal to the logon manager.
#include "app/KYjlpApp.h"
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
