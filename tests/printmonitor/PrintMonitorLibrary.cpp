#include "tests/printmonitor/PrintMonitorLibrary.h"

#include <algorithm>

#include "tests/support/TestSupport.h"

namespace pmtest {

namespace {

template <typename Fn>
void Bind(const char* file, int line, HMODULE module, int slot, Fn& target) {
    const char* name = kypm::kExportNames[slot];
    target = reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(module, name)));
    if (!target) ADD_FAILURE_AT(file, line) << "KyPrintMon.dll lacks " << name;
}

std::wstring Text(const wchar_t* text) { return text ? std::wstring(text) : std::wstring(); }

}  // namespace

void PrintMonitorLibrary::Load(const char* file, int line) {
    const std::wstring path = lptest::BinDir() + kypm::kLibraryFileName;
    m_module.reset(LoadLibraryW(path.c_str()));
    if (!m_module) {
        ADD_FAILURE_AT(file, line) << "cannot load " << lptest::Narrow(path) << ": " << GetLastError();
        return;
    }
    HMODULE module = m_module.get();
    Bind(file, line, module, 0, isClientPrintingSupported);
    Bind(file, line, module, 1, EnumAvailableDriversW);
    Bind(file, line, module, 2, GetPrinterList);
    Bind(file, line, module, 3, DestroyDriverListW);
    Bind(file, line, module, 4, EnumeratePorts);
    Bind(file, line, module, 5, PRINT_DeletePrinter);
    Bind(file, line, module, 6, InstallPrinter);
    Bind(file, line, module, 7, DisplayPrinterPreferences);
    Bind(file, line, module, 8, PrintTestPage);
    Bind(file, line, module, 9, InitializePrinters);
    Bind(file, line, module, 10, DestroyPrinterInfoList);
    Bind(file, line, module, 11, UpdateInstalledPrinters);
}

std::vector<std::wstring> PrintMonitorLibrary::Texts(const char* file, int line,
                                                     kypm::DRIVER_LIST_ENTRY*& head) {
    std::vector<std::wstring> texts;
    for (auto* node = head; node; node = node->pNext) texts.push_back(Text(node->pszText));
    const int32_t result = DestroyDriverListW(&head);
    if (result != kypm::kDone || head)
        ADD_FAILURE_AT(file, line) << "DestroyDriverListW gave " << result << (head ? ", head kept" : "");
    return texts;
}

std::vector<PrinterRecord> PrintMonitorLibrary::Records(const char* file, int line,
                                                        kypm::CLIENT_PRINTER_INFO*& head) {
    std::vector<PrinterRecord> records;
    for (auto* r = head; r; r = r->pNext) {
        if (r->pTable || r->pszReserved1 || r->pszReserved2 || r->pszReserved3 || r->pReserved4)
            ADD_FAILURE_AT(file, line) << "record of " << lptest::Narrow(Text(r->pszPrinterName))
                                       << " has a table word or reserved fields set";
        records.push_back({Text(r->pszPrinterName), Text(r->pszPortName), Text(r->pszDriverName),
                           Text(r->pszManufacturer), r->pszInfPath == nullptr, r->bDefault, r->bFixed});
    }
    const int32_t result = DestroyPrinterInfoList(&head);
    if (result != kypm::kDone || head)
        ADD_FAILURE_AT(file, line) << "DestroyPrinterInfoList gave " << result << (head ? ", head kept" : "");
    return records;
}

std::vector<std::wstring> PrintMonitorLibrary::Drivers(const char* file, int line, const wchar_t* infPath,
                                                       const wchar_t* maker, int32_t expected) {
    kypm::DRIVER_LIST_ENTRY* list = nullptr;
    const int32_t result = EnumAvailableDriversW(infPath, maker, &list, L"Installed Drivers");
    if (result != expected)
        ADD_FAILURE_AT(file, line) << "EnumAvailableDriversW gave " << result << ", expected " << expected
                                   << " (last error " << GetLastError() << ")";
    return Texts(file, line, list);
}

std::vector<PrinterRecord> PrintMonitorLibrary::Update(const char* file, int line) {
    kypm::CLIENT_PRINTER_INFO* chain = nullptr;
    const int32_t result = UpdateInstalledPrinters(&chain);
    if (result != kypm::kDone) ADD_FAILURE_AT(file, line) << "UpdateInstalledPrinters gave " << result;
    return Records(file, line, chain);
}

bool Has(const std::vector<std::wstring>& list, const std::wstring& text) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

const PrinterRecord* Find(const std::vector<PrinterRecord>& records, const std::wstring& name) {
    for (const PrinterRecord& record : records)
        if (record.name == name) return &record;
    return nullptr;
}

std::string Join(const std::vector<std::wstring>& list) {
    std::string text;
    for (const std::wstring& item : list) text += (text.empty() ? "" : " | ") + lptest::Narrow(item);
    return text;
}

kypm::CLIENT_PRINTER_INFO MakeRecord(const wchar_t* name, const wchar_t* port, const wchar_t* driver,
                                     const wchar_t* maker, const wchar_t* infPath, int32_t isDefault) {
    kypm::CLIENT_PRINTER_INFO record{};
    record.pszPrinterName = const_cast<wchar_t*>(name);
    record.pszPortName = const_cast<wchar_t*>(port);
    record.pszDriverName = const_cast<wchar_t*>(driver);
    record.pszManufacturer = const_cast<wchar_t*>(maker);
    record.pszInfPath = const_cast<wchar_t*>(infPath);
    record.bDefault = isDefault;
    return record;
}

}  // namespace pmtest
