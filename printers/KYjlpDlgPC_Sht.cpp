#include "printers/KYjlpDlgPC_Sht.h"

#include "monitor/KYbpm.h"
#include "printers/KYjlpDlgPC_Pg.h"
#include "printers/KYjlpPrinterHost.h"
#include "printers/PrinterReport.h"

using namespace printers;

namespace {
constexpr int kApplyGeneral = 27600, kAddFailed = 27630, kChangeFailed = 27646;
constexpr DWORD kHelpBase = 0x50000;
constexpr int kPageMake = 401, kPageName = 402, kPagePort = 403;

// The engine, bound; else 27615 is told and null comes back.
KYjlpPrinterCfg* BoundEngineOrTell(int line) {
    KYjlpPrinterCfg* engine = CurrentPrinterEngine();
    if (engine && engine->IsBound()) return engine;
    if (KYbpm* monitor = Monitor()) {
        monitor->recordSituationID(kUnbound);
        monitor->recordArgument(static_cast<int32_t>(line));
    }
    AddSourceTail();
    RespondOrForget();
    return nullptr;
}
}  // namespace

KYjlpDlgPC_Sht::KYjlpDlgPC_Sht(const fw::PropertySheetArgs& args, const KYstdUI_DlgData* data)
    : fw::PropertySheet(args) {
    if (data) m_dlgData.Assign(*data);
}

KYjlpDlgPC_Pg* KYjlpDlgPC_Sht::ActivePrinterPage() const noexcept {
    return dynamic_cast<KYjlpDlgPC_Pg*>(GetActivePage());
}

// Both ask the engine; a refusal is told twice: the engine's report, then the sheet's.
bool KYjlpDlgPC_Sht::InstallNewPrinter() { return RunEngineChange(&KYjlpPrinterCfg::AddPrinter, kAddFailed); }

bool KYjlpDlgPC_Sht::ApplyPrinterEdit() { return RunEngineChange(&KYjlpPrinterCfg::UpdatePrinter, kChangeFailed); }

// The engine's add or change; on a refusal the page at fault comes to the front.
bool KYjlpDlgPC_Sht::RunEngineChange(bool (KYjlpPrinterCfg::*change)(uint32_t&), int failure) {
    KYjlpPrinterCfg* engine = BoundEngineOrTell(__LINE__);
    if (!engine) return false;
    uint32_t result = 0;
    if ((engine->*change)(result)) return true;
    if (KYbpm* monitor = Monitor()) monitor->recordSituationID(failure);
    RespondOrForget();
    if (result == 0) return false;
    KYjlpDlgPC_Pg* page = ActivePrinterPage();
    GoToFailedPage(result, page ? static_cast<int>(page->TemplateId()) : -1);
    return false;
}

bool KYjlpDlgPC_Sht::GoToFailedPage(uint32_t result, int activeId) {
    int wanted = 0;
    switch (result) {
    case 2: case 3: case 4: case 5:
        EndDialog(kEndedByLibrary);
        return true;
    case 25: wanted = kPageName; break;
    case 26: wanted = kPageMake; break;
    case 31: case 32: wanted = kPagePort; break;
    default: return true;
    }
    if (wanted == activeId) return true;
    for (int i = 0; i < GetPageCount(); ++i)
        if (GetPage(i) && static_cast<int>(GetPage(i)->TemplateId()) == wanted) return SetActivePage(i);
    return false;
}

bool KYjlpDlgPC_Sht::ValidatePages(bool& modified) {
    modified = false;
    if (IsWizard() || GetPageCount() == 0) return false;
    KYjlpDlgPC_Pg* active = ActivePrinterPage();
    if (!active || !active->OnKillActive()) return false;
    for (int i = 0; i < GetPageCount(); ++i) {
        auto* page = dynamic_cast<KYjlpDlgPC_Pg*>(GetPage(i));
        if (!page) return false;
        if (page->IsPageModified()) {
            modified = true;
            break;
        }
    }
    return true;
}

