// A chain of CLIENT_PRINTER_INFO records being built for a holder, and the
// release of such chains when they come back.
#pragma once
#include <vector>

#include "printmonitor/PrintMonitorRecords.h"
#include "printmonitor/PrinterFacts.h"

namespace kypm {

class PrinterChain {
public:
    PrinterChain() = default;
    ~PrinterChain();
    PrinterChain(const PrinterChain&) = delete;
    PrinterChain& operator=(const PrinterChain&) = delete;

    // Adds one record, its texts in the same block; false when there is no memory.
    bool Append(const PrinterFacts& facts);
    CLIENT_PRINTER_INFO* Detach() noexcept;

    // Releases a chain along pNext. A record the library did not make stops
    // the walk: the head is left on it and kForeignNode is returned.
    static int32_t Destroy(CLIENT_PRINTER_INFO** head) noexcept;

private:
    CLIENT_PRINTER_INFO* m_head = nullptr;
    CLIENT_PRINTER_INFO* m_tail = nullptr;
};

}  // namespace kypm
