// The library behind the twelve entry points: its state between calls (the
// change watch and the name of the group of drivers without a manufacturer)
// and one operation per entry point. Calls come from the holder's main
// thread; a lock keeps the state whole all the same.
#pragma once
#include <windows.h>
#include <mutex>
#include <string>

#include "printmonitor/PrintMonitorRecords.h"
#include "printmonitor/PrinterChangeWatch.h"

namespace kypm {

class PrintMonitor {
public:
    static PrintMonitor& Instance();

    int32_t IsClientPrintingSupported();
    int32_t EnumAvailableDrivers(const wchar_t* infPath, const wchar_t* manufacturer,
                                 DRIVER_LIST_ENTRY** list, const wchar_t* installedLabel);
    int32_t GetPrinterList(DRIVER_LIST_ENTRY** list, int32_t* onlyThese);
    int32_t EnumeratePorts(DRIVER_LIST_ENTRY** list);
    int32_t DeletePrinter(const wchar_t* printerName);
    int32_t InstallPrinter(const CLIENT_PRINTER_INFO* record);
    int32_t DisplayPreferences(const wchar_t* printerName, HWND owner);
    int32_t PrintTestPage(const wchar_t* printerName);
    int32_t InitializePrinters(CLIENT_PRINTER_INFO** chain, int32_t startMode, HANDLE changeEvent);
    int32_t UpdateInstalledPrinters(CLIENT_PRINTER_INFO** chain);

private:
    PrintMonitor() = default;
    int32_t ReadPrinters(CLIENT_PRINTER_INFO** chain);
    int32_t InstalledDriverList(const wchar_t* manufacturer, DRIVER_LIST_ENTRY** list);
    int32_t InfDriverList(const std::wstring& path, const wchar_t* manufacturer, DRIVER_LIST_ENTRY** list);

    std::mutex m_lock;
    PrinterChangeWatch m_watch;
    std::wstring m_driverGroup;
};

}  // namespace kypm
