// The words of one driver command after its name: positional values and the
// `--name [value]` options that command knows. Anything else is a usage error.
#pragma once
#include <windows.h>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lpdriver {

struct KnownOption {
    const wchar_t* name;  // with its leading dashes: L"--wait"
    bool takesValue;
};

class ArgumentList {
public:
    // A lone "--" ends the options: every word after it is positional, as it stands.
    ArgumentList(const std::vector<std::wstring>& words, const std::vector<KnownOption>& known);

    // Fails as a usage error unless the count of positional words lies in [least, most].
    void RequirePositional(size_t least, size_t most) const;
    size_t PositionalCount() const noexcept { return m_positional.size(); }
    const std::wstring& Positional(size_t index) const { return m_positional.at(index); }

    bool Has(const wchar_t* name) const;
    std::optional<std::wstring> Value(const wchar_t* name) const;

    // Decimal, or hexadecimal after "0x"; the whole word must be a number.
    static uint64_t ParseNumber(const std::wstring& word, const wchar_t* what);
    static DWORD ParseDword(const std::wstring& word, const wchar_t* what);
    static HWND ParseWindow(const std::wstring& word);
    // "2,0,1": the parts between commas, empty ones included (a list with a gap).
    static std::vector<std::wstring> SplitCommas(const std::wstring& word);

private:
    std::vector<std::wstring> m_positional;
    std::vector<std::pair<std::wstring, std::wstring>> m_options;
};

}  // namespace lpdriver
