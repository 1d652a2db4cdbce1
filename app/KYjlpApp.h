// The one application object of Launch Panel: it owns every long-lived service
// (program status, resource library, command line, program monitor, brander,
// registrar, watches) and runs start-up, the watched message pump and teardown.
#pragma once
#include <windows.h>
#include <cstdint>
#include <initializer_list>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "foundation/UniqueHandle.h"
#include "framework/WinApp.h"
#include "printers/KYjlpPrinterCfg.h"
#include "printers/KYjlpPrinterHost.h"

class KYbpm;
class KYbpmData;
class KYpbr;
class KYstdPgmStat;
class KYjlpCmdLineInfo;
class KYjlpDoc;
class KYjlpViewList;
class KYjlpItemLaunchRequest;
class KYjutlRegistrar;
struct KYjutlRegistrar_PREFS;
struct KYstdUI_DlgData;

class KYjlpApp : public fw::WinApp, public KYjlpPrinterHost {
public:
    static constexpr size_t kScratchChars = 2048;
    static constexpr int kTagCount = 15;
    // The watch events: printers changed, catalogue changed, server settings changed.
    enum WatchIndex { kWatchPrinters = 0, kWatchCatalogue = 1, kWatchServer = 2 };
    // The members ResetMembers releases, in its order (told to OnMemberReleased).
    enum class Member {
        CommandLine, LaunchRequests, Registrar, RegistryKeys, PrinterEngine, PrintMonitor,
        WatchEvents, ResourceLibrary, Brander, StringArrays, Status, Monitor
    };

    KYjlpApp();
    ~KYjlpApp() override;

    bool InitInstance() override;
    bool PumpMessage() override;
    bool OnIdle(long count) override;

    virtual bool EstablishProductBrander();
    virtual bool EstablishProgramMonitor(uint32_t form);
    virtual int EstablishProgramStatus();
    virtual bool ReportStartupFailure(int number, const wchar_t* caption, UINT flags);
    virtual KYjlpDoc* GetDocument();
    virtual KYjlpViewList* GetListView(KYjlpDoc* doc = nullptr);
    virtual bool ProcessCommandLine();
    virtual void ResetMembers();
    virtual bool WatchRegistryKey(ky::UniqueHKey& slot, const wchar_t* path, int index);
    virtual bool CloseWinHelp();
    // The catalogue changed: the document builds the list anew and merges it.
    virtual bool RefreshItems();
    virtual bool CollectPreferences();
    void CollectListPreferences(KYjlpViewList& view, KYjutlRegistrar_PREFS& prefs);
    // The refresh (32847) and save (32779) commands of the menu.
    void OnViewRefresh(UINT id);
    bool ReadChangingCatalogue();
    void OnFileSave(UINT id);
    virtual bool SavePreferences();

    // What launch use tells the script that started it, as the process's exit code.
    enum ExitCode {
        kExitSuccess = 0,         // the program came up (or nothing was to be launched)
        kExitFailed = 1,          // start-up failed, or the launch was refused or failed
        kExitBadCommandLine = 2,  // the command line could not be understood
        kExitNotFound = 3,        // no published application or program of that name
        kExitNotIdle = 4          // started, but not ready for input within the limit
    };
    // The first cause of failure decides the exit code.
    void SetExitCode(int code) noexcept {
        if (m_nExitCode == kExitSuccess) m_nExitCode = code;
    }

    // Message-box path for failures after start-up, through the monitor (logged,
    // and shown unless unattended).
    bool ReportProblem(int number, int second, uint32_t index, const wchar_t* caption, UINT flags);
    bool GetTagText(std::wstring& out, int tag);
    bool ObtainTagValue(std::wstring& out, int tag, wchar_t* buffer = nullptr, size_t capacity = 0);
    // The text of a WBT/WDB/WLE/WSE/WSW code link; empty on failure.
    const std::wstring& FormatCode(uint32_t code, UINT formatId, std::wstring& out);
    const std::wstring& FormatCode(uint32_t code, UINT formatId = 24645) { return FormatCode(code, formatId, m_strCodeLink); }
    static int MapRegistrarError(uint32_t code);

    int LocateResources();
    int LoadResourceLibrary();
    // Loads a module from beside the program (else by the system's search); 0 or base + code - 1.
    int LoadLibraryNearExe(const wchar_t* name, ky::UniqueHModule& module, int base);
    bool LoadTagTable();
    int SetUpHelpFile(const wchar_t* path);

    bool ObtainLogDirectory();
    bool BuildLogFileName(std::wstring& out, uint32_t form);
    bool BuildLogTemplatePath(std::wstring& out);
    bool ObtainAssertiveness(uint32_t& out);

    bool StartWatching();
    bool WaitForWatchOrMessage();
    bool PostWatchEvent(int action, bool create);
    bool OnPrintersChanged();
    bool OnCatalogueChanged();
    bool OnServerSettingsChanged();
    bool AcquireClientPrinters(bool withUI);

