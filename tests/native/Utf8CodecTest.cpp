// The UTF-8 codec of the foundation library, built natively under ASan and UBSan.
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "foundation/Utf8Codec.h"

namespace {

using ky::utf8::kInvalid;

struct Decoded {
    int used = 0;
    char16_t value = 0;
};

// Decodes one character from a heap copy of exactly the given bytes, so that a
// read past them is caught by the sanitizer.
Decoded DecodeOne(std::initializer_list<unsigned char> bytes) {
    std::unique_ptr<unsigned char[]> copy(new unsigned char[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), copy.get());
    Decoded result;
    result.used = ky::utf8::DecodeChar(copy.get(), bytes.size(), &result.value);
    return result;
}

std::vector<unsigned char> Encode(const std::u16string& text, size_t size) {
    std::vector<unsigned char> out(size);
    const int64_t written = ky::utf8::EncodeText(text.data(), text.size(), out.data(), out.size());
    if (written < 0) return {};
    out.resize(static_cast<size_t>(written));
    return out;
}

int64_t Count(const std::string& bytes) {
    return ky::utf8::CountChars(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

TEST(Utf8Decode, OneTwoAndThreeByteForms) {
    EXPECT_EQ(1, DecodeOne({0x41}).used);
    EXPECT_EQ(u'A', DecodeOne({0x41}).value);
    EXPECT_EQ(2, DecodeOne({0xC3, 0xA9}).used);
    EXPECT_EQ(u'\u00E9', DecodeOne({0xC3, 0xA9}).value);
    EXPECT_EQ(3, DecodeOne({0xE2, 0x82, 0xAC}).used);
    EXPECT_EQ(u'\u20AC', DecodeOne({0xE2, 0x82, 0xAC}).value);
    EXPECT_EQ(u'\uFFFF', DecodeOne({0xEF, 0xBF, 0xBF}).value);
}

TEST(Utf8Decode, ThirdByteTopBitsAreNotChecked) {
    const Decoded d = DecodeOne({0xE2, 0x82, 0x41});
    EXPECT_EQ(3, d.used);
    EXPECT_EQ(char16_t(0x2081), d.value);  // 2 << 12 | 2 << 6 | (0x41 & 0x3F)
    EXPECT_EQ(1, Count("\xE2\x82\x41"));
}

TEST(Utf8Decode, OverlongFormsAreReadAsTheyStand) {
    EXPECT_EQ(2, DecodeOne({0xC0, 0x80}).used);
    EXPECT_EQ(char16_t(0), DecodeOne({0xC0, 0x80}).value);
    EXPECT_EQ(char16_t(0x2F), DecodeOne({0xE0, 0x80, 0xAF}).value);
}

TEST(Utf8Decode, RefusesBadSequences) {
    EXPECT_EQ(kInvalid, DecodeOne({0xF0, 0x9F, 0x98, 0x80}).used);  // four-byte form
    EXPECT_EQ(kInvalid, DecodeOne({0x80}).used);                    // lone continuation
    EXPECT_EQ(kInvalid, DecodeOne({0xFF}).used);
    EXPECT_EQ(kInvalid, DecodeOne({0xC3, 0x41}).used);              // second byte not 10xxxxxx
    EXPECT_EQ(kInvalid, DecodeOne({0xC3}).used);                    // cut short
    EXPECT_EQ(kInvalid, DecodeOne({0xE2, 0x41, 0xAC}).used);
    EXPECT_EQ(kInvalid, DecodeOne({0xE2, 0x82}).used);              // needs three bytes
    EXPECT_EQ(kInvalid, ky::utf8::DecodeChar(nullptr, 0, nullptr));
}

TEST(Utf8Decode, TwoPassesAgree) {
    const std::string text = "a\xC3\xA9\xE2\x82\xAC" "b";
    ASSERT_EQ(4, Count(text));
    std::vector<char16_t> out(4);
    EXPECT_EQ(4u, ky::utf8::DecodeInto(reinterpret_cast<const unsigned char*>(text.data()), text.size(), out.data()));
    EXPECT_EQ((std::vector<char16_t>{u'a', u'\u00E9', u'\u20AC', u'b'}), out);
}

TEST(Utf8Decode, OneBadSequenceFailsTheWholeCount) {
    EXPECT_EQ(0, Count(""));
    EXPECT_EQ(kInvalid, Count("abc\xF0\x9F\x98\x80"));
    EXPECT_EQ(kInvalid, Count("abc\xC3"));
    EXPECT_EQ(kInvalid, Count("\x80" "abc"));
}

TEST(Utf8Encode, LengthsByRange) {
    EXPECT_EQ((std::vector<unsigned char>{0x7F}), Encode(u"\x7F", 3));
    EXPECT_EQ((std::vector<unsigned char>{0xC2, 0x80}), Encode(u"\x80", 3));
    EXPECT_EQ((std::vector<unsigned char>{0xDF, 0xBF}), Encode(u"\u07FF", 3));
    EXPECT_EQ((std::vector<unsigned char>{0xE0, 0xA0, 0x80}), Encode(u"\u0800", 3));
    EXPECT_EQ((std::vector<unsigned char>{0xEF, 0xBF, 0xBF}), Encode(u"\uFFFF", 3));
}

TEST(Utf8Encode, SurrogatesAreWrittenAsTheyStand) {
    const std::u16string pair = u"\U0001F600";  // D83D DE00
    ASSERT_EQ(2u, pair.size());
    EXPECT_EQ((std::vector<unsigned char>{0xED, 0xA0, 0xBD, 0xED, 0xB8, 0x80}), Encode(pair, 6));
}

TEST(Utf8Encode, BufferTooSmallIsInvalid) {
    const std::u16string text = u"a\u20AC";  // 1 + 3 bytes
    std::array<unsigned char, 8> out{};
    out.fill(0xEE);
    EXPECT_EQ(kInvalid, ky::utf8::EncodeText(text.data(), text.size(), out.data(), 3));
    EXPECT_EQ(0xEE, out[3]);  // nothing written past the given size
    EXPECT_EQ(4, ky::utf8::EncodeText(text.data(), text.size(), out.data(), 4));
    EXPECT_EQ(kInvalid, ky::utf8::EncodeChar(u'\u00E9', out.data(), 1));
    EXPECT_EQ(kInvalid, ky::utf8::EncodeText(text.data(), text.size(), nullptr, 0));
    EXPECT_EQ(0, ky::utf8::EncodeText(text.data(), 0, nullptr, 0));
}

}  // namespace
