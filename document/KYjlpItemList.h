// The document's list of items (the typed pointer list of LV_TEXTLINE*): a
// doubly linked list whose node is the POSITION that list rows keep in their
// lParam. The list owns its records: destroying it frees them.
#pragma once
#include <cstddef>

#include "document/LV_TEXTLINE.h"

struct KYjlpItemNode;
using POSITION = KYjlpItemNode*;

class KYjlpItemList {
public:
    KYjlpItemList() = default;
    ~KYjlpItemList();
    KYjlpItemList(const KYjlpItemList&) = delete;
    KYjlpItemList& operator=(const KYjlpItemList&) = delete;

    POSITION AddTail(LV_TEXTLINE* item);
    POSITION AddHead(LV_TEXTLINE* item);
    POSITION GetHeadPosition() const noexcept { return m_head; }
    POSITION GetTailPosition() const noexcept { return m_tail; }
    // The record at pos; pos moves to the next (or previous) node, null at the end.
    LV_TEXTLINE*& GetNext(POSITION& pos) const noexcept;
    LV_TEXTLINE*& GetPrev(POSITION& pos) const noexcept;
    LV_TEXTLINE*& GetAt(POSITION pos) const noexcept;
    // Unlinks the node; the record stays with the caller.
    void RemoveAt(POSITION pos) noexcept;
    // Unlinks every node; the records stay with the caller.
    void RemoveAll() noexcept;
    size_t GetCount() const noexcept { return m_count; }
    bool IsEmpty() const noexcept { return m_count == 0; }
    // Frees every record, then empties the list.
    void FreeAll() noexcept;

private:
    POSITION m_head = nullptr;
    POSITION m_tail = nullptr;
    size_t m_count = 0;
};
