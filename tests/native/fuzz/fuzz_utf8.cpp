// libFuzzer target for the UTF-8 codec: the two decoding passes agree, decoded
// text encodes back within the input's size and decodes to the same characters,
// and a buffer one byte short is refused without a write past its end.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "foundation/Utf8Codec.h"

namespace {

void Require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "utf8 codec invariant broken: %s\n", what);
    std::abort();
}

// Encodes into a heap buffer of exactly size bytes, so that any overrun is caught.
int64_t EncodeExact(const std::vector<char16_t>& text, size_t size, std::vector<unsigned char>* out) {
    std::unique_ptr<unsigned char[]> buffer(new unsigned char[size == 0 ? 1 : size]);
    const int64_t written = ky::utf8::EncodeText(text.data(), text.size(), buffer.get(), size);
    if (written > 0 && out != nullptr) out->assign(buffer.get(), buffer.get() + written);
    return written;
}

std::vector<char16_t> DecodeAll(const unsigned char* bytes, size_t size) {
    const int64_t count = ky::utf8::CountChars(bytes, size);
    if (count < 0) return {};
    std::vector<char16_t> text(static_cast<size_t>(count));
    const size_t stored = ky::utf8::DecodeInto(bytes, size, text.data());
    Require(stored == text.size(), "second pass stores the counted characters");
    return text;
}

// Any sequence of 16-bit units, surrogates included, survives encode and decode.
void CheckUnits(const uint8_t* data, size_t size) {
    std::vector<char16_t> units(size / 2);
    for (size_t i = 0; i < units.size(); ++i) {
        units[i] = static_cast<char16_t>(data[2 * i] | (data[2 * i + 1] << 8));
    }
    std::vector<unsigned char> encoded;
    const int64_t written = EncodeExact(units, units.size() * 3, &encoded);
    Require(written >= static_cast<int64_t>(units.size()), "units encode into three bytes each");
    const int64_t count = ky::utf8::CountChars(encoded.data(), encoded.size());
    Require(count == static_cast<int64_t>(units.size()), "encoded units count back");
    Require(DecodeAll(encoded.data(), encoded.size()) == units, "units decode back");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CheckUnits(data, size);
    const int64_t count = ky::utf8::CountChars(data, size);
    if (count < 0) return 0;
    Require(static_cast<size_t>(count) <= size, "no more characters than bytes");
    const std::vector<char16_t> text = DecodeAll(data, size);
    std::vector<unsigned char> encoded;
    const int64_t written = EncodeExact(text, size, &encoded);
    Require(written >= 0 && static_cast<size_t>(written) <= size, "re-encoding fits the input's size");
    Require(DecodeAll(encoded.data(), encoded.size()) == text, "re-encoded text decodes the same");
    if (written > 0) {
        Require(EncodeExact(text, static_cast<size_t>(written) - 1, nullptr) == ky::utf8::kInvalid,
                "a buffer one byte short is refused");
    }
    return 0;
}
