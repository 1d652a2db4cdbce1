#include "foundation/UTF8String.h"

#include <cstring>
#include <cwchar>

#include "foundation/UTL_Exception.h"
#include "foundation/Utf8Codec.h"

UTF8String::UTF8String(const wchar_t* text) : UTL_String(text) {}

UTF8String::UTF8String(const char* utf8) {
    try {
        Decode(utf8, utf8 == nullptr ? 0 : std::strlen(utf8));
    } catch (...) {
        Clear();
        throw;
    }
}

UTF8String::UTF8String(const char* utf8, size_t size) {
    try {
        Decode(utf8, size);
    } catch (...) {
        Clear();
        throw;
    }
}

UTF8String::~UTF8String() = default;

// Two passes: count (and refuse bad input) first, then allocate once and store.
void UTF8String::Decode(const char* utf8, size_t size) {
    m_eEncoding = kWide;
    if (utf8 == nullptr) return;
    const auto* bytes = reinterpret_cast<const unsigned char*>(utf8);
    const int64_t count = ky::utf8::CountChars(bytes, size);
    if (count < 0) throw UTL_Exception(UTL_Exception::kInvalidUtf8);
    m_pwsz = AllocateWide(static_cast<uint64_t>(count) + 1);
    const size_t stored = ky::utf8::DecodeInto(bytes, size, m_pwsz);
    m_pwsz[stored] = 0;
    m_nLength = stored;
}

int64_t UTF8String::ToUtf8(char* buffer, size_t size) const {
    const wchar_t* text = Wide();
    const size_t count = m_eEncoding == kWide ? static_cast<size_t>(m_nLength) : std::wcslen(text);
    const int64_t written =
        ky::utf8::EncodeText(text, count, reinterpret_cast<unsigned char*>(buffer), buffer == nullptr ? 0 : size);
    if (written >= 0 && buffer != nullptr && static_cast<size_t>(written) < size) buffer[written] = 0;
    return written;
}
