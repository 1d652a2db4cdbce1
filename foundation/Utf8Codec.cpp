#include "foundation/Utf8Codec.h"

namespace ky::utf8 {

namespace {
constexpr bool IsContinuation(unsigned char byte) noexcept { return (byte & 0xC0u) == 0x80u; }
}  // namespace

int DecodeChar(const unsigned char* bytes, size_t left, char16_t* value) noexcept {
    if (bytes == nullptr || left == 0) return kInvalid;
    const unsigned char lead = bytes[0];
    if (lead < 0x80u) {
        *value = lead;
        return 1;
    }
    if ((lead & 0xE0u) == 0xC0u) {
        if (left < 2 || !IsContinuation(bytes[1])) return kInvalid;
        *value = static_cast<char16_t>(((lead & 0x1Fu) << 6) | (bytes[1] & 0x3Fu));
        return 2;
    }
    if ((lead & 0xF0u) == 0xE0u) {
        // The third byte's top bits stay unchecked on purpose (see the header).
        if (left < 3 || !IsContinuation(bytes[1])) return kInvalid;
        *value = static_cast<char16_t>(((lead & 0x0Fu) << 12) | ((bytes[1] & 0x3Fu) << 6) |
                                       (bytes[2] & 0x3Fu));
        return 3;
    }
    return kInvalid;
}

int EncodeChar(char16_t value, unsigned char* out, size_t room) noexcept {
    const unsigned v = value;
    if (v < 0x80u) {
        if (room < 1 || out == nullptr) return kInvalid;
        out[0] = static_cast<unsigned char>(v);
        return 1;
    }
    if (v < 0x800u) {
        if (room < 2 || out == nullptr) return kInvalid;
        out[0] = static_cast<unsigned char>(0xC0u | (v >> 6));
        out[1] = static_cast<unsigned char>(0x80u | (v & 0x3Fu));
        return 2;
    }
    if (room < 3 || out == nullptr) return kInvalid;
    out[0] = static_cast<unsigned char>(0xE0u | (v >> 12));
    out[1] = static_cast<unsigned char>(0x80u | ((v >> 6) & 0x3Fu));
    out[2] = static_cast<unsigned char>(0x80u | (v & 0x3Fu));
    return 3;
}

int64_t CountChars(const unsigned char* bytes, size_t size) noexcept {
    int64_t count = 0;
    size_t at = 0;
    while (at < size) {
        char16_t value = 0;
        const int used = DecodeChar(bytes + at, size - at, &value);
        if (used == kInvalid) return kInvalid;
        at += static_cast<size_t>(used);
        ++count;
    }
    return count;
}

}  // namespace ky::utf8
