#include "printmonitor/PrinterChain.h"

#include "printmonitor/NodeBlock.h"

namespace kypm {

PrinterChain::~PrinterChain() {
    CLIENT_PRINTER_INFO* head = Detach();
    Destroy(&head);
}

bool PrinterChain::Append(const PrinterFacts& facts) {
    const size_t chars = facts.name.size() + facts.port.size() + facts.driver.size() +
                         facts.manufacturer.size() + 4;
    void* block = NodeBlock::Allocate(NodeBlock::Kind::Printer, sizeof(CLIENT_PRINTER_INFO), chars);
    if (!block) return false;
    auto* record = static_cast<CLIENT_PRINTER_INFO*>(block);
    wchar_t* cursor = NodeBlock::TextArea(record, sizeof(CLIENT_PRINTER_INFO));
    record->pszPrinterName = NodeBlock::CopyText(cursor, facts.name);
    record->pszPortName = NodeBlock::CopyText(cursor, facts.port);
    record->pszDriverName = NodeBlock::CopyText(cursor, facts.driver);
    record->pszManufacturer = NodeBlock::CopyText(cursor, facts.manufacturer);
    // Installed printers always run on an installed driver: no information file.
    record->pszInfPath = nullptr;
    record->bDefault = facts.isDefault ? 1 : 0;
    record->bFixed = facts.isFixed ? 1 : 0;
    if (m_tail)
        m_tail->pNext = record;
    else
        m_head = record;
    m_tail = record;
    return true;
}

CLIENT_PRINTER_INFO* PrinterChain::Detach() noexcept {
    m_tail = nullptr;
    CLIENT_PRINTER_INFO* head = m_head;
    m_head = nullptr;
    return head;
}

int32_t PrinterChain::Destroy(CLIENT_PRINTER_INFO** head) noexcept {
    if (!head) return kBadArgument;
    while (*head) {
        CLIENT_PRINTER_INFO* record = *head;
        if (!NodeBlock::IsOurs(record, NodeBlock::Kind::Printer)) return kForeignNode;
        *head = record->pNext;
        NodeBlock::Free(record);
    }
    return kDone;
}

}  // namespace kypm
