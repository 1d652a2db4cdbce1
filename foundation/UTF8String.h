// A UTL_String that reads and writes UTF-8 (Basic Multilingual Plane only).
// Decoded text is always held as the wide master.
#pragma once
#include <cstddef>
#include <cstdint>

#include "foundation/UTL_String.h"

class UTF8String : public UTL_String {
public:
    UTF8String() noexcept = default;
    // Copies the text as the wide master; null gives an empty wide string.
    UTF8String(const wchar_t* text);
    // Decodes terminated or sized UTF-8 bytes; any bad sequence (four-byte forms
    // included) is UTL_Exception 11. Null gives an empty wide string.
    explicit UTF8String(const char* utf8);
    UTF8String(const char* utf8, size_t size);
    UTF8String(const UTF8String& other) = default;
    UTF8String& operator=(const UTF8String& other) = default;
    ~UTF8String() override;

    // Writes the text as UTF-8 into buffer (size bytes) and returns the bytes
    // written, or -1 as soon as a character does not fit. A terminating zero
    // follows when there is room for it; it is not counted.
    int64_t ToUtf8(char* buffer, size_t size) const;

private:
    void Decode(const char* utf8, size_t size);
};
