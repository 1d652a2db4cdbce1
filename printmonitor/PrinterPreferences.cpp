#include "printmonitor/PrinterPreferences.h"

#include <winspool.h>

#include <vector>

#include "foundation/UniqueHandle.h"
#include "printmonitor/PrintMonitorRecords.h"

namespace kypm {

namespace {

// This user's settings of the printer, else the printer's own, else none.
std::vector<BYTE> CurrentSettings(HANDLE printer) {
    for (DWORD level : {9u, 8u}) {
        DWORD needed = 0;
        GetPrinterW(printer, level, nullptr, 0, &needed);
        if (needed == 0) continue;
        std::vector<BYTE> buffer(needed);
        if (!GetPrinterW(printer, level, buffer.data(), needed, &needed)) continue;
        const DEVMODEW* mode = reinterpret_cast<PRINTER_INFO_9W*>(buffer.data())->pDevMode;
        if (mode) {
            const BYTE* bytes = reinterpret_cast<const BYTE*>(mode);
            return std::vector<BYTE>(bytes, bytes + mode->dmSize + mode->dmDriverExtra);
        }
    }
    return {};
}

bool StoreSettings(HANDLE printer, DEVMODEW* mode) {
    PRINTER_INFO_9W mine{mode};
    if (SetPrinterW(printer, 9, reinterpret_cast<BYTE*>(&mine), 0)) return true;
    // A spooler without per-user settings keeps them for the printer.
    PRINTER_INFO_8W global{mode};
    return SetPrinterW(printer, 8, reinterpret_cast<BYTE*>(&global), 0) != FALSE;
}

}  // namespace

int32_t PrinterPreferences::Show(const std::wstring& printerName, HWND owner) {
    std::wstring name = printerName;
    ky::UniquePrinter printer;
    // Administrators may keep the printer's settings too; everybody may keep their own.
    PRINTER_DEFAULTSW all{nullptr, nullptr, PRINTER_ALL_ACCESS};
    PRINTER_DEFAULTSW use{nullptr, nullptr, PRINTER_ACCESS_USE};
    if (!OpenPrinterW(name.data(), printer.put(), &all) && !OpenPrinterW(name.data(), printer.put(), &use))
        return kNoSuchPrinter;
    const LONG size = DocumentPropertiesW(owner, printer.get(), name.data(), nullptr, nullptr, 0);
    if (size <= 0) return PrinterProperties(owner, printer.get()) ? kDone : kRefused;
    std::vector<BYTE> current = CurrentSettings(printer.get());
    std::vector<BYTE> chosen(static_cast<size_t>(size));
    DEVMODEW* in = current.empty() ? nullptr : reinterpret_cast<DEVMODEW*>(current.data());
    DWORD mode = DM_IN_PROMPT | DM_OUT_BUFFER | (in ? DM_IN_BUFFER : 0);
    const LONG answer = DocumentPropertiesW(owner, printer.get(), name.data(),
                                            reinterpret_cast<DEVMODEW*>(chosen.data()), in, mode);
    if (answer == IDCANCEL) return kDone;
    if (answer != IDOK) return kRefused;
    return StoreSettings(printer.get(), reinterpret_cast<DEVMODEW*>(chosen.data())) ? kDone : kRefused;
}

}  // namespace kypm
