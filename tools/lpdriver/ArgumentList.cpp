#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/DriverFailure.h"
#include <algorithm>
#include <cwctype>

namespace lpdriver {

namespace {

const KnownOption* FindKnown(const std::vector<KnownOption>& known, const std::wstring& word) {
    const auto it = std::find_if(known.begin(), known.end(),
                                 [&](const KnownOption& option) { return word == option.name; });
    return it == known.end() ? nullptr : &*it;
}

bool LooksLikeOption(const std::wstring& word) {
    return word.size() > 2 && word[0] == L'-' && word[1] == L'-';
}

}  // namespace

ArgumentList::ArgumentList(const std::vector<std::wstring>& words,
                           const std::vector<KnownOption>& known) {
    bool optionsEnded = false;
    for (size_t i = 0; i < words.size(); ++i) {
        const std::wstring& word = words[i];
        if (optionsEnded) {
            m_positional.push_back(word);
        } else if (word == L"--") {
            optionsEnded = true;
        } else if (const KnownOption* option = FindKnown(known, word)) {
            std::wstring value;
            if (option->takesValue) {
                if (i + 1 >= words.size()) ThrowUsage(word + L" needs a value");
                value = words[++i];
            }
            m_options.emplace_back(word, value);
        } else if (LooksLikeOption(word)) {
            ThrowUsage(L"unknown option " + word);
        } else {
            m_positional.push_back(word);
        }
    }
}

void ArgumentList::RequirePositional(size_t least, size_t most) const {
    if (m_positional.size() < least) ThrowUsage(L"too few arguments");
    if (m_positional.size() > most) ThrowUsage(L"too many arguments");
}

bool ArgumentList::Has(const wchar_t* name) const {
    return std::any_of(m_options.begin(), m_options.end(),
                       [&](const auto& option) { return option.first == name; });
}

std::optional<std::wstring> ArgumentList::Value(const wchar_t* name) const {
    // The last of repeated options wins, as with most command lines.
    for (auto it = m_options.rbegin(); it != m_options.rend(); ++it)
        if (it->first == name) return it->second;
    return std::nullopt;
}

uint64_t ArgumentList::ParseNumber(const std::wstring& word, const wchar_t* what) {
    const bool hex = word.size() > 2 && word[0] == L'0' && (word[1] == L'x' || word[1] == L'X');
    const size_t first = hex ? 2 : 0;
    if (word.size() <= first || word.size() - first > (hex ? 16u : 19u))
        ThrowUsage(std::wstring(what) + L" is not a number: " + word);
    uint64_t value = 0;
    for (size_t i = first; i < word.size(); ++i) {
        const wchar_t c = word[i];
        unsigned digit;
        if (c >= L'0' && c <= L'9') digit = c - L'0';
        else if (hex && std::iswxdigit(c)) digit = 10 + (std::towlower(c) - L'a');
        else ThrowUsage(std::wstring(what) + L" is not a number: " + word);
        value = value * (hex ? 16 : 10) + digit;
    }
    return value;
}

DWORD ArgumentList::ParseDword(const std::wstring& word, const wchar_t* what) {
    const uint64_t value = ParseNumber(word, what);
    if (value > MAXDWORD) ThrowUsage(std::wstring(what) + L" is too large: " + word);
    return static_cast<DWORD>(value);
}

HWND ArgumentList::ParseWindow(const std::wstring& word) {
    const HWND window = reinterpret_cast<HWND>(static_cast<uintptr_t>(ParseNumber(word, L"window")));
    if (!::IsWindow(window)) ThrowNotFound(L"no such window: " + word);
    return window;
}

std::vector<std::wstring> ArgumentList::SplitCommas(const std::wstring& word) {
    std::vector<std::wstring> parts;
    size_t start = 0;
    for (;;) {
        const size_t comma = word.find(L',', start);
        if (comma == std::wstring::npos) {
            parts.push_back(word.substr(start));
            return parts;
        }
        parts.push_back(word.substr(start, comma - start));
        start = comma + 1;
    }
}

}  // namespace lpdriver
