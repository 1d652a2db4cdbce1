#include "registrar/AppKeyValues.h"

#include <cstring>
#include <cwchar>

bool AppKeyValues::Read(HKEY key, DWORD values, DWORD longestName, DWORD largestData) {
    m_blob.clear();
    std::vector<wchar_t> name(static_cast<size_t>(longestName) + 1);
    std::vector<BYTE> data(largestData ? largestData : 1);
    for (DWORD index = 0; index < values; ++index) {
        DWORD nameChars = longestName + 1;
        DWORD dataBytes = static_cast<DWORD>(data.size());
        DWORD type = 0;
        // A value added, grown or removed since the key was described: the
        // reading is not whole, and a value-by-value reading will be.
        if (RegEnumValueW(key, index, name.data(), &nameChars, nullptr, &type, data.data(), &dataBytes) !=
            ERROR_SUCCESS) {
            m_blob.clear();
            return false;
        }
        Append(name.data(), nameChars, type, data.data(), dataBytes);
    }
    m_blob.shrink_to_fit();
    return true;
}

void AppKeyValues::Append(const wchar_t* name, DWORD nameChars, DWORD type, const BYTE* data, DWORD dataBytes) {
    const Header header{nameChars, type, dataBytes};
    const size_t at = m_blob.size();
    m_blob.resize(at + sizeof header + nameChars * sizeof(wchar_t) + dataBytes);
    BYTE* out = m_blob.data() + at;
    std::memcpy(out, &header, sizeof header);
    std::memcpy(out + sizeof header, name, nameChars * sizeof(wchar_t));
    std::memcpy(out + sizeof header + nameChars * sizeof(wchar_t), data, dataBytes);
}

LONG AppKeyValues::Query(const wchar_t* name, void* data, DWORD& size) const {
    const size_t wanted = std::wcslen(name);
    for (size_t at = 0; at + sizeof(Header) <= m_blob.size();) {
        Header header;
        std::memcpy(&header, m_blob.data() + at, sizeof header);
        const BYTE* text = m_blob.data() + at + sizeof header;
        const BYTE* bytes = text + header.nameChars * sizeof(wchar_t);
        at += sizeof header + header.nameChars * sizeof(wchar_t) + header.dataBytes;
        if (header.nameChars != wanted) continue;
        std::vector<wchar_t> stored(header.nameChars + 1, L'\0');
        std::memcpy(stored.data(), text, header.nameChars * sizeof(wchar_t));
        // Value names are compared as the registry compares them, without case.
        if (CompareStringOrdinal(stored.data(), -1, name, -1, TRUE) != CSTR_EQUAL) continue;
        const DWORD capacity = size;
        size = header.dataBytes;
        if (header.dataBytes > capacity) return ERROR_MORE_DATA;
        if (header.dataBytes) std::memcpy(data, bytes, header.dataBytes);
        return ERROR_SUCCESS;
    }
    return ERROR_FILE_NOT_FOUND;
}
