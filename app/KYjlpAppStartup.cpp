// Start-up of the application object: the steps of InitInstance in their order,
// its tail, and the shell commands of ProcessCommandLine.
#include <new>

#include "app/KYjlpApp.h"
#include "app/GroupNames.h"
#include "app/KYjlpCmdLineInfo.h"
#include "brander/KYpbr.h"
#include "document/KYjlpDoc.h"
#include "foundation/KYstdPgmStat.h"
#include "framework/ResourceModule.h"
#include "monitor/KYbpm.h"
#include "registrar/KYjutlRegistrar.h"
#include "window/KYjlpFrameMain.h"
#include "window/KYjlpViewList.h"

namespace {
const wchar_t kSourceName[] = L"KYjlpAppStartup.cpp";
constexpr UINT kFrameResourceId = 128;
constexpr UINT kLaunchCommand = 32781;
}  // namespace

// Steps 1 to 7: status, resources, command line, monitor.
bool KYjlpApp::InitCommandLine(int& pending) {
    (void)pending;
    SetLastError(0);
    m_bShell = false;
    if (int n = EstablishProgramStatus()) throw n;
    if (int n = LocateResources()) throw n;
    if (m_pCmdLine) throw 27036;
    m_pCmdLine = new (std::nothrow) KYjlpCmdLineInfo(*this);
    if (!m_pCmdLine) throw 27034;
    if (!m_pCmdLine->ParseCommandLine(__argc, __wargv)) {
        SetExitCode(kExitBadCommandLine);
        throw static_cast<int>(m_pStatus ? m_pStatus->FirstSituation() : 0);
    }
    m_nPrinterStartMode = m_pCmdLine->m_nPrinterStartMode;
    int command = m_pCmdLine->m_nShellCommand;
    if (command == KYjlpCmdLineInfo::kDDE || command == KYjlpCmdLineInfo::kNew ||
        command == KYjlpCmdLineInfo::kOpen)
        m_bShell = true;
    else
        m_pCmdLine->m_bClassic = false;  // launch use never shows a window
    // Launch use starts one program and ends: the session's printers are not its business.
    if (!m_bShell) m_bPrintersAttempted = true;
    if (!EstablishProgramMonitor(0)) {
        SetExitCode(kExitFailed);
        ReportStartupFailure(m_nFailure, nullptr, MB_ICONERROR);
        m_nFailure = 0;
        throw 0;
    }
    return true;
}

// Steps 8 to 14: help file, logon manager and skin, group names, registrar.
bool KYjlpApp::InitServices(int& pending) {
    (void)pending;
    if (m_bShell) {
        WipeScratch();
        std::wstring directory;
        GetTagText(directory, 5);
        if (m_pBrander)
            m_pBrander->loadText(KYpbr::kHelpBaseName, m_wszScratch2, static_cast<int>(kScratchChars));
        _snwprintf(m_wszScratch1, kScratchChars - 1, L"%s%s", directory.c_str(), m_wszScratch2);
        SetUpHelpFile(m_wszScratch1);
        WipeScratch();
    }
    bool loadSkin = m_bShell;
    if (!m_bStandalone && !SignalLogonManager()) {
        if (m_pMonitor && !m_pMonitor->respondToSituation(27072, 0)) m_pMonitor->forgetSituation();
        loadSkin = false;
    }
    if (loadSkin) LoadLibraryW(L"face.dll");  // the skin library is never freed nor required
    if (m_bShell) ObtainGroupNames(m_hResourceLibrary.get(), m_astrGroups, m_bUserIsAdmin);
    EstablishRegistrar();
    bool ready = m_bShell ? ReadPreferencesAtStart() : ReadCatalogueAtStart();
    if (!ready) {
        m_nRegistrarError2 = static_cast<int>(m_pRegistrar->m_uErrorDetail);
        m_nRegistrarError3 = m_pRegistrar->m_iErrorItem;
        throw MapRegistrarError(m_pRegistrar->m_uError);
    }
    return true;
}

// Step 11: the registrar, for the user's domain and name and the set the
// command line chose.
void KYjlpApp::EstablishRegistrar() {
    std::wstring domain, user;
    GetTagText(domain, 8);
    GetTagText(user, 11);
    const bool classic = m_pCmdLine && m_pCmdLine->m_bClassic;
    m_pRegistrar = new (std::nothrow) KYjutlRegistrar(
        classic ? KYjutlRegistrar::kModeClassic : KYjutlRegistrar::kModeStandard, domain.c_str(),
        user.c_str(), &m_astrGroups);
    if (!m_pRegistrar) throw 27219;
    m_pRegistrar->m_hInstance = m_hResourceLibrary.get();
    // This build ships its print monitor library: client printers are offered.
    m_pRegistrar->m_uClientPrinting |= KYjutlRegistrar::kClientPrintersOffered;
}

