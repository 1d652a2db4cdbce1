// libFuzzer target for the wildcard matcher: its answer equals that of a plain
// dynamic-programming matcher, every text matches itself and "*", and no input
// makes it run away (the outer stars give up once the text runs out).
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "foundation/WildcardMatch.h"

namespace {

constexpr size_t kLongest = 512;

void Require(bool condition, const char* what, const std::string& text, const std::string& pattern) {
    if (condition) return;
    std::fprintf(stderr, "wildcard invariant broken: %s\ntext: %s\npattern: %s\n", what, text.c_str(),
                 pattern.c_str());
    std::abort();
}

// matched[i][j]: the first i characters of text match the first j of pattern.
bool ReferenceMatch(const std::string& text, const std::string& pattern) {
    std::vector<std::vector<char>> matched(text.size() + 1, std::vector<char>(pattern.size() + 1, 0));
    matched[0][0] = 1;
    for (size_t j = 1; j <= pattern.size(); ++j) {
        matched[0][j] = pattern[j - 1] == '*' && matched[0][j - 1];
    }
    for (size_t i = 1; i <= text.size(); ++i) {
        for (size_t j = 1; j <= pattern.size(); ++j) {
            const char p = pattern[j - 1];
            if (p == '*') {
                matched[i][j] = matched[i][j - 1] || matched[i - 1][j];
            } else {
                matched[i][j] = (p == '?' || p == text[i - 1]) && matched[i - 1][j - 1];
            }
        }
    }
    return matched[text.size()][pattern.size()] != 0;
}

}  // namespace

// The input is the text, a zero byte, then the pattern.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const size_t split = input.find('\0');
    std::string text = input.substr(0, split);
    std::string pattern = split == std::string::npos ? std::string() : input.substr(split + 1);
    pattern = pattern.substr(0, pattern.find('\0'));
    if (text.size() > kLongest || pattern.size() > kLongest) return 0;

    const bool answer = ky::WildcardMatch(text.c_str(), pattern.c_str());
    Require(answer == ReferenceMatch(text, pattern), "agrees with the reference", text, pattern);
    Require(ky::WildcardMatch(text.c_str(), text.c_str()), "a text matches itself", text, text);
    Require(ky::WildcardMatch(text.c_str(), "*"), "a text matches *", text, "*");
    Require(ky::WildcardMatch(text.c_str(), (pattern + "*").c_str()) || !answer,
            "a trailing star keeps a match", text, pattern);
    return 0;
}
