#include "printmonitor/Spooler.h"

#include <winspool.h>

#include "foundation/UniqueHandle.h"

namespace kypm {

namespace {

std::wstring Text(const wchar_t* text) { return text ? std::wstring(text) : std::wstring(); }

// The spooler's two-call pattern: ask for the size, then fill; the size may
// grow between the calls when printers come and go, so it asks again.
template <typename Call>
bool FillBuffer(std::vector<BYTE>& buffer, DWORD& count, Call call) {
    DWORD needed = 0;
    count = 0;
    buffer.clear();
    for (int attempt = 0; attempt < 4; ++attempt) {
        BYTE* data = buffer.empty() ? nullptr : buffer.data();
        if (call(data, static_cast<DWORD>(buffer.size()), &needed, &count)) return true;
        if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) return false;
        buffer.assign(needed + 64, 0);
    }
    return false;
}

}  // namespace

bool Spooler::SameName(const std::wstring& a, const std::wstring& b) {
    return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_EQUAL;
}

bool Spooler::Printers(std::vector<Printer>& printers) {
    printers.clear();
    std::vector<BYTE> buffer;
    DWORD count = 0;
    const DWORD flags = PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS;
    if (!FillBuffer(buffer, count, [&](BYTE* data, DWORD size, DWORD* needed, DWORD* returned) {
            return EnumPrintersW(flags, nullptr, 2, data, size, needed, returned);
        }))
        return false;
    const auto* info = reinterpret_cast<const PRINTER_INFO_2W*>(buffer.data());
    for (DWORD i = 0; i < count; ++i)
        printers.push_back({Text(info[i].pPrinterName), Text(info[i].pPortName),
                            Text(info[i].pDriverName), info[i].Attributes});
    return true;
}

bool Spooler::Ports(std::vector<std::wstring>& ports) {
    ports.clear();
    std::vector<BYTE> buffer;
    DWORD count = 0;
    if (!FillBuffer(buffer, count, [](BYTE* data, DWORD size, DWORD* needed, DWORD* returned) {
            return EnumPortsW(nullptr, 1, data, size, needed, returned);
        }))
        return false;
    const auto* info = reinterpret_cast<const PORT_INFO_1W*>(buffer.data());
    for (DWORD i = 0; i < count; ++i)
        if (info[i].pName && *info[i].pName) ports.emplace_back(info[i].pName);
    return true;
}

bool Spooler::Drivers(std::vector<Driver>& drivers) {
    drivers.clear();
    std::vector<BYTE> buffer;
    DWORD count = 0;
    if (!FillBuffer(buffer, count, [](BYTE* data, DWORD size, DWORD* needed, DWORD* returned) {
            return EnumPrinterDriversW(nullptr, nullptr, 6, data, size, needed, returned);
        }))
        return false;
    const auto* info = reinterpret_cast<const DRIVER_INFO_6W*>(buffer.data());
    for (DWORD i = 0; i < count; ++i) {
        if (!info[i].pName || !*info[i].pName) continue;
        bool known = false;
        for (const Driver& driver : drivers) known = known || SameName(driver.name, info[i].pName);
        if (!known)
            drivers.push_back({info[i].pName, Text(info[i].pszMfgName), Text(info[i].pDataFile)});
    }
    return true;
}

std::wstring Spooler::DefaultPrinter() {
    DWORD size = 0;
    GetDefaultPrinterW(nullptr, &size);
    if (size == 0) return {};
    std::wstring name(size, L'\0');
    if (!GetDefaultPrinterW(name.data(), &size)) return {};
    name.resize(wcslen(name.c_str()));
    return name;
}

bool Spooler::FindPrinter(const std::wstring& name, Printer& printer) {
    ky::UniquePrinter handle;
    if (!OpenPrinterW(const_cast<wchar_t*>(name.c_str()), handle.put(), nullptr)) {
        SetLastError(ERROR_INVALID_PRINTER_NAME);
        return false;
    }
    std::vector<BYTE> buffer;
    DWORD count = 0;
    if (!FillBuffer(buffer, count, [&](BYTE* data, DWORD size, DWORD* needed, DWORD*) {
            return GetPrinterW(handle.get(), 2, data, size, needed);
        }))
        return false;
    const auto* info = reinterpret_cast<const PRINTER_INFO_2W*>(buffer.data());
    printer = {Text(info->pPrinterName), Text(info->pPortName), Text(info->pDriverName),
               info->Attributes};
    return true;
}

bool Spooler::HasPort(const std::wstring& port) {
    std::vector<std::wstring> ports;
    if (!Ports(ports)) return false;
    for (const std::wstring& known : ports)
        if (SameName(known, port)) return true;
    return false;
}

bool Spooler::HasDriver(const std::wstring& driver) {
    std::vector<Driver> drivers;
    if (!Drivers(drivers)) return false;
    for (const Driver& known : drivers)
        if (SameName(known.name, driver)) return true;
    return false;
}

bool Spooler::MayAdminister(const std::wstring& name) {
    PRINTER_DEFAULTSW access{nullptr, nullptr, PRINTER_ALL_ACCESS};
    ky::UniquePrinter handle;
    return OpenPrinterW(const_cast<wchar_t*>(name.c_str()), handle.put(), &access) != FALSE;
}

}  // namespace kypm
