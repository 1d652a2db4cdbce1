// The twelve entry points of KyPrintMon.dll, exported by name with C linkage.
// Nothing may leave the library as an exception: each call answers with a
// result number, and what the library cannot foresee counts as a refusal.
#include <windows.h>

#include <new>
#include <type_traits>

#include "printmonitor/PrintMonitor.h"
#include "printmonitor/PrinterChain.h"
#include "printmonitor/TextList.h"

using kypm::CLIENT_PRINTER_INFO;
using kypm::DRIVER_LIST_ENTRY;
using kypm::PrintMonitor;

namespace {

template <typename Call>
int32_t Guarded(int32_t noMemory, int32_t failure, Call call) noexcept {
    try {
        return call();
    } catch (const std::bad_alloc&) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return noMemory;
    } catch (...) {
        return failure;
    }
}

// The program's binding expects exactly these signatures.
template <typename Expected, typename Actual>
constexpr bool kSame = std::is_same_v<Expected, Actual>;

}  // namespace

#define KYPM_EXPORT extern "C" __declspec(dllexport)

KYPM_EXPORT int32_t isClientPrintingSupported() {
    return Guarded(kypm::kNoMemory, kypm::kRefused,
                   [] { return PrintMonitor::Instance().IsClientPrintingSupported(); });
}

KYPM_EXPORT int32_t EnumAvailableDriversW(const wchar_t* infPath, const wchar_t* manufacturer,
                                          DRIVER_LIST_ENTRY** list, const wchar_t* installedLabel) {
    return Guarded(kypm::kNoMemory, kypm::kRefused, [&] {
        return PrintMonitor::Instance().EnumAvailableDrivers(infPath, manufacturer, list, installedLabel);
    });
}

KYPM_EXPORT int32_t GetPrinterList(DRIVER_LIST_ENTRY** list, int32_t* onlyThese) {
    return Guarded(kypm::kNoMemory, kypm::kRefused,
                   [&] { return PrintMonitor::Instance().GetPrinterList(list, onlyThese); });
}

KYPM_EXPORT int32_t DestroyDriverListW(DRIVER_LIST_ENTRY** head) {
    return kypm::TextList::Destroy(head);
}

KYPM_EXPORT int32_t EnumeratePorts(DRIVER_LIST_ENTRY** list) {
    return Guarded(kypm::kNoMemory, kypm::kRefused,
                   [&] { return PrintMonitor::Instance().EnumeratePorts(list); });
}

KYPM_EXPORT int32_t PRINT_DeletePrinter(const wchar_t* printerName) {
    return Guarded(kypm::kNoMemory, kypm::kRefused,
                   [&] { return PrintMonitor::Instance().DeletePrinter(printerName); });
}

KYPM_EXPORT int32_t InstallPrinter(const CLIENT_PRINTER_INFO* record) {
    return Guarded(kypm::kInstallNoMemory, kypm::kInstallFailed,
                   [&] { return PrintMonitor::Instance().InstallPrinter(record); });
}

KYPM_EXPORT int32_t DisplayPrinterPreferences(const wchar_t* printerName, HWND owner) {
    return Guarded(kypm::kNoMemory, kypm::kRefused,
                   [&] { return PrintMonitor::Instance().DisplayPreferences(printerName, owner); });
}

KYPM_EXPORT int32_t PrintTestPage(const wchar_t* printerName) {
    return Guarded(kypm::kNoMemory, kypm::kRefused,
                   [&] { return PrintMonitor::Instance().PrintTestPage(printerName); });
}

KYPM_EXPORT int32_t InitializePrinters(CLIENT_PRINTER_INFO** chain, int32_t startMode, HANDLE changeEvent) {
    return Guarded(kypm::kListNoMemory, kypm::kListSpoolerUnreadable, [&] {
        return PrintMonitor::Instance().InitializePrinters(chain, startMode, changeEvent);
    });
}

KYPM_EXPORT int32_t DestroyPrinterInfoList(CLIENT_PRINTER_INFO** head) {
    return kypm::PrinterChain::Destroy(head);
}

KYPM_EXPORT int32_t UpdateInstalledPrinters(CLIENT_PRINTER_INFO** chain) {
    return Guarded(kypm::kListNoMemory, kypm::kListSpoolerUnreadable,
                   [&] { return PrintMonitor::Instance().UpdateInstalledPrinters(chain); });
}

static_assert(kSame<kypm::IsClientPrintingSupportedFn, decltype(&isClientPrintingSupported)>);
static_assert(kSame<kypm::EnumAvailableDriversFn, decltype(&EnumAvailableDriversW)>);
static_assert(kSame<kypm::GetPrinterListFn, decltype(&GetPrinterList)>);
static_assert(kSame<kypm::DestroyDriverListFn, decltype(&DestroyDriverListW)>);
static_assert(kSame<kypm::EnumeratePortsFn, decltype(&EnumeratePorts)>);
static_assert(kSame<kypm::DeletePrinterFn, decltype(&PRINT_DeletePrinter)>);
static_assert(kSame<kypm::InstallPrinterFn, decltype(&InstallPrinter)>);
static_assert(kSame<kypm::DisplayPrinterPreferencesFn, decltype(&DisplayPrinterPreferences)>);
static_assert(kSame<kypm::PrintTestPageFn, decltype(&PrintTestPage)>);
static_assert(kSame<kypm::InitializePrintersFn, decltype(&InitializePrinters)>);
static_assert(kSame<kypm::DestroyPrinterInfoListFn, decltype(&DestroyPrinterInfoList)>);
static_assert(kSame<kypm::UpdateInstalledPrintersFn, decltype(&UpdateInstalledPrinters)>);
