// A chain of DRIVER_LIST_ENTRY being built for a holder, and the release of
// such chains when they come back.
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "printmonitor/PrintMonitorRecords.h"

namespace kypm {

class TextList {
public:
    TextList() = default;
    ~TextList();
    TextList(const TextList&) = delete;
    TextList& operator=(const TextList&) = delete;

    // Adds a node at the end; false when there is no memory.
    bool Append(std::wstring_view text);
    // Builds the whole chain; kNoMemory when a node could not be made.
    int32_t AppendAll(const std::vector<std::wstring>& texts);
    // Hands the chain over: the holder gives it back through Destroy.
    DRIVER_LIST_ENTRY* Detach() noexcept;

    // Releases a chain node by node, wherever its nodes came from among the
    // library's lists. A node the library did not make stops the walk: the head
    // is left on it and kForeignNode is returned.
    static int32_t Destroy(DRIVER_LIST_ENTRY** head) noexcept;

private:
    DRIVER_LIST_ENTRY* m_head = nullptr;
    DRIVER_LIST_ENTRY* m_tail = nullptr;
};

}  // namespace kypm
