#include "printmonitor/SessionPrinters.h"

#include <windows.h>
#include <winspool.h>

#include "printmonitor/InstalledDrivers.h"
#include "printmonitor/PrintMonitorRecords.h"
#include "printmonitor/PrinterInstaller.h"
#include "printmonitor/Spooler.h"

namespace kypm {

void SessionPrinters::ConnectClientPrinters(int32_t startMode) {
    if (!m_client.InSession() || startMode == kStartNone) return;
    std::vector<std::wstring> names;
    if (startMode == kStartAll)
        names = m_client.Printers();
    else if (!m_client.DefaultPrinter().empty())
        names.push_back(m_client.DefaultPrinter());
    PrinterInstaller installer(m_client);
    for (const std::wstring& name : names) {
        Spooler::Printer existing;
        const bool makeDefault = startMode == kStartDefault;
        if (Spooler::FindPrinter(name, existing)) {
            if (makeDefault) SetDefaultPrinterW(name.c_str());
            continue;
        }
        installer.Install({name, m_client.Port(), m_client.Driver(), L"", L"", makeDefault});
    }
}

bool SessionPrinters::Read(const std::wstring& driverGroup, std::vector<PrinterFacts>& printers) const {
    printers.clear();
    std::vector<Spooler::Printer> spooled;
    if (!Spooler::Printers(spooled)) return false;
    const std::wstring defaultPrinter = Spooler::DefaultPrinter();
    InstalledDrivers drivers;
    drivers.Load(driverGroup);
    for (const Spooler::Printer& printer : spooled) {
        PrinterFacts facts;
        facts.name = printer.name;
        facts.port = printer.port;
        facts.driver = printer.driver;
        facts.manufacturer = drivers.ManufacturerOf(printer.driver);
        facts.isDefault = !defaultPrinter.empty() && Spooler::SameName(printer.name, defaultPrinter);
        facts.isFixed = (printer.attributes & PRINTER_ATTRIBUTE_NETWORK) != 0 ||
                        m_client.IsFixed(printer.name) || !Spooler::MayAdminister(printer.name);
        printers.push_back(std::move(facts));
    }
    SetLastError(ERROR_SUCCESS);
    return true;
}

}  // namespace kypm
