// The memory of every node and record that the library hands out: one block
// from the process heap per node, holding the node and its texts, behind a
// mark that says which kind of node it is. A holder may re-link nodes freely;
// each block goes back by itself, and a node that the library did not make is
// recognised and refused instead of being freed.
#pragma once
#include <windows.h>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kypm {

class NodeBlock {
public:
    enum class Kind : uint64_t { Text = 0x4B59504D54455854ull, Printer = 0x4B59504D50525452ull };

    // A zeroed block with room for the node and the given texts (each gets its
    // terminating NUL); null when the heap has no room.
    static void* Allocate(Kind kind, size_t nodeSize, size_t textChars);
    // Copies text into the block's text area at the cursor and advances it.
    static wchar_t* CopyText(wchar_t*& cursor, std::wstring_view text);
    // The first character after the node, where its texts go.
    static wchar_t* TextArea(void* node, size_t nodeSize);
    static bool IsOurs(const void* node, Kind kind) noexcept;
    static void Free(void* node) noexcept;

private:
    struct Header {
        Kind kind;
        uint64_t size;
    };
    static_assert(sizeof(Header) == 16, "keeps the node 16-byte aligned");
};

}  // namespace kypm
