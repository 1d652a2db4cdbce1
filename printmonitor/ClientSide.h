// What the client of a session offers for printing, as the suite's session
// agent states it under HKCU\SOFTWARE\Veltran\Corvane\KyPrintMon\Client
// (printmonitor/README.md names the values). Without that key the library runs
// standalone: printing is supported and the spooler's printers are the answer.
#pragma once
#include <string>
#include <vector>

namespace kypm {

class ClientSide {
public:
    // Reads the key again; false when there is none (standalone).
    bool Load();

    bool InSession() const { return m_inSession; }
    bool PrintingSupported() const { return m_printingSupported; }
    // The names of the printers the client offers; HasPrinterList is false
    // when the client gave none, and the spooler's printers stand in.
    bool HasPrinterList() const { return m_hasPrinters; }
    const std::vector<std::wstring>& Printers() const { return m_printers; }
    bool OnlyOffered() const { return m_onlyOffered; }
    bool Offers(const std::wstring& name) const;
    bool IsFixed(const std::wstring& name) const;
    // The model and port that the session gives to the client's printers.
    const std::wstring& Driver() const { return m_driver; }
    const std::wstring& Port() const { return m_port; }
    // The client's default printer: the value, else the first printer offered.
    std::wstring DefaultPrinter() const;

private:
    bool m_inSession = false;
    bool m_printingSupported = true;
    bool m_hasPrinters = false;
    bool m_onlyOffered = false;
    std::vector<std::wstring> m_printers;
    std::vector<std::wstring> m_fixed;
    std::wstring m_driver;
    std::wstring m_port;
    std::wstring m_defaultPrinter;
};

}  // namespace kypm
