// The driver's answer on standard output: UTF-8 lines of `key=value`, written at
// once so that what was found before a failure still reaches the caller.
//
// Values are escaped so that one value stays on one line and tab-separated fields
// stay apart: backslash -> "\\", tab -> "\t", line feed -> "\n", carriage return -> "\r".
#pragma once
#include <windows.h>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace lpdriver {

class OutputWriter {
public:
    OutputWriter() noexcept;

    void Field(const std::wstring& key, const std::wstring& value);
    // A value the caller has escaped already (cells joined by tabs).
    void Raw(const std::wstring& key, const std::wstring& escapedValue);
    void Number(const std::wstring& key, int64_t value);
    void Window(const std::wstring& key, HWND window);
    // One line of several `key=value` fields separated by tabs.
    void Record(const std::vector<std::pair<std::wstring, std::wstring>>& fields);
    // The failure line; also shown on standard error for a person reading the log.
    void Error(const std::wstring& message);

    static std::wstring Escape(const std::wstring& text);
    static std::wstring WindowText(HWND window);  // "0x" and hexadecimal digits

private:
    void Line(const std::wstring& line, HANDLE target);

    HANDLE m_out;
    HANDLE m_err;
};

}  // namespace lpdriver
