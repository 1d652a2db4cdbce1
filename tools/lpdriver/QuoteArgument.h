// One word of a command line, quoted so that the C runtime of the started
// program splits it back into the same word (backslashes double before quotes).
// Shared by the driver and by the tests that start it.
#pragma once
#include <string>

namespace lpdriver {

inline std::wstring QuoteArgument(const std::wstring& word) {
    if (!word.empty() && word.find_first_of(L" \t\n\v\"") == std::wstring::npos) return word;
    std::wstring quoted = L"\"";
    size_t backslashes = 0;
    for (const wchar_t c : word) {
        if (c == L'\\') {
            ++backslashes;
            continue;
        }
        quoted.append(c == L'"' ? backslashes * 2 + 1 : backslashes, L'\\');
        backslashes = 0;
        quoted += c;
    }
    quoted.append(backslashes * 2, L'\\');
    return quoted + L"\"";
}

}  // namespace lpdriver
