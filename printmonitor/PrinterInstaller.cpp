#include "printmonitor/PrinterInstaller.h"

#include <windows.h>
#include <winspool.h>

#include <vector>

#include "foundation/UniqueHandle.h"
#include "printmonitor/InfDriverFile.h"
#include "printmonitor/Spooler.h"

namespace kypm {

namespace {

constexpr size_t kMaxNameLength = 220;

std::wstring Text(const wchar_t* text) { return text ? std::wstring(text) : std::wstring(); }

// The spooler's refusals that point at one page of the sheet, or end it.
int32_t ResultOf(DWORD error, int32_t fallback) {
    switch (error) {
    case ERROR_ACCESS_DENIED: return kInstallAccessDenied;
    case RPC_S_SERVER_UNAVAILABLE:
    case RPC_S_CALL_FAILED:
    case ERROR_SERVICE_NOT_ACTIVE: return kInstallSpoolerUnavailable;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY: return kInstallNoMemory;
    case ERROR_INVALID_PRINTER_NAME:
    case ERROR_PRINTER_ALREADY_EXISTS: return kInstallBadName;
    case ERROR_UNKNOWN_PRINTER_DRIVER:
    case ERROR_BAD_DRIVER: return kInstallBadModel;
    case ERROR_UNKNOWN_PORT: return kInstallBadPort;
    default: return fallback;
    }
}

int32_t Fail(DWORD error, int32_t result) {
    SetLastError(error);
    return result;
}

}  // namespace

bool PrinterInstaller::IsValidName(const std::wstring& name) {
    if (name.empty() || name.size() > kMaxNameLength) return false;
    if (name.find_first_not_of(L' ') == std::wstring::npos) return false;
    return name.find_first_of(L"\\,") == std::wstring::npos;
}

bool PrinterInstaller::IsAddablePort(const std::wstring& port) {
    if (port.size() > 4 && port[0] == L'\\' && port[1] == L'\\') {
        size_t slash = port.find(L'\\', 2);
        return slash != std::wstring::npos && slash > 2 && slash + 1 < port.size();
    }
    const bool drivePath = port.size() > 3 && iswalpha(port[0]) && port[1] == L':' && port[2] == L'\\';
    if (!drivePath || port.back() == L'\\') return false;
    const std::wstring folder = port.substr(0, port.find_last_of(L'\\') + 1);
    DWORD attributes = GetFileAttributesW(folder.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

int32_t PrinterInstaller::Install(const CLIENT_PRINTER_INFO* record) {
    if (!record) return Fail(ERROR_INVALID_PARAMETER, kInstallNoRecord);
    Request request{Text(record->pszPrinterName), Text(record->pszPortName),
                    Text(record->pszDriverName), Text(record->pszManufacturer),
                    Text(record->pszInfPath), record->bDefault != 0};
    return Install(std::move(request));
}

int32_t PrinterInstaller::Install(Request request) {
    if (!IsValidName(request.name)) return Fail(ERROR_INVALID_PRINTER_NAME, kInstallBadName);
    Spooler::Printer existing;
    const bool exists = Spooler::FindPrinter(request.name, existing);
    if (!exists && m_client.OnlyOffered() && !m_client.Offers(request.name))
        return Fail(ERROR_INVALID_PRINTER_NAME, kInstallBadName);
    if (int32_t result = EnsureDriver(request)) return result;
    if (int32_t result = EnsurePort(request)) return result;
    if (int32_t result = exists ? Reconfigure(request) : Create(request)) return result;
    if (request.makeDefault && !SetDefaultPrinterW(request.name.c_str()))
        return ResultOf(GetLastError(), kInstallFailed);
    SetLastError(ERROR_SUCCESS);
    return kInstallDone;
}

int32_t PrinterInstaller::EnsureDriver(const Request& request) {
    if (request.driver.empty()) return Fail(ERROR_UNKNOWN_PRINTER_DRIVER, kInstallBadModel);
    if (Spooler::HasDriver(request.driver)) return kInstallDone;
    if (request.infPath.empty()) return Fail(ERROR_UNKNOWN_PRINTER_DRIVER, kInstallBadModel);
    InfDriverFile inf;
    if (!inf.Open(request.infPath) || !inf.InstallDriver(request.manufacturer, request.driver)) {
        // Whatever the file or the spooler said, the fault lies with the model
        // chosen, unless memory ran out.
        const DWORD error = GetLastError();
        const int32_t result = ResultOf(error, kInstallBadModel) == kInstallNoMemory ? kInstallNoMemory
                                                                                     : kInstallBadModel;
        return Fail(error ? error : ERROR_UNKNOWN_PRINTER_DRIVER, result);
    }
    return kInstallDone;
}

// A printer of the client needs no port from the user: it prints to the port
// that the session gives to the client's printers.
int32_t PrinterInstaller::EnsurePort(Request& request) {
    if (request.port.empty() && m_client.Offers(request.name)) request.port = m_client.Port();
    if (request.port.empty()) return Fail(ERROR_UNKNOWN_PORT, kInstallNoPort);
    if (Spooler::HasPort(request.port)) return kInstallDone;
    if (!IsAddablePort(request.port)) return Fail(ERROR_UNKNOWN_PORT, kInstallBadPort);
    if (!AddLocalPort(request.port)) return ResultOf(GetLastError(), kInstallBadPort);
    return kInstallDone;
}

bool PrinterInstaller::AddLocalPort(const std::wstring& port) {
    PRINTER_DEFAULTSW access{nullptr, nullptr, SERVER_ACCESS_ADMINISTER};
    ky::UniquePrinter monitor;
    if (!OpenPrinterW(const_cast<wchar_t*>(L",XcvMonitor Local Port"), monitor.put(), &access))
        return false;
    DWORD needed = 0, status = ERROR_SUCCESS;
    if (!XcvDataW(monitor.get(), L"AddPort", reinterpret_cast<BYTE*>(const_cast<wchar_t*>(port.c_str())),
                  static_cast<DWORD>((port.size() + 1) * sizeof(wchar_t)), nullptr, 0, &needed, &status))
        return false;
    if (status != ERROR_SUCCESS && status != ERROR_ALREADY_EXISTS) {
        SetLastError(status);
        return false;
    }
    return true;
}

int32_t PrinterInstaller::Create(const Request& request) {
    std::wstring name = request.name, port = request.port, driver = request.driver;
    std::wstring processor = L"WinPrint", dataType = L"RAW";
    PRINTER_INFO_2W info{};
    info.pPrinterName = name.data();
    info.pPortName = port.data();
    info.pDriverName = driver.data();
    info.pPrintProcessor = processor.data();
    info.pDatatype = dataType.data();
    info.Attributes = PRINTER_ATTRIBUTE_LOCAL;
    ky::UniquePrinter printer(AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info)));
    if (!printer) return ResultOf(GetLastError(), kInstallFailed);
    return kInstallDone;
}

int32_t PrinterInstaller::Reconfigure(const Request& request) {
    PRINTER_DEFAULTSW access{nullptr, nullptr, PRINTER_ALL_ACCESS};
    ky::UniquePrinter printer;
    if (!OpenPrinterW(const_cast<wchar_t*>(request.name.c_str()), printer.put(), &access))
        return ResultOf(GetLastError(), kInstallFailed);
    DWORD needed = 0;
    GetPrinterW(printer.get(), 2, nullptr, 0, &needed);
    std::vector<BYTE> buffer(needed + 64);
    if (!GetPrinterW(printer.get(), 2, buffer.data(), static_cast<DWORD>(buffer.size()), &needed))
        return ResultOf(GetLastError(), kInstallFailed);
    auto* info = reinterpret_cast<PRINTER_INFO_2W*>(buffer.data());
    std::wstring port = request.port, driver = request.driver;
    // Settings of another driver mean nothing to the new one: it starts from its own.
    if (!info->pDriverName || !Spooler::SameName(info->pDriverName, driver)) info->pDevMode = nullptr;
    info->pPortName = port.data();
    info->pDriverName = driver.data();
    info->pSecurityDescriptor = nullptr;
    if (!SetPrinterW(printer.get(), 2, buffer.data(), 0)) return ResultOf(GetLastError(), kInstallFailed);
    return kInstallDone;
}

}  // namespace kypm
