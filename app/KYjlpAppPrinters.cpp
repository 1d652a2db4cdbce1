// Client printers: the application as the printer engine's host, their start at
// idle time, the watch event of printer changes, and the printer entries of the menu.
#include "app/KYjlpApp.h"
#include "brander/KYpbr.h"
#include "framework/CmdUI.h"
#include "framework/ResourceModule.h"
#include "monitor/KYbpm.h"
#include "registrar/KYjutlRegistrar.h"
#include "window/KYjlpFrameMain.h"

namespace {
constexpr UINT kFirstPrinter = 32788;
constexpr int kPrinterMenuFailed = 27105;
// Internal codes of a printer entry that cannot be opened (told as 27105).
constexpr int kNotActive = 9769, kNoPrinters = 9773, kBeyondList = 9784, kNoEntry = 9789;
constexpr int kSheetRefused = 9821, kUnexpected = 9798;
}  // namespace

int KYjlpApp::LoadPrintMonitor() { return LoadLibraryNearExe(kypm::kLibraryFileName, m_hPrintMonitor, 27621); }

std::wstring KYjlpApp::PrinterTagText(int tag) {
    std::wstring text;
    GetTagText(text, tag);
    return text;
}

std::wstring KYjlpApp::PrinterCodeLink(DWORD code) {
    std::wstring link;
    FormatCode(code, 24645, link);
    return link;
}

void KYjlpApp::ReloadPrinterMenu() {
    if (auto* frame = dynamic_cast<KYjlpFrameMain*>(MainWindow())) frame->ReloadPrinterMenu();
}

KYstdUI_DlgData KYjlpApp::PrinterDialogData() { return DialogHelpData(); }

bool KYjlpApp::ShowPrinterHelp(UINT command, DWORD_PTR data) {
    auto* frame = dynamic_cast<KYjlpFrameMain*>(MainWindow());
    return frame && frame->ShowHelp(command, data, nullptr, true, false);
}

std::wstring KYjlpApp::PrintInfInitialDir() {
    std::wstring directory;
    if (m_pRegistrar) m_pRegistrar->GetPrintInfInitialDir(directory);
    return directory;
}

bool KYjlpApp::SetPrintInfInitialDir(const std::wstring& directory) {
    return m_pRegistrar && m_pRegistrar->SetPrintInfInitialDir(directory.c_str());
}

bool KYjlpApp::AcquireClientPrinters(bool withUI) {
    if (m_bStandalone) {
        m_bPrintersAttempted = true;
        return true;
    }
    if (m_bPrintersAttempted || m_bPrintersActive) return m_bPrintersActive;
    auto* frame = withUI ? dynamic_cast<KYjlpFrameMain*>(MainWindow()) : nullptr;
    if (frame) {
        frame->SetBusyText(fw::ResString(24621));
        GdiFlush();
    }
    if (m_pRegistrar && (m_pRegistrar->m_uClientPrinting & KYjutlRegistrar::kClientPrintersOffered)) {
        if (m_printerCfg.StartPrinters(m_bPrintersFirstTry, KYjlpPrinterCfg::kMaxPrinters)) {
            m_bPrintersActive = m_bPrintersAttempted = true;
            if (withUI) ReloadPrinterMenu();
        }
    } else if (m_bPrintersFirstTry && m_pMonitor) {
        wchar_t attribute[260] = {};
        if (m_pBrander) m_pBrander->loadText(KYpbr::kNodeManagerName, attribute, 260);
        if (!m_pMonitor->respondToSituation(27033, 0, attribute)) m_pMonitor->forgetSituation();
    }
    if (!m_bPrintersActive) m_bPrintersAttempted = true;
    m_bPrintersFirstTry = false;
    if (frame) frame->EndBusyText();
    return m_bPrintersActive;
}

bool KYjlpApp::OnPrintersChanged() {
    // Client printers are not running: nobody will signal this event again.
    if (!m_bPrintersActive) {
        m_hWatchEvents[kWatchPrinters].reset();
        return true;
    }
    if (!PostWatchEvent(2, false)) return false;
    if (!m_printerCfg.RefreshPrinters(KYjlpPrinterCfg::kMaxPrinters, true, true)) return false;
    ReloadPrinterMenu();
    return true;
}

bool KYjlpApp::ConfigureClientPrinter(const CLIENT_PRINTER_INFO* entry, const KYstdUI_DlgData& data,
                                      bool& wentBack) {
    wentBack = false;
    if (!m_bPrintersActive) return false;
    if (m_printerCfg.OpenPrinterSheet(&data, entry)) {
        const int result = m_printerCfg.SheetResult();
        if (result == 1 || result == 1024 || result == 1025) {
            ReloadPrinterMenu();
            return true;
        }
        return result == 2;
    }
    if (m_pMonitor && m_pMonitor->getSituationID() <= 0) {
        wentBack = true;
        m_pMonitor->forgetSituation();
    } else {
        RespondAndForget();
    }
    return false;
}

// A printer of the menu: its sheet in the dialog form.
void KYjlpApp::OnPrinterEntry(UINT id) {
    const int index = static_cast<int>(id) - static_cast<int>(kFirstPrinter);
    int code = 0;
    bool wentBack = false;
    try {
        const int count = m_printerCfg.PrinterCount();
        if (!m_bPrintersActive || index < 0 || index >= KYjlpPrinterCfg::kMaxPrinters || count > 30)
            code = kNotActive;
        else if (count < 1)
            code = kNoPrinters;
        else if (index >= count)
            code = kBeyondList;
        else if (const CLIENT_PRINTER_INFO* entry = m_printerCfg.GetPrinter(index); !entry)
            code = kNoEntry;
        else if (!ConfigureClientPrinter(entry, DialogHelpData(), wentBack))
            code = kSheetRefused;
    } catch (...) {
        code = kUnexpected;
    }
    if (code == 0 || wentBack || !m_pMonitor) return;
    if (!m_pMonitor->respondToSituation(kPrinterMenuFailed, 0, static_cast<int32_t>(index < 0 ? 1 : index + 1)))
        m_pMonitor->forgetSituation();
}

void KYjlpApp::OnUpdatePrinterEntry(fw::CmdUI& ui) {
    const CLIENT_PRINTER_INFO* entry =
        m_bPrintersActive ? m_printerCfg.GetPrinter(static_cast<int>(ui.m_nID) - static_cast<int>(kFirstPrinter))
                          : nullptr;
    ui.Enable(entry && entry->bFixed == 0);
    ui.SetCheck(entry && entry->bDefault == 1 ? 1 : 0);
}
