// The test page: one real page drawn through GDI on the printer's own device
// context, naming the printer, its driver and its port and the time of
// printing, inside a frame, so that the user sees the whole path work. The
// document is called "Test Page - <printer>" in the printer's queue.
#pragma once
#include <cstdint>
#include <string>

namespace kypm {

class TestPage {
public:
    // kDone, kNoSuchPrinter, or kRefused with the reason in the last error.
    static int32_t Print(const std::wstring& printerName);
    static std::wstring DocumentName(const std::wstring& printerName);
};

}  // namespace kypm