// Step 12: shell use makes the registrar's full start-up read (catalogue,
// preferences, close option), first restoring or discarding the preference
// store as the preference-set option asks.
bool KYjlpApp::ReadPreferencesAtStart() {
    if (m_pCmdLine && !m_pCmdLine->m_strPreferenceSet.empty()) {
        m_pRegistrar->m_pszRestoreFile = m_pCmdLine->m_strPreferenceSet.c_str();
        m_pRegistrar->m_bKeepPreferences = true;
    } else if (m_pCmdLine && !m_pCmdLine->m_bPreferenceSetGiven) {
        m_pRegistrar->m_pszRestoreFile = nullptr;
        m_pRegistrar->m_bKeepPreferences = false;
    }
    bool ready = m_pRegistrar->Initialize(m_hResourceLibrary.get(), nullptr, nullptr, nullptr);
    // Later reads and writes go to the ordinary store, whatever the option said.
    m_pRegistrar->m_bKeepPreferences = true;
    m_pRegistrar->m_pszRestoreFile = nullptr;
    if (ready)
        if (int number = HarmonizeDesktopSettings()) throw number;
    return ready;
}

// Step 13: launch use reads the session time-out and the one catalogue item named.
bool KYjlpApp::ReadCatalogueAtStart() {
    if (!m_pRegistrar->ObtainSessionTimeout()) {
        m_pRegistrar->m_uError = 0;
        m_pRegistrar->m_uErrorDetail = 0;
        m_pRegistrar->m_iErrorItem = -1;
    }
    const LAUNCH_INFO* launch = m_pCmdLine ? m_pCmdLine->m_pLaunchInfo.get() : nullptr;
    m_pRegistrar->m_pszOnlyApp = launch && launch->pszName ? launch->pszName.get() : nullptr;
    m_pRegistrar->ObtainInstalledApps();
    // The name stays the launch record's, which the launch takes over and frees.
    m_pRegistrar->m_pszOnlyApp = nullptr;
    return m_pRegistrar->m_uError == 0;
}

// Steps 15 to 17: document template and the command line's shell command.
bool KYjlpApp::InitDocument(int& pending) {
    (void)pending;
    try {
        AddDocTemplate(std::make_unique<fw::DocTemplate>(fw::DocTemplateArgs{
            .resourceId = kFrameResourceId,
            .makeDocument = [] { return std::make_unique<KYjlpDoc>(); },
            .makeFrame = [] { return std::make_unique<KYjlpFrameMain>(); },
            .makeView = [] { return std::make_unique<KYjlpViewList>(); }}));
    } catch (...) {
        throw 27065;
    }
    m_nCmdShow = SW_HIDE;
    bool result = ProcessCommandLine();
    if (!result && m_pStatus && !m_pStatus->IsClean())
        throw static_cast<int>(m_pStatus->FirstSituation());
    if (m_pMonitor && m_bShell && MainWindow()) m_pMonitor->setDisplayDlgBoxParent(MainWindow()->Handle());
    return result;
}

bool KYjlpApp::InitInstance() {
    bool result = true;
    int pending = 0;
    try {
        InitCommandLine(pending);
        InitServices(pending);
        SetDialogHelpCall(&KYjlpFrameMain::HelpForwarder);
        result = InitDocument(pending);
        if (result) {
            if (!m_bStandalone && m_hSessionLibrary) {
                m_pfnIsSharedAccountSession = reinterpret_cast<void*>(
                    GetProcAddress(m_hSessionLibrary, "tessIsSharedAccountSession"));
                if (!m_pfnIsSharedAccountSession && m_pMonitor &&
                    !m_pMonitor->respondToSituation(27042, 0, FormatCode(GetLastError()).c_str(),
                                                    L"Tessel.dll", L"tessIsSharedAccountSession"))
                    m_pMonitor->forgetSituation();
            }
            auto* frame = dynamic_cast<KYjlpFrameMain*>(MainWindow());
            if (frame && m_abShow[1]) frame->ReadyMenu();
            if (!frame || !frame->RestoreWindow(kSourceName))
                throw m_pMonitor ? m_pMonitor->getSituationID() : 27069;
            StartWatching();
            ReportHelpSituation();
            if (!m_bStandalone && !LaunchAuxPgms() && m_pMonitor && !m_pMonitor->respondToSituation(27029, 0))
                m_pMonitor->forgetSituation();
        }
    } catch (int number) {
        result = false;
        if (number != 0 && pending == 0 && (!m_pMonitor || m_pMonitor->isSituationNormal()))
            pending = number;
    } catch (...) {
        result = false;
        if (pending == 0) pending = 27027;
    }
    try {
        FinishInitInstance(result, pending, m_nRegistrarError2, m_nRegistrarError3);
    } catch (...) {
        result = false;  // the report itself failed: nothing more can be told
    }
    return result;
}

