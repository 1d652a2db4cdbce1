#include "app/KYjlpApp.h"

#include <new>

#include "app/KYjlpCmdLineInfo.h"
#include "app/KYjlpItemLaunchRequest.h"
#include "brander/KYpbr.h"
#include "document/KYjlpDoc.h"
#include "foundation/KYstdPgmStat.h"
#include "foundation/SituationRange.h"
#include "framework/ResourceModule.h"
#include "monitor/KYbpm.h"
#include "registrar/KYjutlRegistrar.h"
#include "window/KYjlpFrameMain.h"
#include "window/KYjlpViewList.h"

namespace {
KYjlpApp* g_theApp = nullptr;
}  // namespace

KYjlpApp* TheApp() noexcept { return g_theApp; }

KYjlpApp::KYjlpApp() : fw::WinApp(L"Launch Panel") {
    g_theApp = this;
    KYjlpPrinterHost::SetCurrent(this);
    ResetMembers();
}

KYjlpApp::~KYjlpApp() {
    // The document, frame and view go before the services they call.
    CloseAllDocuments();
    ResetMembers();
    if (g_theApp == this) g_theApp = nullptr;
    if (KYjlpPrinterHost::Current() == this) KYjlpPrinterHost::SetCurrent(nullptr);
}

void KYjlpApp::WipeScratch() noexcept {
    wmemset(m_wszScratch1, 0, kScratchChars);
    wmemset(m_wszScratch2, 0, kScratchChars);
}

void KYjlpApp::LatchFailure(int number) noexcept {
    if (m_nFailure == 0 && number != 0) m_nFailure = number;
}

// Start-up services accept only the program's own numbers: anything else becomes
// the service's catch-all, so that the last-resort box always has a text.
void KYjlpApp::LatchServiceFailure(int number, int catchAll) noexcept {
    if (number != 0 && !ky::IsProgramSituation(number)) number = catchAll;
    LatchFailure(number);
}

void KYjlpApp::ResetMembers() {
    // Teardown order: users of services first, the resource library after
    // everything that may still load a text from it, the monitor last of all
    // since every step before may still report through it.
    delete m_pCmdLine;
    m_pCmdLine = nullptr;
    OnMemberReleased(Member::CommandLine);
    m_listLaunchRequests.clear();
    OnMemberReleased(Member::LaunchRequests);
    delete m_pRegistrar;
    m_pRegistrar = nullptr;
    OnMemberReleased(Member::Registrar);
    m_hKeyCatalogue.reset();
    m_hKeyServer.reset();
    OnMemberReleased(Member::RegistryKeys);
    // The printer records are the library's: they go back before it is freed.
    m_printerCfg.ReleasePrinters(true);
    OnMemberReleased(Member::PrinterEngine);
    m_hPrintMonitor.reset();
    OnMemberReleased(Member::PrintMonitor);
    for (auto& event : m_hWatchEvents) event.reset();
    OnMemberReleased(Member::WatchEvents);
    if (m_hResourceLibrary && fw::ResourceModule() == m_hResourceLibrary.get())
        fw::SetResourceModule(nullptr);
    m_hResourceLibrary.reset();
    OnMemberReleased(Member::ResourceLibrary);
    if (m_pBrander) KYpbr::destroy();
    m_pBrander = nullptr;
    OnMemberReleased(Member::Brander);
    m_astrAuxKeywords.clear();
    m_astrTags.clear();
    m_astrGroups.clear();
    OnMemberReleased(Member::StringArrays);
    delete m_pStatus;
    m_pStatus = nullptr;
    OnMemberReleased(Member::Status);
    if (m_pReportMonitor) KYbpm::destroy(&m_pReportMonitor, 0, true);
    if (m_pMonitor) KYbpm::destroy(&m_pMonitor, 0, true);
    m_pMonitor = nullptr;
    OnMemberReleased(Member::Monitor);

    m_strClientVersion.clear();
    m_nHelpKind = 0;
    m_nHelpSituation = 27054;
    m_bStandalone = true;
    m_bSessionDetected = false;
    m_pfnIsSharedAccountSession = nullptr;
    m_bUserIsAdmin = false;
    m_nItemFillMask = 11;
    m_nPrinterStartMode = 0;
    m_bPrintersAttempted = false;
    m_bPrintersActive = false;
    m_bPrintersFirstTry = true;
    m_strBranderName.clear();
    m_strCodeLink.clear();
    m_strLogDirectory.clear();
    m_nLogForm = 0;
    m_nMonitorSelfCode = 0;
    m_hSessionLibrary = nullptr;  // the session library stays loaded for the process's life
    WipeScratch();
    m_cbScratch1 = m_cbScratch2 = kScratchChars * sizeof(wchar_t);
    m_nFailure = 0;
    m_bClassicDesktop = false;
    m_bWatching = false;
    for (bool& show : m_abShow) show = true;
    m_bShell = true;
    m_bWinHelpUsed = false;
}

int KYjlpApp::EstablishProgramStatus() {
    int number = 0;
    std::unique_ptr<KYstdPgmStat_DATA> data;
    try {
        data.reset(new KYstdPgmStat_DATA());
        data->SetResources(fw::ResourceModule());
        data->AllocateSituations(5);
        data->AllocateDetails(10);
        data->SetTitle(ProgramTitle().c_str());
        m_pStatus = KYstdPgmStat::CreateStatus(data);
        if (!m_pStatus) number = 27063;
    } catch (...) {
        number = 27062;
    }
    return number;
}

int KYjlpApp::MapRegistrarError(uint32_t code) { return KYjutlRegistrar::SituationFromError(code); }

const std::wstring& KYjlpApp::FormatCode(uint32_t code, UINT formatId, std::wstring& out) {
    out.clear();
    try {
        std::wstring format;
        if (!fw::LoadResString(formatId, format)) return out;
        wchar_t buffer[512];
        int n = _snwprintf(buffer, 511, format.c_str(), code, code);
        if (n > 0) out.assign(buffer, static_cast<size_t>(n));
    } catch (...) {
        out.clear();
    }
    return out;
}

KYjlpDoc* KYjlpApp::GetDocument() {
    for (const auto& t : Templates())
        if (auto* doc = dynamic_cast<KYjlpDoc*>(t->GetDocument())) return doc;
    return nullptr;
}

KYjlpViewList* KYjlpApp::GetListView(KYjlpDoc* doc) {
    if (!doc) doc = GetDocument();
    if (!doc) return nullptr;
    for (fw::View* view : doc->Views())
        if (auto* list = dynamic_cast<KYjlpViewList*>(view)) return list;
    return nullptr;
}

void KYjlpApp::RespondAndForget() {
    if (!m_pMonitor || m_pMonitor->isSituationNormal()) return;
    if (!m_pMonitor->respondToSituation()) m_pMonitor->forgetSituation();
}
