// The application's commands: what the menus, the toolbar and the command line
// send to the application object, and when each is offered.
#include "app/KYjlpApp.h"
#include "framework/FrameWnd.h"
#include "monitor/KYbpm.h"

namespace {
constexpr UINT kExit = 57665, kSave = 32779, kRefresh = 32847, kClientPrinters = 32785;
constexpr UINT kPrinterPanel = 32786, kLocalPrinters = 32818, kDisconnect = 32820, kLogoff = 32821;
constexpr UINT kFirstPrinter = 32788, kLastPrinter = 32817;
constexpr UINT kRangeFirst = 32771, kRangeLast = 32849;

// The application's command table, in its order of search: single commands
// first, then the printer entries, then the range whose other ids are swallowed.
constexpr fw::CommandEntry<KYjlpApp> kAppCommands[] = {
    {kExit, kExit, &KYjlpApp::OnAppExit, nullptr},
    {kSave, kSave, &KYjlpApp::OnFileSave, nullptr},
    {KYjlpApp::kLaunchCommandId, KYjlpApp::kLaunchCommandId, &KYjlpApp::OnAppLaunch, &KYjlpApp::OnUpdateAppLaunch},
    {kClientPrinters, kClientPrinters, &KYjlpApp::OnClientPrinters, &KYjlpApp::OnUpdateClientPrinters},
    {kPrinterPanel, kPrinterPanel, &KYjlpApp::OnPrinterConfigureAdd, nullptr},
    {kDisconnect, kDisconnect, &KYjlpApp::OnAppDisconnect, &KYjlpApp::OnUpdateCommandRange},
    {kLogoff, kLogoff, &KYjlpApp::OnAppLogoff, &KYjlpApp::OnUpdateCommandRange},
    {kRefresh, kRefresh, &KYjlpApp::OnViewRefresh, nullptr},
    {kLocalPrinters, kLocalPrinters, nullptr, &KYjlpApp::OnUpdateLocalPrinters},
    {kFirstPrinter, kLastPrinter, &KYjlpApp::OnPrinterEntry, &KYjlpApp::OnUpdatePrinterEntry},
    {kRangeFirst, kRangeLast, &KYjlpApp::OnSwallowCommand, &KYjlpApp::OnUpdateCommandRange},
};
}  // namespace

bool KYjlpApp::OnCmdMsg(UINT id, fw::CmdUI* ui) {
    return RouteDialogCommands(id, ui) || Route<KYjlpApp>(this, kAppCommands, id, ui) ||
           fw::WinApp::OnCmdMsg(id, ui);
}

// Exit ends the program through the window's orderly close, which saves the preferences.
void KYjlpApp::OnAppExit(UINT) {
    if (fw::FrameWnd* frame = MainWindow(); frame && *frame) frame->Send(WM_CLOSE);
}

void KYjlpApp::OnSwallowCommand(UINT) {}

void KYjlpApp::OnUpdateCommandRange(fw::CmdUI& ui) {
    switch (ui.m_nID) {
    case 32778: case kSave: case 32780: case 32782: case 32783: case 32784:
        ui.Enable(true);
        break;
    case kDisconnect:
        ui.Enable(!m_bStandalone && IsDisconnectAvailable(false) == 1);
        break;
    case kLogoff:
        ui.Enable(!m_bStandalone);
        break;
    default:
        ui.Enable(ui.m_nID >= 32823 && ui.m_nID <= kRangeLast);
        break;
    }
}

void KYjlpApp::OnClientPrinters(UINT) { AcquireClientPrinters(true); }

void KYjlpApp::OnUpdateClientPrinters(fw::CmdUI& ui) { ui.Enable(!m_bPrintersAttempted && !m_bPrintersActive); }

void KYjlpApp::OnUpdateLocalPrinters(fw::CmdUI& ui) { ui.Enable(m_bStandalone); }

// The Printer Panel is a program of its own, found by the system's search.
void KYjlpApp::OnPrinterConfigureAdd(UINT) {
    wchar_t command[] = L"PrinterPanel.exe";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_SHOWDEFAULT;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, command, nullptr, nullptr, FALSE, NORMAL_PRIORITY_CLASS, nullptr, nullptr, &startup,
                       &process)) {
        // Nothing here waits for the panel: its handles go at once.
        ky::UniqueHandle panel(process.hProcess), thread(process.hThread);
        return;
    }
    const DWORD error = GetLastError();
    if (!m_pMonitor) return;
    m_pMonitor->recordSituationID(27016);
    m_pMonitor->recordArgument(static_cast<int32_t>(__LINE__));
    m_pMonitor->recordArgument(L"KYjlpAppCommands.cpp");
    m_pMonitor->recordArgument(__DATE__);
    m_pMonitor->recordArgument(L"KYjlpApp::OnPrinterConfigureAdd: PrinterPanel.exe " + FormatCode(error));
    RespondAndForget();
}

