#include "document/KYjlpItemList.h"

#include <cstdlib>
#include <cwchar>
#include <cwctype>
#include <initializer_list>
#include <new>

struct KYjlpItemNode {
    KYjlpItemNode* next = nullptr;
    KYjlpItemNode* prev = nullptr;
    LV_TEXTLINE* item = nullptr;
};

void FreeTextLine(LV_TEXTLINE*& item) noexcept {
    if (!item) return;
    for (wchar_t** field : {&item->path, &item->fileName, &item->name, &item->baseName, &item->type,
                            &item->parameters, &item->startDir, &item->iconPath}) {
        std::free(*field);
        *field = nullptr;
    }
    delete item;
    item = nullptr;
}

wchar_t* DuplicateText(const wchar_t* text) noexcept { return text ? _wcsdup(text) : nullptr; }

bool IsBlankText(const wchar_t* text) noexcept {
    if (!text) return true;
    for (; *text; ++text)
        if (!std::iswspace(*text)) return false;
    return true;
}

KYjlpItemList::~KYjlpItemList() { FreeAll(); }

POSITION KYjlpItemList::AddTail(LV_TEXTLINE* item) {
    POSITION node = new KYjlpItemNode{nullptr, m_tail, item};
    (m_tail ? m_tail->next : m_head) = node;
    m_tail = node;
    ++m_count;
    return node;
}

POSITION KYjlpItemList::AddHead(LV_TEXTLINE* item) {
    POSITION node = new KYjlpItemNode{m_head, nullptr, item};
    (m_head ? m_head->prev : m_tail) = node;
    m_head = node;
    ++m_count;
    return node;
}

LV_TEXTLINE*& KYjlpItemList::GetNext(POSITION& pos) const noexcept {
    POSITION node = pos;
    pos = node->next;
    return node->item;
}

LV_TEXTLINE*& KYjlpItemList::GetPrev(POSITION& pos) const noexcept {
    POSITION node = pos;
    pos = node->prev;
    return node->item;
}

LV_TEXTLINE*& KYjlpItemList::GetAt(POSITION pos) const noexcept { return pos->item; }

void KYjlpItemList::RemoveAt(POSITION pos) noexcept {
    if (!pos) return;
    (pos->prev ? pos->prev->next : m_head) = pos->next;
    (pos->next ? pos->next->prev : m_tail) = pos->prev;
    delete pos;
    --m_count;
}

void KYjlpItemList::RemoveAll() noexcept {
    while (m_head) RemoveAt(m_head);
}

void KYjlpItemList::FreeAll() noexcept {
    for (POSITION pos = m_head; pos; pos = pos->next) FreeTextLine(pos->item);
    RemoveAll();
}
