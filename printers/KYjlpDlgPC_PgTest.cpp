#include "printers/KYjlpDlgPC_PgTest.h"

#include "printers/KYjlpPrinterHost.h"

namespace {
constexpr int kPrintRadio = 1028, kNoPrintRadio = 1027;
}

KYjlpDlgPC_PgTest::~KYjlpDlgPC_PgTest() {
    try {
        CommitToRecord(false);
    } catch (...) {
        // The engine may be gone first at the end of the program.
    }
}

DWORD KYjlpDlgPC_PgTest::GetControlHelpId(UINT id) {
    (void)id;
    return 0;
}

// Printing is what stays when the page takes its choice back.
bool KYjlpDlgPC_PgTest::CommitToRecord(bool commit) {
    KYjlpPrinterCfg* engine = CurrentPrinterEngine();
    if (!engine) return false;
    engine->m_bTestPage = commit ? m_nTestChoice == 0 : true;
    return true;
}

void KYjlpDlgPC_PgTest::DoDataExchange(fw::DataExchange& dx) { dx.Radio(kPrintRadio, m_nTestChoice); }

bool KYjlpDlgPC_PgTest::OnCommand(UINT id, UINT code, HWND control) {
    if ((id == kPrintRadio || id == kNoPrintRadio) && code == BN_CLICKED) {
        OnPageContentChange();
        return true;
    }
    return KYjlpDlgPC_Pg::OnCommand(id, code, control);
}

bool KYjlpDlgPC_PgTest::OnKillActive() {
    OnPageContentChange();
    CommitToRecord(true);
    if (g_bPrinterWizard && m_bGoingBack) m_bGoingBack = false;
    return true;
}
