// The printing preferences of one printer in the driver's own dialog, modal
// over the holder's window. What the user confirms becomes this user's
// settings of the printer; a driver without a preferences dialog shows its
// printer properties instead. Cancel is no failure.
#pragma once
#include <windows.h>
#include <cstdint>
#include <string>

namespace kypm {

class PrinterPreferences {
public:
    // kDone, kNoSuchPrinter, or kRefused with the reason in the last error.
    static int32_t Show(const std::wstring& printerName, HWND owner);
};

}  // namespace kypm
