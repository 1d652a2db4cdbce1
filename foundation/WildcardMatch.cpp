#include "foundation/WildcardMatch.h"

namespace ky {

namespace {

enum class Outcome { kNoMatch, kMatch, kAbort };

// Recursive at each "*": the star takes the shortest run first, then one more
// character at a time. kAbort says the text ran out before the pattern did; no
// longer run of an outer star can do better then, so every outer star stops
// trying. This keeps patterns such as "*a*a*a*b" linear in the text instead of
// exponential, with the same results as plain backtracking.
Outcome MatchFrom(const char* text, const char* pattern) noexcept {
    for (; *pattern != '\0'; ++text, ++pattern) {
        if (*pattern == '*') {
            while (*pattern == '*') ++pattern;
            if (*pattern == '\0') return Outcome::kMatch;
            for (; *text != '\0'; ++text) {
                const Outcome inner = MatchFrom(text, pattern);
                if (inner != Outcome::kNoMatch) return inner;
            }
            return Outcome::kAbort;
        }
        if (*text == '\0') return Outcome::kAbort;
        if (*pattern != '?' && *pattern != *text) return Outcome::kNoMatch;
    }
    return *text == '\0' ? Outcome::kMatch : Outcome::kNoMatch;
}

}  // namespace

bool WildcardMatch(const char* text, const char* pattern) noexcept {
    return MatchFrom(text == nullptr ? "" : text, pattern == nullptr ? "" : pattern) ==
           Outcome::kMatch;
}

}  // namespace ky