// The record is written only when something changed.
void KYjlpDlgPC_Sht::OnSheetOk() {
    bool modified = false;
    if (!ValidatePages(modified)) return;
    if (!modified || ApplyPrinterEdit()) EndDialog(IDOK);
}

void KYjlpDlgPC_Sht::OnApplyNow() {
    try {
        bool modified = false;
        if (!ValidatePages(modified) || !modified) return;
        if (!ApplyPrinterEdit()) return;
        ReloadPagesAfterApply();
    } catch (...) {
        const DWORD error = ::GetLastError();
        if (KYbpm* monitor = Monitor()) {
            monitor->recordSituationID(kApplyGeneral);
            monitor->recordArgument(CodeLink(error));
        }
        RespondOrForget();
    }
}

// After a change the pages start again from what was applied, as from a fresh record.
void KYjlpDlgPC_Sht::ReloadPagesAfterApply() {
    KYjlpPrinterCfg* engine = CurrentPrinterEngine();
    if (!engine) return;
    const std::wstring name = engine->GetRecordName(), port = engine->GetRecordPort();
    const std::wstring model = engine->GetRecordModel(), inf = engine->GetRecordInfPath();
    const std::wstring make = engine->GetRecordManufacturer();
    const auto text = [](const std::wstring& s) { return s.empty() ? nullptr : const_cast<wchar_t*>(s.c_str()); };
    CLIENT_PRINTER_INFO record{};
    record.pszPrinterName = text(name);
    record.pszPortName = text(port);
    record.pszDriverName = text(model);
    record.pszInfPath = text(inf);
    record.pszManufacturer = text(make);
    record.bDefault = 1;
    int failed = -1;
    for (int i = 0; i < GetPageCount(); ++i) {
        auto* page = dynamic_cast<KYjlpDlgPC_Pg*>(GetPage(i));
        if ((!page || !page->ReloadFromRecord(&record)) && failed < 0) failed = i;
    }
    record = CLIENT_PRINTER_INFO{};
    if (KYjlpPrinterHost* host = KYjlpPrinterHost::Current()) host->ReloadPrinterMenu();
    // One past the last page: the sheet stays where it is, as it always has.
    if (failed >= 0) SetActivePage(GetPageCount());
}

DWORD KYjlpDlgPC_Sht::GetControlHelpId(UINT id) {
    if (IsWizard()) return 0;
    return id == kApplyNow ? kApplyNow + kHelpBase : 0;
}

bool KYjlpDlgPC_Sht::OnSheetCommand(UINT id) {
    switch (id) {
    case IDOK:
        if (IsWizard()) return false;
        OnSheetOk();
        return true;
    case kApplyNow:
        if (IsWizard()) return false;
        OnApplyNow();
        return true;
    case kHelpButton:
    case kHelpCommand:
        return OnSheetHelp(nullptr);
    case kWhatsThis:
        return ShowHelpAtCursor();
    default:
        return false;
    }
}

bool KYjlpDlgPC_Sht::OnSheetMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) {
    (void)w;
    if (msg == WM_CONTEXTMENU && m_bSuppressCommand) {
        result = 0;
        return true;
    }
    if (msg == WM_HELP) {
        result = TRUE;
        return OnSheetHelp(reinterpret_cast<const HELPINFO*>(l));
    }
    return false;
}

void KYjlpDlgPC_Sht::OnSheetCreated() {
    if (IsWizard() || !m_dlgData.bHelpOn) return;
    const LONG_PTR style = ::GetWindowLongPtrW(m_hwnd, GWL_EXSTYLE);
    ::SetWindowLongPtrW(m_hwnd, GWL_EXSTYLE, style | WS_EX_CONTEXTHELP);
    ::SetWindowPos(m_hwnd, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_FRAMECHANGED);
}

bool KYjlpDlgPC_Sht::PreTranslateMessage(MSG& msg) {
    if (msg.message == WM_RBUTTONDOWN && OnRightButton(msg, true)) return true;
    if (msg.message == WM_RBUTTONUP) OnRightButton(msg, false);
    return fw::PropertySheet::PreTranslateMessage(msg);
}
