#include "printmonitor/NodeBlock.h"

#include <cstring>
#include <limits>

namespace kypm {

void* NodeBlock::Allocate(Kind kind, size_t nodeSize, size_t textChars) {
    constexpr size_t kMax = std::numeric_limits<size_t>::max() / 4;
    if (nodeSize > kMax || textChars > kMax / sizeof(wchar_t)) return nullptr;
    const size_t total = sizeof(Header) + nodeSize + textChars * sizeof(wchar_t);
    void* raw = HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, total);
    if (!raw) return nullptr;
    auto* header = static_cast<Header*>(raw);
    header->kind = kind;
    header->size = total;
    return header + 1;
}

wchar_t* NodeBlock::CopyText(wchar_t*& cursor, std::wstring_view text) {
    wchar_t* start = cursor;
    if (!text.empty()) std::memcpy(start, text.data(), text.size() * sizeof(wchar_t));
    start[text.size()] = L'\0';
    cursor += text.size() + 1;
    return start;
}

wchar_t* NodeBlock::TextArea(void* node, size_t nodeSize) {
    return reinterpret_cast<wchar_t*>(static_cast<char*>(node) + nodeSize);
}

bool NodeBlock::IsOurs(const void* node, Kind kind) noexcept {
    if (!node) return false;
    const auto* header = static_cast<const Header*>(node) - 1;
    // A node of another allocator may sit anywhere: the mark is read only from
    // memory that the process heap says is one of its blocks.
    const void* block = header;
    if (!HeapValidate(GetProcessHeap(), 0, block)) return false;
    return header->kind == kind;
}

void NodeBlock::Free(void* node) noexcept {
    if (!node) return;
    auto* header = static_cast<Header*>(node) - 1;
    header->kind = Kind{};
    HeapFree(GetProcessHeap(), 0, header);
}

}  // namespace kypm
