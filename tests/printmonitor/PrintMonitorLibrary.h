// KyPrintMon.dll as the program binds it: loaded by file name from the
// program's folder, its twelve entry points looked up by name in the order of
// the binding table, freed at the end. Helpers turn its lists into vectors and
// always give the lists back through the library's own release entry points.
#pragma once
#include <windows.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "foundation/UniqueHandle.h"
#include "printmonitor/PrintMonitorRecords.h"

namespace pmtest {

struct PrinterRecord {
    std::wstring name, port, driver, manufacturer;
    bool infPathNull = false;
    int32_t isDefault = 0, isFixed = 0;
};

class PrintMonitorLibrary {
public:
    // Loads the library and binds every export; a miss fails the test there.
    void Load(const char* file, int line);
    void Unload() { m_module.reset(); }
    bool Loaded() const { return static_cast<bool>(m_module); }

    kypm::IsClientPrintingSupportedFn isClientPrintingSupported = nullptr;
    kypm::EnumAvailableDriversFn EnumAvailableDriversW = nullptr;
    kypm::GetPrinterListFn GetPrinterList = nullptr;
    kypm::DestroyDriverListFn DestroyDriverListW = nullptr;
    kypm::EnumeratePortsFn EnumeratePorts = nullptr;
    kypm::DeletePrinterFn PRINT_DeletePrinter = nullptr;
    kypm::InstallPrinterFn InstallPrinter = nullptr;
    kypm::DisplayPrinterPreferencesFn DisplayPrinterPreferences = nullptr;
    kypm::PrintTestPageFn PrintTestPage = nullptr;
    kypm::InitializePrintersFn InitializePrinters = nullptr;
    kypm::DestroyPrinterInfoListFn DestroyPrinterInfoList = nullptr;
    kypm::UpdateInstalledPrintersFn UpdateInstalledPrinters = nullptr;

    // The texts of a list, released through DestroyDriverListW (whose result
    // and nulled head are checked at the caller's line).
    std::vector<std::wstring> Texts(const char* file, int line, kypm::DRIVER_LIST_ENTRY*& head);
    std::vector<PrinterRecord> Records(const char* file, int line, kypm::CLIENT_PRINTER_INFO*& head);
    // The lists of the drivers: manufacturers (null maker) or models.
    std::vector<std::wstring> Drivers(const char* file, int line, const wchar_t* infPath,
                                      const wchar_t* maker, int32_t expected = kypm::kDone);
    std::vector<PrinterRecord> Update(const char* file, int line);

private:
    ky::UniqueHModule m_module;
};

#define PM_LOAD(lib) (lib).Load(__FILE__, __LINE__)
#define PM_TEXTS(lib, head) (lib).Texts(__FILE__, __LINE__, head)
#define PM_RECORDS(lib, head) (lib).Records(__FILE__, __LINE__, head)
#define PM_DRIVERS(lib, ...) (lib).Drivers(__FILE__, __LINE__, __VA_ARGS__)
#define PM_UPDATE(lib) (lib).Update(__FILE__, __LINE__)

bool Has(const std::vector<std::wstring>& list, const std::wstring& text);
const PrinterRecord* Find(const std::vector<PrinterRecord>& records, const std::wstring& name);
std::string Join(const std::vector<std::wstring>& list);

// A record as the printer sheet hands it over: zeroed, texts borrowed.
kypm::CLIENT_PRINTER_INFO MakeRecord(const wchar_t* name, const wchar_t* port, const wchar_t* driver,
                                     const wchar_t* maker, const wchar_t* infPath = nullptr,
                                     int32_t isDefault = 0);

}  // namespace pmtest
