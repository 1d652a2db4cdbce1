// What the frame does for the session: the close policy, the client's facts
// handed on to the programs started later, the network drive dialogs, the
// default printer's change, and help.
#include <windows.h>
#include <winnetwk.h>

#include "app/KYjlpApp.h"
#include "monitor/KYbpm.h"
#include "registrar/KYjutlRegistrar.h"
#include "window/KYjlpFrameMain.h"

namespace {
constexpr UINT kDisconnect = 32820, kLogoff = 32821, kNetworkConnect = 32783;
constexpr DWORD kClientFactsCode = 0x80FF00C4;
constexpr DWORD kClientFactsSize = 642;
constexpr DWORD kClientFactsCleared = 386;
constexpr size_t kAddressOffset = 512;  // bytes
const wchar_t kSessionDevice[] = L"\\\\.\\Sorel";

// The numbers of one network drive command: unknown failure, provider's error,
// other error, no window.
struct DriveNumbers {
    int unknown, provider, other, noWindow;
};
constexpr DriveNumbers kConnectNumbers{27591, 27592, 27593, 27594};
constexpr DriveNumbers kDisconnectNumbers{27595, 27596, 27597, 27598};
}  // namespace

// Closing the window of a session normally disconnects it, so that the
// programs go on; the server's close option may ask for a log-off or a plain close.
bool KYjlpFrameMain::OnSysCommand(WPARAM command) {
    if ((command & 0xFFF0) != SC_CLOSE) return false;
    KYjlpApp* app = TheApp();
    const uint32_t option = app && app->m_pRegistrar ? app->m_pRegistrar->m_uCloseOption : 0;
    if (option == 2 || !app) return false;
    if (option == 1) {
        Send(WM_COMMAND, kLogoff);
        return true;
    }
    const int available = app->IsDisconnectAvailable(false);
    if (available == 1) Send(WM_COMMAND, kDisconnect);
    else if (available == 0) Send(WM_COMMAND, kLogoff);
    else return false;
    return true;
}

// The session tells that the client changed: its name and address go into the
// environment, which programs started later inherit.
LRESULT KYjlpFrameMain::OnClientEnvVarChange() {
    HANDLE device = CreateFileW(kSessionDevice, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (device == INVALID_HANDLE_VALUE) return 1;
    ky::UniqueFile owned(device);
    BYTE facts[kClientFactsSize];
    ZeroMemory(facts, kClientFactsCleared);
    ZeroMemory(facts + kClientFactsCleared, kClientFactsSize - kClientFactsCleared);
    DWORD returned = 0;
    // A failed call leaves the cleared buffer: the variables become empty, as the client is unknown.
    DeviceIoControl(device, kClientFactsCode, nullptr, 0, facts, kClientFactsSize, &returned, nullptr);
    facts[kAddressOffset - 2] = facts[kAddressOffset - 1] = 0;
    facts[kClientFactsSize - 2] = facts[kClientFactsSize - 1] = 0;
    SetEnvironmentVariableW(L"CLIENTCOMPUTERNAME", reinterpret_cast<const wchar_t*>(facts));
    SetEnvironmentVariableW(L"CLIENTCOMPUTERIPADDRESS", reinterpret_cast<const wchar_t*>(facts + kAddressOffset));
    return 1;
}

void KYjlpFrameMain::OnNetworkDrive(UINT id) {
    KYjlpApp* app = TheApp();
    KYbpm* monitor = app ? app->m_pMonitor : nullptr;
    const DriveNumbers& numbers = id == kNetworkConnect ? kConnectNumbers : kDisconnectNumbers;
    if (monitor) monitor->forgetSituation();
    int number = 0;
    try {
        if (!*this) throw numbers.noWindow;
        const DWORD result = id == kNetworkConnect ? WNetConnectionDialog(m_hwnd, RESOURCETYPE_DISK)
                                                   : WNetDisconnectDialog(m_hwnd, RESOURCETYPE_DISK);
        if (result == NO_ERROR || result == static_cast<DWORD>(-1)) return;  // done, or the user cancelled
        if (!monitor) return;
        if (result == ERROR_EXTENDED_ERROR) {
            DWORD provider = 0;
            WNetGetLastErrorW(&provider, app->m_wszScratch1, KYjlpApp::kScratchChars, app->m_wszScratch2,
                              KYjlpApp::kScratchChars);
            monitor->recordSituationID(numbers.provider);
            monitor->recordArgument(static_cast<uint32_t>(provider));
            monitor->recordArgument(app->m_wszScratch1);
            monitor->recordArgument(app->m_wszScratch2);
        } else {
            monitor->recordSituationID(numbers.other);
            monitor->recordArgument(app->FormatCode(result));
        }
    } catch (int n) {
        number = n;
    } catch (...) {
        number = numbers.unknown;
    }
    if (!monitor) return;
    if (number) monitor->recordSituationID(number);
    app->RespondAndForget();
}

// A change of the default printer comes as a change of the "Windows" section:
// the client printers are looked at again.
void KYjlpFrameMain::OnSettingChange(UINT flags, const wchar_t* section) {
    KYjlpApp* app = TheApp();
    if (flags != 0 || !section || lstrcmpiW(section, L"Windows") != 0 || !app) return;
    if (app->m_bPrintersActive) app->PostWatchEvent(3, false);
}

bool KYjlpFrameMain::OnHelpInfo() {
    // Help opens with the help file and its window; until then F1 is the system's.
    return false;
}

void KYjlpFrameMain::OnHelpCommand(UINT id) {
    (void)id;
    OnHelpInfo();
}

void KYjlpFrameMain::OnUpdateHelp(fw::CmdUI& ui) {
    KYjlpApp* app = TheApp();
    ui.Enable(app && !app->m_strHelpFilePath.empty() && app->m_nHelpKind != 0 && app->m_nHelpSituation == 0);
}
