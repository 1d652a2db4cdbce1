// UTF-8 for the Basic Multilingual Plane only: one 16-bit code unit is one
// character, written in 1 to 3 bytes. Pure C++, no system calls, so that the same
// code is built natively and fuzzed under the sanitizers.
#pragma once
#include <cstddef>
#include <cstdint>

namespace ky::utf8 {

inline constexpr int kInvalid = -1;

// Reads one character from bytes (left bytes available). Returns the bytes used,
// 1 to 3, or kInvalid. The third byte of a three-byte form is taken without
// checking its top bits, and overlong forms are accepted: text written by older
// tools of the suite is read as it always was.
int DecodeChar(const unsigned char* bytes, size_t left, char16_t* value) noexcept;

// Writes one character into out (room bytes available): 1 byte below 0x80, 2 below
// 0x800, else 3; surrogates are written as they stand. Returns the bytes written or
// kInvalid when they do not fit.
int EncodeChar(char16_t value, unsigned char* out, size_t room) noexcept;

// First pass of a decoding: the number of characters, or kInvalid on any bad sequence.
int64_t CountChars(const unsigned char* bytes, size_t size) noexcept;

// Second pass: stores the characters of bytes, already counted by CountChars, into
// out, which holds at least that count. Returns the characters stored.
template <typename Char>
size_t DecodeInto(const unsigned char* bytes, size_t size, Char* out) noexcept {
    size_t stored = 0;
    size_t at = 0;
    while (at < size) {
        char16_t value = 0;
        const int used = DecodeChar(bytes + at, size - at, &value);
        if (used == kInvalid) break;
        out[stored++] = static_cast<Char>(value);
        at += static_cast<size_t>(used);
    }
    return stored;
}

// Writes count characters of text into out (size bytes). Returns the bytes written
// or kInvalid as soon as one character does not fit. Only the low 16 bits of each
// character are taken.
template <typename Char>
int64_t EncodeText(const Char* text, size_t count, unsigned char* out, size_t size) noexcept {
    size_t written = 0;
    for (size_t i = 0; i < count; ++i) {
        const auto unit = static_cast<char16_t>(static_cast<uint32_t>(text[i]) & 0xFFFFu);
        const int used = EncodeChar(unit, out == nullptr ? nullptr : out + written,
                                    out == nullptr ? 0 : size - written);
        if (used == kInvalid) return kInvalid;
        written += static_cast<size_t>(used);
    }
    return static_cast<int64_t>(written);
}

}  // namespace ky::utf8
