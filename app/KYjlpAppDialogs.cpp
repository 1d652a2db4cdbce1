// The application's dialogs: the about command, and the help settings that every
// dialog of the program is made with.
#include "app/KYjlpApp.h"
#include "dialogs/DialogHelpIds.h"
#include "dialogs/KYjlpDlgAA.h"
#include "dialogs/KYstdUI_DlgData.h"
#include "monitor/KYbpm.h"

namespace {
constexpr UINT kAbout = 32780;
constexpr int kAboutFailed = 27160;

// The application's help, once it stands, answers the dialogs' what-is-this
// requests through this call; without one no dialog offers help.
KYstdHelpCall g_dialogHelp = nullptr;

// Searched before the application's own table, whose range swallows the ids it does not name.
constexpr fw::CommandEntry<KYjlpApp> kDialogCommands[] = {
    {kAbout, kAbout, &KYjlpApp::OnAppAbout, nullptr},
};
}  // namespace

void KYjlpApp::SetDialogHelpCall(KYstdHelpCall call) noexcept { g_dialogHelp = call; }

bool KYjlpApp::RouteDialogCommands(UINT id, fw::CmdUI* ui) {
    return Route<KYjlpApp>(this, kDialogCommands, id, ui);
}

KYstdUI_DlgData KYjlpApp::DialogHelpData() const {
    const bool helpReady = !m_strHelpFilePath.empty() && m_nHelpKind != 0 && m_nHelpSituation == 0;
    return KYstdUI_DlgData{.uHelpCommand = lphelp::kWhatIsThisCommand,
                           .uHelpKind = m_nHelpKind,
                           .pfnHelp = g_dialogHelp,
                           .bHelpOn = helpReady && g_dialogHelp != nullptr,
                           .uContextMenu = lphelp::kContextMenu};
}

// About shows and changes nothing; a box that cannot be shown is told.
void KYjlpApp::OnAppAbout(UINT) {
    const HWND savedParent = m_pMonitor ? m_pMonitor->getDisplayDlgBoxParent() : nullptr;
    INT_PTR result = -1;
    try {
        const KYstdUI_DlgData data = DialogHelpData();
        KYjlpDlgAA about({.templateId = KYjlpDlgAA::kTemplateId, .data = &data});
        result = about.DoModal();
    } catch (...) {
        result = -1;
    }
    if (m_pMonitor) m_pMonitor->setDisplayDlgBoxParent(savedParent);
    if (result != IDOK && result != IDCANCEL) ReportProblem(kAboutFailed, 0, 0xFFFFFFFF, nullptr, MB_ICONERROR);
}
