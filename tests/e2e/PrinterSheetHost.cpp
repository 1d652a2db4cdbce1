// The printer sheet's wizard outside the panel: the panel's commands open the
// sheet only for a printer of the menu, and its add command starts the Printer
// Panel. This host binds the shipped KyPrintMon.dll and lp.dll beside it and
// opens the engine's sheet with no record, which is the add wizard, so that a
// test can work it through the driver. Its exit code is the sheet's result
// (12325 Finish, 2 Cancel, 1024 ended by the library), or 1000 + the situation
// when the sheet could not run.
#include <windows.h>
#include <commctrl.h>

#include <string>

#include "foundation/UniqueHandle.h"
#include "framework/ResourceModule.h"
#include "printers/KYjlpPrinterCfg.h"
#include "printers/KYjlpPrinterHost.h"

namespace {

std::wstring BesideThisProgram(const wchar_t* name) {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder = path;
    folder.resize(folder.find_last_of(L'\\') + 1);
    return folder + name;
}

class SheetHost : public KYjlpPrinterHost {
public:
    KYjlpPrinterCfg* PrinterEngine() override { return &m_engine; }
    KYbpm* PrinterMonitor() override { return nullptr; }
    KYpbr* PrinterBrander() override { return nullptr; }
    int32_t PrinterStartMode() override { return 0; }
    HANDLE PrinterWatchEvent() override { return m_event.get(); }
    HMODULE PrintMonitorModule() override { return m_library.get(); }
    int LoadPrintMonitor() override {
        m_library.reset(LoadLibraryW(BesideThisProgram(kypm::kLibraryFileName).c_str()));
        return m_library ? 0 : 27622;
    }
    std::wstring PrinterTagText(int) override { return L"Launch Panel"; }
    std::wstring PrinterCodeLink(DWORD code) override { return L"WLE" + std::to_wstring(code); }
    void ReloadPrinterMenu() override {}
    KYstdUI_DlgData PrinterDialogData() override { return {}; }
    bool ShowPrinterHelp(UINT, DWORD_PTR) override { return false; }
    std::wstring PrintInfInitialDir() override { return {}; }
    bool SetPrintInfInitialDir(const std::wstring&) override { return true; }

    // The engine's records go back to the library before it is freed.
    ~SheetHost() override { m_engine.ReleasePrinters(false); }

    ky::UniqueHModule m_library;
    ky::UniqueHandle m_event{CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    KYjlpPrinterCfg m_engine;
};

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES};
    InitCommonControlsEx(&controls);
    ky::UniqueHModule resources(
        LoadLibraryExW(BesideThisProgram(L"lp.dll").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    if (!resources) return 1000 + 27043;
    fw::SetResourceModule(resources.get());
    int result = 0;
    {
        SheetHost host;
        KYjlpPrinterHost::SetCurrent(&host);
        if (!host.m_engine.StartPrinters(false, KYjlpPrinterCfg::kMaxPrinters)) {
            result = 1000 + 27620;
        } else {
            const KYstdUI_DlgData data{};
            host.m_engine.OpenPrinterSheet(&data, nullptr);
            result = host.m_engine.SheetResult() < 0 ? 1000 + 27606 : host.m_engine.SheetResult();
        }
        KYjlpPrinterHost::SetCurrent(nullptr);
    }
    fw::SetResourceModule(nullptr);
    return result;
}
