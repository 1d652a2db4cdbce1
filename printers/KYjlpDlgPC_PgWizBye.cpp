#include "printers/KYjlpDlgPC_PgWizBye.h"

#include "framework/ResourceModule.h"
#include "printers/KYjlpDlgPC_PgWizHi.h"
#include "printers/KYjlpDlgPC_Sht.h"
#include "printers/KYjlpPrinterHost.h"

namespace {
constexpr int kTitle = 1029, kName = 1033, kModel = 1032, kPort = 1034, kPortLabel = 1035;
constexpr int kDefault = 1030, kTestPage = 1036;

std::wstring YesNo(bool yes) {
    std::wstring text = fw::ResString(yes ? 24576 : 24577);
    return text.empty() ? (yes ? L"Yes" : L"No") : text;
}

void SetItemText(HWND page, int id, const std::wstring& text) {
    if (HWND control = ::GetDlgItem(page, id)) ::SetWindowTextW(control, text.c_str());
}
}  // namespace

DWORD KYjlpDlgPC_PgWizBye::GetControlHelpId(UINT id) {
    (void)id;
    return 0;
}

bool KYjlpDlgPC_PgWizBye::OnInitDialog() {
    const bool result = KYjlpDlgPC_Pg::OnInitDialog();
    SetBigTitleFont(m_hwnd, kTitle, 1);
    return result;
}

bool KYjlpDlgPC_PgWizBye::OnSetActive() {
    KYjlpDlgPC_Pg::OnSetActive();
    if (Sheet()) Sheet()->SetWizardButtons(PSWIZB_BACK | PSWIZB_FINISH);
    ShowChoice();
    return true;
}

void KYjlpDlgPC_PgWizBye::ShowChoice() {
    KYjlpPrinterCfg* engine = CurrentPrinterEngine();
    if (!engine) return;
    SetItemText(m_hwnd, kName, engine->GetRecordName());
    SetItemText(m_hwnd, kModel, engine->GetRecordModel());
    const std::wstring port = engine->GetRecordPort();
    SetItemText(m_hwnd, kPort, port);
    // A printer that the client supplies has no port: its line is not shown.
    for (int id : {kPort, kPortLabel})
        if (HWND control = ::GetDlgItem(m_hwnd, id)) ::ShowWindow(control, port.empty() ? SW_HIDE : SW_SHOW);
    SetItemText(m_hwnd, kDefault, YesNo(engine->m_info.bDefault == 1));
    SetItemText(m_hwnd, kTestPage, YesNo(engine->m_bTestPage));
}

bool KYjlpDlgPC_PgWizBye::OnWizardFinish() {
    try {
        KYjlpDlgPC_Sht* sheet = PrinterSheet();
        return sheet && g_bPrinterWizard && sheet->IsWizard() && sheet->InstallNewPrinter();
    } catch (...) {
        return false;
    }
}