    void DetectSession();
    // Whether the session may be disconnected: 1 yes, 0 no (no time-out, shared
    // account, standalone), -1 unknown. refresh asks the session library afresh.
    int IsDisconnectAvailable(bool refresh);
    bool ObtainClientVersion();
    // The Classic desktop: the window over the whole screen, without bars. 0 or the situation.
    int HarmonizeDesktopSettings();
    // The session's run lists, once at its start; true when both passes went without complaint.
    bool LaunchAuxPgms();
    bool LoadAuxFilterKeywords();
    bool MatchAuxKeyword(const wchar_t* name) const;
    bool IsAnIME_Loaded();
    bool AdjustLangBarStatus();

    // --- the commands of the menus and the toolbar ---
    void OnAppExit(UINT id);
    void OnAppDisconnect(UINT id);
    void OnAppLogoff(UINT id);
    void OnClientPrinters(UINT id);
    void OnPrinterConfigureAdd(UINT id);
    void OnPrinterEntry(UINT id);
    void OnSwallowCommand(UINT id);
    void OnUpdateCommandRange(fw::CmdUI& ui);
    void OnUpdateClientPrinters(fw::CmdUI& ui);
    void OnUpdateLocalPrinters(fw::CmdUI& ui);
    void OnUpdatePrinterEntry(fw::CmdUI& ui);
    // The title of the program from its own version data.
    static std::wstring ProgramTitle();
    // The classes of the situations whose answer the program acts on.
    static void RecordSituationKinds(KYbpmData& data);
    bool SignalLogonManager();

    // --- launch use: the launch requests and the launch command ---
    // The launch requests, newest first; the list owns them.
    using LaunchRequestList = std::list<std::unique_ptr<KYjlpItemLaunchRequest>>;
    static constexpr uint32_t kLaunchLimitSeconds = 60;
    static constexpr UINT kLaunchCommandId = 32781;
    bool OnCmdMsg(UINT id, fw::CmdUI* ui) override;
    // Queues the request (taking it over) and returns true; on false the caller keeps it.
    bool AddLaunchRequest(std::unique_ptr<KYjlpItemLaunchRequest>& request);
    // Checks the newest request; true while it still starts. Requests that came
    // up, or never will, leave the list; the handle of the last one may be taken.
    bool DrainLaunchRequests(uint32_t limitSeconds, int* status, HANDLE* process);
    // True while a launch of the item of that name is still coming up: a second
    // activation then starts no second copy.
    bool IsItemStarting(const wchar_t* name) const;
    void OnAppLaunch(UINT id);
    void ShowLaunchStatus(bool starting);
    void OnUpdateAppLaunch(fw::CmdUI& ui);
    void ReportLaunchFailure(const std::wstring& name);
    LaunchRequestList m_listLaunchRequests;
    // --- end of launch use ---

    // Members, in the order of the object. Public as the framework's members
    // are: the document, frame and view read and set them.
    std::vector<std::wstring> m_astrAuxKeywords;
    std::wstring m_strClientVersion;
    KYjlpCmdLineInfo* m_pCmdLine = nullptr;
    ky::UniqueHModule m_hResourceLibrary;
    uint32_t m_nHelpKind = 0;
    int m_nHelpSituation = 27054;
    bool m_bStandalone = true;
    void* m_pfnIsSharedAccountSession = nullptr;
    bool m_bUserIsAdmin = false;
    uint32_t m_nItemFillMask = 11;
    int m_nPrinterStartMode = 0;
    KYjlpPrinterCfg m_printerCfg;
    ky::UniqueHModule m_hPrintMonitor;
    bool m_bPrintersAttempted = false;
    bool m_bPrintersActive = false;
    bool m_bPrintersFirstTry = true;
    KYpbr* m_pBrander = nullptr;
    std::wstring m_strBranderName;
    KYbpm* m_pMonitor = nullptr;
    std::wstring m_strCodeLink;
    std::wstring m_strLogDirectory;
    uint32_t m_nLogForm = 0;
    std::vector<std::wstring> m_astrTags;
    int m_nMonitorSelfCode = 0;
    KYstdPgmStat* m_pStatus = nullptr;
    HMODULE m_hSessionLibrary = nullptr;
    KYjutlRegistrar* m_pRegistrar = nullptr;
    ky::UniqueHKey m_hKeyCatalogue;
    ky::UniqueHKey m_hKeyServer;
    wchar_t m_wszScratch1[kScratchChars] = {};
    size_t m_cbScratch1 = kScratchChars * sizeof(wchar_t);
    wchar_t m_wszScratch2[kScratchChars] = {};
    size_t m_cbScratch2 = kScratchChars * sizeof(wchar_t);
    int m_nFailure = 0;
    std::vector<std::wstring> m_astrGroups;
    bool m_bClassicDesktop = false;
    bool m_bWatching = false;
    bool m_abShow[5] = {true, true, true, true, true};
    bool m_bShell = true;
    bool m_bWinHelpUsed = false;
    ky::UniqueHandle m_hWatchEvents[3];

