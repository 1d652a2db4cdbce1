#include "printmonitor/TextList.h"

#include "printmonitor/NodeBlock.h"

namespace kypm {

TextList::~TextList() {
    DRIVER_LIST_ENTRY* head = Detach();
    Destroy(&head);
}

bool TextList::Append(std::wstring_view text) {
    void* block = NodeBlock::Allocate(NodeBlock::Kind::Text, sizeof(DRIVER_LIST_ENTRY), text.size() + 1);
    if (!block) return false;
    auto* node = static_cast<DRIVER_LIST_ENTRY*>(block);
    wchar_t* cursor = NodeBlock::TextArea(node, sizeof(DRIVER_LIST_ENTRY));
    node->pszText = NodeBlock::CopyText(cursor, text);
    node->pNext = nullptr;
    if (m_tail)
        m_tail->pNext = node;
    else
        m_head = node;
    m_tail = node;
    return true;
}

int32_t TextList::AppendAll(const std::vector<std::wstring>& texts) {
    for (const std::wstring& text : texts)
        if (!Append(text)) return kNoMemory;
    return kDone;
}

DRIVER_LIST_ENTRY* TextList::Detach() noexcept {
    m_tail = nullptr;
    DRIVER_LIST_ENTRY* head = m_head;
    m_head = nullptr;
    return head;
}

int32_t TextList::Destroy(DRIVER_LIST_ENTRY** head) noexcept {
    if (!head) return kBadArgument;
    while (*head) {
        DRIVER_LIST_ENTRY* node = *head;
        if (!NodeBlock::IsOurs(node, NodeBlock::Kind::Text)) return kForeignNode;
        *head = node->pNext;
        NodeBlock::Free(node);
    }
    return kDone;
}

}  // namespace kypm
