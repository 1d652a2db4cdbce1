// The program around the printer engine, as a test stands it up: a real monitor
// that answers unattended and writes its HTML log into the test's folder, with
// the program's resource library for its texts; a real watch event; and the
// print monitor library loaded from the file the test chose, counting the loads.
#pragma once
#include <windows.h>

#include <memory>
#include <string>

#include "foundation/UniqueHandle.h"
#include "printers/KYjlpPrinterHost.h"

class TestPrinterHost : public KYjlpPrinterHost {
public:
    static constexpr int32_t kStartMode = 2;
    // The WLE link of code n, as this host writes it into reports.
    static std::wstring LinkOf(DWORD code) { return L"WLE" + std::to_wstring(code); }

    // The monitor's log goes to logFile; the engine is the one this host answers for.
    TestPrinterHost(KYjlpPrinterCfg& engine, const std::wstring& logFile);
    ~TestPrinterHost() override;
    TestPrinterHost(const TestPrinterHost&) = delete;
    TestPrinterHost& operator=(const TestPrinterHost&) = delete;

    // The file LoadPrintMonitor loads: a full path.
    void SetLibraryPath(const std::wstring& path) { m_libraryPath = path; }
    // Frees the library, as the program does after the engine gave its printers back.
    void FreePrintMonitor() { m_module.reset(); }
    int Loads() const { return m_loads; }
    int MenuReloads() const { return m_menuReloads; }
    bool HasMonitor() const { return static_cast<bool>(m_monitor); }

    KYjlpPrinterCfg* PrinterEngine() override { return &m_engine; }
    KYbpm* PrinterMonitor() override { return m_monitor.get(); }
    KYpbr* PrinterBrander() override { return nullptr; }
    int32_t PrinterStartMode() override { return kStartMode; }
    HANDLE PrinterWatchEvent() override { return m_event.get(); }
    HMODULE PrintMonitorModule() override { return m_module.get(); }
    int LoadPrintMonitor() override;
    std::wstring PrinterTagText(int tag) override;
    std::wstring PrinterCodeLink(DWORD code) override { return LinkOf(code); }
    void ReloadPrinterMenu() override { ++m_menuReloads; }
    KYstdUI_DlgData PrinterDialogData() override { return {}; }
    bool ShowPrinterHelp(UINT, DWORD_PTR) override { return false; }
    std::wstring PrintInfInitialDir() override { return {}; }
    bool SetPrintInfInitialDir(const std::wstring&) override { return false; }

private:
    struct MonitorDeleter {
        void operator()(KYbpm* monitor) const;
    };
    void MakeMonitor(const std::wstring& logFile);

    KYjlpPrinterCfg& m_engine;
    ky::UniqueHModule m_resources;
    std::unique_ptr<KYbpm, MonitorDeleter> m_monitor;
    ky::UniqueHandle m_event;
    ky::UniqueHModule m_module;
    std::wstring m_libraryPath;
    int m_loads = 0;
    int m_menuReloads = 0;
};
