// Creates a printer with the spooler, or reconfigures the one of that name,
// from a record of the printer sheet, and answers with the result number that
// sends the sheet back to the page at fault.
#pragma once
#include <string>

#include "printmonitor/ClientSide.h"
#include "printmonitor/PrintMonitorRecords.h"

namespace kypm {

class PrinterInstaller {
public:
    struct Request {
        std::wstring name;
        std::wstring port;
        std::wstring driver;
        std::wstring manufacturer;
        std::wstring infPath;
        bool makeDefault = false;
    };

    explicit PrinterInstaller(const ClientSide& client) : m_client(client) {}

    int32_t Install(const CLIENT_PRINTER_INFO* record);
    int32_t Install(Request request);

    // The names the spooler refuses: empty, too long, or with "\" or ",".
    static bool IsValidName(const std::wstring& name);
    // A port this library may add for the user: a file in an existing folder
    // ("C:\Output\printer.ps") or a network printer share ("\\server\printer").
    static bool IsAddablePort(const std::wstring& port);

private:
    int32_t EnsureDriver(const Request& request);
    int32_t EnsurePort(Request& request);
    int32_t Create(const Request& request);
    int32_t Reconfigure(const Request& request);
    static bool AddLocalPort(const std::wstring& port);

    const ClientSide& m_client;
};

}  // namespace kypm
