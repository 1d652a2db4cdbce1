// Names of files, programs and printers compare without regard to case, as the
// C runtime's _wcsicmp compares them. Maps keyed by such names key on this fold.
#pragma once
#include <cwctype>
#include <string>

namespace ky {

inline std::wstring FoldCase(const wchar_t* text) {
    std::wstring folded = text ? text : L"";
    for (wchar_t& c : folded) c = static_cast<wchar_t>(std::towlower(c));
    return folded;
}

}  // namespace ky
