// What the client printer engine and its sheet need of the program around them:
// the monitor that tells the user, the brander's icon, the command line's start
// mode, the watch event the print monitor signals, the print monitor's module
// slot, help, and the frame's printers menu. The application is the host; a test
// host can stand in for it to run the sheet alone.
#pragma once
#include <windows.h>

#include <cstdint>
#include <string>

#include "dialogs/KYstdUI_DlgData.h"

class KYbpm;
class KYpbr;
class KYjlpPrinterCfg;

class KYjlpPrinterHost {
public:
    virtual ~KYjlpPrinterHost() = default;

    // The host of this process, or null before it stands and after it goes.
    static KYjlpPrinterHost* Current() noexcept;
    static void SetCurrent(KYjlpPrinterHost* host) noexcept;

    virtual KYjlpPrinterCfg* PrinterEngine() = 0;
    virtual KYbpm* PrinterMonitor() = 0;
    virtual KYpbr* PrinterBrander() = 0;
    // How the session connects the client's printers (0 none, 1 all, 2 the default).
    virtual int32_t PrinterStartMode() = 0;
    // Signalled by the print monitor whenever the session's printers change.
    virtual HANDLE PrinterWatchEvent() = 0;
    // The print monitor library: loaded on first use into the host's slot, so that
    // it stays until the host frees it. 0, or the failure number (27621 to 27624).
    virtual HMODULE PrintMonitorModule() = 0;
    virtual int LoadPrintMonitor() = 0;
    // A text of the program's tag table (14: the name a wizard's caption carries).
    virtual std::wstring PrinterTagText(int tag) = 0;
    // The WLE link of a system error code, for reports.
    virtual std::wstring PrinterCodeLink(DWORD code) = 0;
    // The frame rebuilds its printers menu from the engine.
    virtual void ReloadPrinterMenu() = 0;
    virtual KYstdUI_DlgData PrinterDialogData() = 0;
    // The program's help for a window of the sheet (mode 0: the topic of the window).
    virtual bool ShowPrinterHelp(UINT command, DWORD_PTR data) = 0;
    // Where the driver file dialog opens; empty when nothing was kept.
    virtual std::wstring PrintInfInitialDir() = 0;
    virtual bool SetPrintInfInitialDir(const std::wstring& directory) = 0;
};

// The engine of the current host, or null.
KYjlpPrinterCfg* CurrentPrinterEngine() noexcept;
