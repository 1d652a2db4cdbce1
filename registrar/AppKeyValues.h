// The values of one application key of the catalogue, read in one pass: the
// registry is asked once per value that is there, instead of once per value the
// panel might want (most entries carry two or three of the six). Answers a
// query as the registry would, so that every check of the reader stays as it is.
#pragma once
#include <windows.h>

#include <cstdint>
#include <vector>

class AppKeyValues {
public:
    // Every value of the key. The counts come from the key's own information,
    // asked by the caller anyway. False (and nothing kept) when the key changed
    // under the reading; the caller then asks value by value.
    bool Read(HKEY key, DWORD values, DWORD longestName, DWORD largestData);

    // As RegQueryValueExW: ERROR_FILE_NOT_FOUND for a value that is not there,
    // ERROR_MORE_DATA (and the size needed) when it does not fit.
    LONG Query(const wchar_t* name, void* data, DWORD& size) const;

    bool Empty() const noexcept { return m_blob.empty(); }
    size_t Bytes() const noexcept { return m_blob.capacity(); }

private:
    // Each value: its header, its name (without terminator) and its data, packed
    // one after another so that thousands of keys cost one block each.
    struct Header {
        uint32_t nameChars;
        uint32_t type;
        uint32_t dataBytes;
    };
    void Append(const wchar_t* name, DWORD nameChars, DWORD type, const BYTE* data, DWORD dataBytes);

    std::vector<BYTE> m_blob;
};
