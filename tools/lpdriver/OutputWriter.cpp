#include "tools/lpdriver/OutputWriter.h"
#include <cwchar>

namespace lpdriver {

OutputWriter::OutputWriter() noexcept
    : m_out(::GetStdHandle(STD_OUTPUT_HANDLE)), m_err(::GetStdHandle(STD_ERROR_HANDLE)) {}

void OutputWriter::Field(const std::wstring& key, const std::wstring& value) {
    Line(key + L"=" + Escape(value), m_out);
}

void OutputWriter::Raw(const std::wstring& key, const std::wstring& escapedValue) {
    Line(key + L"=" + escapedValue, m_out);
}

void OutputWriter::Number(const std::wstring& key, int64_t value) {
    Line(key + L"=" + std::to_wstring(value), m_out);
}

void OutputWriter::Window(const std::wstring& key, HWND window) {
    Line(key + L"=" + WindowText(window), m_out);
}

void OutputWriter::Record(const std::vector<std::pair<std::wstring, std::wstring>>& fields) {
    std::wstring line;
    for (const auto& [key, value] : fields) {
        if (!line.empty()) line += L'\t';
        line += key + L"=" + Escape(value);
    }
    Line(line, m_out);
}

void OutputWriter::Error(const std::wstring& message) {
    const std::wstring line = L"error=" + Escape(message);
    Line(line, m_out);
    Line(L"lpdriver: " + message, m_err);
}

std::wstring OutputWriter::Escape(const std::wstring& text) {
    std::wstring escaped;
    escaped.reserve(text.size());
    for (const wchar_t c : text) {
        switch (c) {
        case L'\\': escaped += L"\\\\"; break;
        case L'\t': escaped += L"\\t"; break;
        case L'\n': escaped += L"\\n"; break;
        case L'\r': escaped += L"\\r"; break;
        default: escaped += c; break;
        }
    }
    return escaped;
}

std::wstring OutputWriter::WindowText(HWND window) {
    wchar_t text[24];
    std::swprintf(text, 24, L"0x%llX",
                  static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(window)));
    return text;
}

void OutputWriter::Line(const std::wstring& line, HANDLE target) {
    if (target == nullptr || target == INVALID_HANDLE_VALUE) return;
    const std::wstring full = line + L"\n";
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, full.data(), static_cast<int>(full.size()),
                                           nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, full.data(), static_cast<int>(full.size()), bytes.data(),
                          size, nullptr, nullptr);
    // The caller may have closed its end of the pipe; the driver's result stays its exit code.
    DWORD written = 0;
    ::WriteFile(target, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

}  // namespace lpdriver
