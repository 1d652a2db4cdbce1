// What the frame does for the session: the close policy, the client's facts
// handed on to the programs started later, the network drive dialogs, the
// default printer's change, and help.
#include <windows.h>
#include <winnetwk.h>

#include "app/KYjlpApp.h"
#include "framework/HtmlHelp.h"
#include "framework/ResourceModule.h"
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
    // Outside a session there is nothing to disconnect or log off: the window simply closes.
    if (!app || app->m_bStandalone) return false;
    const uint32_t option = app->m_pRegistrar ? app->m_pRegistrar->m_uCloseOption : 0;
    if (option == 2) return false;
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
    UpdateSessionPane();
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

bool KYjlpFrameMain::HelpAvailable() const {
    KYjlpApp* app = TheApp();
    return app && !app->m_strHelpFilePath.empty() && app->m_nHelpKind == 1 && app->m_nHelpSituation == 0;
}

// The help window for a command of the help viewer (0: the help's first page,
// 16: a control's what-is-this text), owned by the window that asks.
bool KYjlpFrameMain::ShowHelp(UINT command, DWORD_PTR data, HWND owner, bool messageOnFailure, bool busy) {
    KYjlpApp* app = TheApp();
    if (!HelpAvailable()) return false;
    if (owner && !IsWindow(owner)) return false;
    if (!owner && (command == 16 || app->m_bClassicDesktop)) owner = GetAncestor(m_hwnd, GA_ROOT);
    HCURSOR saved = nullptr;
    if (busy) ShowBusy(&saved, 24597);
    SendMessageW(m_hwnd, WM_CANCELMODE, 0, 0);
    if (HWND capture = GetCapture()) SendMessageW(capture, WM_CANCELMODE, 0, 0);
    const std::wstring path = fw::HelpPathForCommand(app->m_strHelpFilePath, command);
    const bool shown = fw::CallHtmlHelp(owner ? owner : m_hwnd, path.c_str(), command, data) != nullptr;
    if (busy) EndBusy(&saved, 0);
    // Told on the status bar, not in a box: a box would hold the session's shell for nothing.
    if (!shown && messageOnFailure) SetBusyText(fw::ResString(61703));
    return shown;
}

BOOL KYjlpFrameMain::HelpForwarder(UINT command, DWORD_PTR data, HWND window, BYTE tellFailure, BYTE busy) noexcept {
    try {
        KYjlpApp* app = TheApp();
        auto* frame = app ? dynamic_cast<KYjlpFrameMain*>(app->MainWindow()) : nullptr;
        return frame && frame->ShowHelp(command, data, window, tellFailure != 0, busy != 0) ? TRUE : FALSE;
    } catch (...) {
        return FALSE;
    }
}

bool KYjlpFrameMain::OnHelpInfo() {
    if (!HelpAvailable()) return false;
    // A dialog of ours that is active answers its own help.
    if (HWND active = GetActiveWindow(); active && active != m_hwnd) return false;
    PostMessageW(m_hwnd, fw::WM_KICKIDLE, 0, 0);
    ShowHelp(0, 0, nullptr, true, true);
    return true;
}

void KYjlpFrameMain::OnHelpCommand(UINT id) {
    (void)id;
    OnHelpInfo();
}

void KYjlpFrameMain::OnUpdateHelp(fw::CmdUI& ui) { ui.Enable(HelpAvailable()); }
