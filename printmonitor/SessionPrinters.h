// The printers of the session as the printer menu shows them: the spooler's
// local printers and printer connections, the default one marked, and those
// the user may not change marked fixed. At the start of client printing it
// also connects the printers of the client that the start mode asks for.
#pragma once
#include <string>
#include <vector>

#include "printmonitor/ClientSide.h"
#include "printmonitor/PrinterFacts.h"

namespace kypm {

class SessionPrinters {
public:
    explicit SessionPrinters(const ClientSide& client) : m_client(client) {}

    // Start mode 1 connects every printer the client offers, 2 only the
    // client's default printer, which then becomes the session's default too;
    // 0 connects none. Outside a session there is nothing to connect. A printer
    // that cannot be connected is left out: the others still come.
    void ConnectClientPrinters(int32_t startMode);
    // False when the spooler cannot be read (its reason in the last error).
    bool Read(const std::wstring& driverGroup, std::vector<PrinterFacts>& printers) const;

private:
    const ClientSide& m_client;
};

}  // namespace kypm
