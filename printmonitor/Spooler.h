// The library's reads of the Windows spooler: printers, ports, drivers and the
// default printer, copied out of the spooler's buffers. A false result leaves
// the spooler's reason in the last error.
#pragma once
#include <windows.h>
#include <string>
#include <vector>

namespace kypm {

class Spooler {
public:
    struct Printer {
        std::wstring name;
        std::wstring port;
        std::wstring driver;
        DWORD attributes = 0;
    };
    struct Driver {
        std::wstring name;
        std::wstring manufacturer;  // as the spooler keeps it; often empty
        std::wstring dataFile;
    };

    // Local printers and the user's printer connections, in the spooler's order.
    static bool Printers(std::vector<Printer>& printers);
    static bool Ports(std::vector<std::wstring>& ports);
    // Installed drivers of this machine's environment, each name once.
    static bool Drivers(std::vector<Driver>& drivers);
    // The user's default printer; empty when there is none.
    static std::wstring DefaultPrinter();
    // One printer by name; false with ERROR_INVALID_PRINTER_NAME when unknown.
    static bool FindPrinter(const std::wstring& name, Printer& printer);
    static bool HasPort(const std::wstring& port);
    static bool HasDriver(const std::wstring& driver);
    // Whether this user may change the printer (open it for administration).
    static bool MayAdminister(const std::wstring& name);

    static bool SameName(const std::wstring& a, const std::wstring& b);
};

}  // namespace kypm