    // Answers the monitor's standing situation, forgetting it when nobody took it.
    void RespondAndForget();

    // --- client printers: the engine's host, and the printer entries of the menu ---
    KYjlpPrinterCfg* PrinterEngine() override { return &m_printerCfg; }
    KYbpm* PrinterMonitor() override { return m_pMonitor; }
    KYpbr* PrinterBrander() override { return m_pBrander; }
    int32_t PrinterStartMode() override { return m_nPrinterStartMode; }
    HANDLE PrinterWatchEvent() override { return m_hWatchEvents[kWatchPrinters].get(); }
    HMODULE PrintMonitorModule() override { return m_hPrintMonitor.get(); }
    int LoadPrintMonitor() override;
    std::wstring PrinterTagText(int tag) override;
    std::wstring PrinterCodeLink(DWORD code) override;
    void ReloadPrinterMenu() override;
    KYstdUI_DlgData PrinterDialogData() override;
    bool ShowPrinterHelp(UINT command, DWORD_PTR data) override;
    std::wstring PrintInfInitialDir() override;
    bool SetPrintInfInitialDir(const std::wstring& directory) override;
    // Opens the printer's sheet; `wentBack` says the user left it without a report.
    bool ConfigureClientPrinter(const CLIENT_PRINTER_INFO* entry, const KYstdUI_DlgData& data, bool& wentBack);

    // --- the dialogs: the about command (32780) and the help every dialog gets ---
    bool RouteDialogCommands(UINT id, fw::CmdUI* ui);
    void OnAppAbout(UINT id);
    // The help settings a dialog is made with: the help kind, the help call, and
    // whether help can be shown at all.
    KYstdUI_DlgData DialogHelpData() const;
    // The call through which the dialogs show help (the application's help gives it).
    static void SetDialogHelpCall(BOOL (*call)(UINT, DWORD_PTR, HWND, BYTE, BYTE)) noexcept;

protected:
    // Told after each member ResetMembers has released: teardown order is observable.
    virtual void OnMemberReleased(Member member) { (void)member; }
    // The situation's own failure latch: keeps the first number of start-up.
    void LatchFailure(int number) noexcept;
    void LatchServiceFailure(int number, int catchAll) noexcept;
    void WipeScratch() noexcept;
    // Launch use reads the one catalogue item the command line names.
    bool ReadCatalogueAtStart();

private:
    bool InitCommandLine(int& pending);
    bool InitServices(int& pending);
    bool InitDocument(int& pending);
    void EstablishRegistrar();
    bool ReadPreferencesAtStart();
    void FinishInitInstance(bool& result, int pending, int second, int index);
    void ReportHelpSituation();
    bool RunShellCommand(int command);
    bool LaunchFromCommandLine();
    int LogDirectoryFromRegistry();
    int TestAndCreateLogDirectory(const std::wstring& directory);
    int FallbackLogDirectory();
    void BuildMonitor(const std::wstring& logFile, const std::wstring& templatePath);
    void RecordCaption(KYbpmData& data);
    std::wstring LoadSituationText(int number);
    // One report of the program's own, composed by ReportStartupFailure or ReportProblem.
    struct Report {
        int number = 0;
        int second = 0;
        uint32_t index = 0xFFFFFFFF;
        int selfCode = 0;
        std::wstring text{};
        const wchar_t* caption = nullptr;
        UINT flags = 0;
    };
    int DeliverReport(const Report& report);
    KYbpm* ReportingMonitor();
    void EstablishReportMonitor();
    bool DispatchWatchEvent(HANDLE signalled);
    int AskDisconnect();
    bool RunAuxPass(const wchar_t* listKey, HKEY hive, DWORD major);
    bool RunAuxValue(HKEY list, DWORD index, const wchar_t* listKey, HKEY hive, HKEY run);
    bool RunAuxEntry(const wchar_t* name, HKEY hive, HKEY runKey);
    bool StartAuxProgram(const wchar_t* name, const wchar_t* command, HKEY hive);
    void ReportAux(int number, std::initializer_list<std::wstring> texts, DWORD error);
    void ReportDisconnect(int number, DWORD error, int result);
    bool IdleStep(long count);

    // The monitor of the reports made before the program monitor stands.
    KYbpm* m_pReportMonitor = nullptr;
    bool m_bSessionDetected = false;
    bool m_bIconPlacesRestored = false;
    int m_nRegistrarError2 = 0;
    int m_nRegistrarError3 = -1;
};

// The application object that other code finds as the framework's current application.
KYjlpApp* TheApp() noexcept;
