// Wildcard matching of narrow text: "*" stands for any run of characters (also
// none), "?" for exactly one; every other character must match exactly, case
// included. Pure C++, no system calls, so that it is built natively and fuzzed.
#pragma once

namespace ky {

// True when the whole text matches the whole pattern. Null stands for "".
bool WildcardMatch(const char* text, const char* pattern) noexcept;

}  // namespace ky
