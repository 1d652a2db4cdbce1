#include "printmonitor/PrintMonitor.h"

#include <winspool.h>

#include <vector>

#include "printmonitor/ClientSide.h"
#include "printmonitor/InfDriverFile.h"
#include "printmonitor/InstalledDrivers.h"
#include "printmonitor/PrinterChain.h"
#include "printmonitor/PrinterInstaller.h"
#include "printmonitor/PrinterPreferences.h"
#include "printmonitor/SessionPrinters.h"
#include "printmonitor/Spooler.h"
#include "printmonitor/TestPage.h"
#include "printmonitor/TextList.h"

namespace kypm {

namespace {

bool Blank(const wchar_t* text) { return !text || !*text; }

int32_t Hand(TextList& list, const std::vector<std::wstring>& texts, DRIVER_LIST_ENTRY** out) {
    if (int32_t result = list.AppendAll(texts)) return result;
    *out = list.Detach();
    SetLastError(ERROR_SUCCESS);
    return kDone;
}

}  // namespace

PrintMonitor& PrintMonitor::Instance() {
    static PrintMonitor monitor;
    return monitor;
}

int32_t PrintMonitor::IsClientPrintingSupported() {
    ClientSide client;
    client.Load();
    return client.PrintingSupported() ? kDone : kRefused;
}

int32_t PrintMonitor::EnumAvailableDrivers(const wchar_t* infPath, const wchar_t* manufacturer,
                                           DRIVER_LIST_ENTRY** list, const wchar_t* installedLabel) {
    if (!list) return kBadArgument;
    *list = nullptr;
    {
        std::lock_guard guard(m_lock);
        if (!Blank(installedLabel)) m_driverGroup = installedLabel;
    }
    if (!Blank(infPath)) return InfDriverList(infPath, manufacturer, list);
    return InstalledDriverList(manufacturer, list);
}

int32_t PrintMonitor::InstalledDriverList(const wchar_t* manufacturer, DRIVER_LIST_ENTRY** list) {
    InstalledDrivers drivers;
    std::wstring group;
    {
        std::lock_guard guard(m_lock);
        group = m_driverGroup;
    }
    if (!drivers.Load(group)) return kRefused;
    std::vector<std::wstring> texts;
    if (Blank(manufacturer))
        texts = drivers.Manufacturers();
    else if (!drivers.Models(manufacturer, texts)) {
        SetLastError(ERROR_NOT_FOUND);
        return kNoSuchManufacturer;
    }
    TextList chain;
    return Hand(chain, texts, list);
}

int32_t PrintMonitor::InfDriverList(const std::wstring& path, const wchar_t* manufacturer,
                                    DRIVER_LIST_ENTRY** list) {
    InfDriverFile inf;
    if (!inf.Open(path)) return kRefused;
    std::vector<std::wstring> texts;
    if (Blank(manufacturer))
        texts = inf.Manufacturers();
    else if (!inf.Models(manufacturer, texts))
        return kNoSuchManufacturer;
    TextList chain;
    return Hand(chain, texts, list);
}

int32_t PrintMonitor::GetPrinterList(DRIVER_LIST_ENTRY** list, int32_t* onlyThese) {
    if (!list) return kBadArgument;
    *list = nullptr;
    if (onlyThese) *onlyThese = 0;
    ClientSide client;
    client.Load();
    std::vector<std::wstring> names;
    if (client.HasPrinterList()) {
        names = client.Printers();
        if (onlyThese) *onlyThese = client.OnlyOffered() ? 1 : 0;
    } else {
        std::vector<Spooler::Printer> printers;
        if (!Spooler::Printers(printers)) return kRefused;
        for (const Spooler::Printer& printer : printers) names.push_back(printer.name);
    }
    TextList chain;
    return Hand(chain, names, list);
}

int32_t PrintMonitor::EnumeratePorts(DRIVER_LIST_ENTRY** list) {
    if (!list) return kBadArgument;
    *list = nullptr;
    std::vector<std::wstring> ports;
    if (!Spooler::Ports(ports)) return kRefused;
    TextList chain;
    return Hand(chain, ports, list);
}

int32_t PrintMonitor::DeletePrinter(const wchar_t* printerName) {
    if (Blank(printerName)) return kBadArgument;
    std::wstring name = printerName;
    PRINTER_DEFAULTSW access{nullptr, nullptr, PRINTER_ALL_ACCESS};
    ky::UniquePrinter printer;
    if (!OpenPrinterW(name.data(), printer.put(), &access)) {
        return GetLastError() == ERROR_ACCESS_DENIED ? kRefused : kNoSuchPrinter;
    }
    if (!::DeletePrinter(printer.get())) return kRefused;
    SetLastError(ERROR_SUCCESS);
    return kDone;
}

int32_t PrintMonitor::InstallPrinter(const CLIENT_PRINTER_INFO* record) {
    ClientSide client;
    client.Load();
    return PrinterInstaller(client).Install(record);
}

int32_t PrintMonitor::DisplayPreferences(const wchar_t* printerName, HWND owner) {
    if (Blank(printerName)) return kBadArgument;
    return PrinterPreferences::Show(printerName, owner);
}

int32_t PrintMonitor::PrintTestPage(const wchar_t* printerName) {
    if (Blank(printerName)) return kBadArgument;
    return TestPage::Print(printerName);
}

int32_t PrintMonitor::InitializePrinters(CLIENT_PRINTER_INFO** chain, int32_t startMode,
                                         HANDLE changeEvent) {
    if (!chain) return kListBadArgument;
    *chain = nullptr;
    if (startMode < kStartNone || startMode > kStartDefault) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return kListBadArgument;
    }
    {
        std::lock_guard guard(m_lock);
        if (!m_watch.Start(changeEvent)) return kListSpoolerUnreadable;
    }
    ClientSide client;
    client.Load();
    SessionPrinters(client).ConnectClientPrinters(startMode);
    return ReadPrinters(chain);
}

int32_t PrintMonitor::UpdateInstalledPrinters(CLIENT_PRINTER_INFO** chain) {
    if (!chain) return kListBadArgument;
    *chain = nullptr;
    {
        std::lock_guard guard(m_lock);
        m_watch.Rearm();
    }
    return ReadPrinters(chain);
}

int32_t PrintMonitor::ReadPrinters(CLIENT_PRINTER_INFO** chain) {
    ClientSide client;
    client.Load();
    std::wstring group;
    {
        std::lock_guard guard(m_lock);
        group = m_driverGroup;
    }
    std::vector<PrinterFacts> printers;
    if (!SessionPrinters(client).Read(group, printers)) return kListSpoolerUnreadable;
    PrinterChain records;
    for (const PrinterFacts& facts : printers)
        if (!records.Append(facts)) return kListNoMemory;
    *chain = records.Detach();
    SetLastError(ERROR_SUCCESS);
    return kDone;
}

}  // namespace kypm
