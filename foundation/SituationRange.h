// The program's own situation numbers: the failures whose texts it carries.
// A number outside this range is not a failure text of the program.
#pragma once

namespace ky {

inline constexpr int kFirstSituation = 27001;
inline constexpr int kLastSituation = 27776;

constexpr bool IsProgramSituation(int number) noexcept {
    return number >= kFirstSituation && number <= kLastSituation;
}

// The number as "Internal Error" codes show it: three digits past 27000 for the
// program's own numbers, the number itself for any other.
constexpr int CodeField(int number) noexcept {
    return IsProgramSituation(number) ? number - (kFirstSituation - 1) : number;
}

}  // namespace ky