void KYjlpApp::FinishInitInstance(bool& result, int pending, int second, int index) {
    bool normal = !m_pMonitor || m_pMonitor->isSituationNormal();
    if (normal && pending == 0) return;
    result = false;
    SetExitCode(kExitFailed);
    if (!normal) {
        if (m_pMonitor->getSituationID() != 27072) m_pMonitor->recordArgument(kSourceName);
        RespondAndForget();
        m_pMonitor->forgetSituation();
    }
    if (pending == 0) return;
    ReportProblem(pending, second, static_cast<uint32_t>(index), nullptr, MB_ICONERROR);
}

void KYjlpApp::ReportHelpSituation() {
    if (m_nHelpSituation == 0 || !m_pMonitor) return;
    int number = m_nHelpSituation;
    if (number == 27058 || number == 27059 || number == 27061) {
        wchar_t attribute[260] = {};
        if (m_pBrander) m_pBrander->loadText(KYpbr::kHelpBaseName, attribute, 260);
        m_pMonitor->recordSituationID(number);
        m_pMonitor->recordArgument(attribute);
    } else if (number >= 27054 && number <= 27061) {
        m_pMonitor->recordSituationID(number);
    } else {
        m_pMonitor->recordSituationID(27015);
        m_pMonitor->recordArgument(static_cast<int32_t>(__LINE__));
        m_pMonitor->recordArgument(kSourceName);
        m_pMonitor->recordArgument(__DATE__);
        m_pMonitor->recordArgument(static_cast<int32_t>(number));
    }
    RespondAndForget();
    m_pMonitor->forgetSituation();
}

bool KYjlpApp::ProcessCommandLine() {
    if (m_pStatus) m_pStatus->ClearStatus();
    bool result = true;
    try {
        if (!m_pCmdLine) throw 27038;
        result = RunShellCommand(m_pCmdLine->m_nShellCommand);
    } catch (int number) {
        if (number != 0 && m_pStatus && m_pStatus->FirstSituation() != static_cast<uint32_t>(number))
            m_pStatus->Data()->AddSituation(static_cast<uint32_t>(number), KYstdPgmStat_DATA::kAfterLast);
    } catch (...) {
        if (m_pStatus) m_pStatus->Data()->AddSituation(27066, KYstdPgmStat_DATA::kAfterLast);
    }
    if (m_pStatus && !m_pStatus->IsClean()) result = false;
    return result;
}

bool KYjlpApp::RunShellCommand(int command) {
    switch (command) {
    case KYjlpCmdLineInfo::kNothing:
        return true;
    case KYjlpCmdLineInfo::kLaunchNodeManager:
    case KYjlpCmdLineInfo::kLaunchProgram:
        m_nCmdShow = SW_HIDE;
        LaunchFromCommandLine();
        return false;
    case KYjlpCmdLineInfo::kDDE:
        m_nCmdShow = SW_HIDE;
        return true;
    case KYjlpCmdLineInfo::kNew:
        try {
            if (!OnCmdMsg(fw::ID_FILE_NEW, nullptr)) OnFileNew();
        } catch (...) {
            throw 27068;
        }
        if (!MainWindow()) throw 27069;
        return true;
    case KYjlpCmdLineInfo::kOpen:
        return OpenDocumentFile(m_pCmdLine->m_strFileName.c_str()) != nullptr;
    case KYjlpCmdLineInfo::kUnregister:
    case KYjlpCmdLineInfo::kPrint:
    case KYjlpCmdLineInfo::kPrintTo:
        // Reduced on purpose to ending without a window: the framework's unregistering
        // (with its prompt) and its opening and printing of a document have nothing
        // to work on, since this program registers no document types and prints nothing.
        m_nCmdShow = SW_HIDE;
        return false;
    default:
        throw 27071;
    }
}

bool KYjlpApp::LaunchFromCommandLine() {
    try {
        if (!OnCmdMsg(fw::ID_FILE_NEW, nullptr)) OnFileNew();
    } catch (...) {
        throw 27068;
    }
    if (m_bShell && !MainWindow()) throw 27069;
    if (!m_bStandalone && !LaunchAuxPgms() && m_pMonitor && !m_pMonitor->respondToSituation(27029, 0))
        m_pMonitor->forgetSituation();
    if (!OnCmdMsg(kLaunchCommand, nullptr)) throw 27070;
    return true;
}
