#include "tools/lpdriver/client/DriverClient.h"

#include "foundation/UniqueHandle.h"
#include "tools/lpdriver/QuoteArgument.h"
#include <cstdio>
#include <cwchar>

namespace lpdriver {

namespace {

std::wstring FromUtf8(const std::string& bytes) {
    if (bytes.empty()) return {};
    const int size = ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()),
                                           nullptr, 0);
    std::wstring text(static_cast<size_t>(size), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), text.data(), size);
    return text;
}

std::vector<std::wstring> SplitLines(const std::wstring& text) {
    std::vector<std::wstring> lines;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find(L'\n', start);
        if (end == std::wstring::npos) end = text.size();
        std::wstring line = text.substr(start, end - start);
        if (!line.empty() && line.back() == L'\r') line.pop_back();
        lines.push_back(std::move(line));
        start = end + 1;
    }
    return lines;
}

std::vector<std::wstring> SplitTabs(const std::wstring& text) {
    std::vector<std::wstring> parts;
    size_t start = 0;
    for (;;) {
        const size_t end = text.find(L'\t', start);
        parts.push_back(text.substr(start, end == std::wstring::npos ? std::wstring::npos : end - start));
        if (end == std::wstring::npos) return parts;
        start = end + 1;
    }
}

// Reads what the driver writes while it runs, so that a long answer never fills the pipe.
void Drain(HANDLE pipe, std::string& bytes) {
    DWORD available = 0;
    while (::PeekNamedPipe(pipe, nullptr, 0, nullptr, &available, nullptr) && available > 0) {
        char chunk[4096];
        DWORD read = 0;
        if (!::ReadFile(pipe, chunk, sizeof chunk < available ? sizeof chunk : available, &read, nullptr) ||
            read == 0)
            return;
        bytes.append(chunk, read);
    }
}

}  // namespace

bool DriverAnswer::Has(const std::wstring& key) const {
    const std::wstring prefix = key + L"=";
    for (const std::wstring& line : lines)
        if (line.compare(0, prefix.size(), prefix) == 0) return true;
    return false;
}

std::wstring DriverAnswer::Value(const std::wstring& key) const {
    const std::vector<std::wstring> all = Values(key);
    return all.empty() ? std::wstring() : all.front();
}

std::vector<std::wstring> DriverAnswer::Values(const std::wstring& key) const {
    std::vector<std::wstring> values;
    const std::wstring prefix = key + L"=";
    for (const std::wstring& line : lines)
        if (line.compare(0, prefix.size(), prefix) == 0)
            values.push_back(DriverClient::Unescape(line.substr(prefix.size())));
    return values;
}

std::vector<std::vector<std::wstring>> DriverAnswer::Cells(const std::wstring& key) const {
    std::vector<std::vector<std::wstring>> rows;
    const std::wstring prefix = key + L"=";
    for (const std::wstring& line : lines) {
        if (line.compare(0, prefix.size(), prefix) != 0) continue;
        std::vector<std::wstring> cells = SplitTabs(line.substr(prefix.size()));
        for (std::wstring& cell : cells) cell = DriverClient::Unescape(cell);
        rows.push_back(std::move(cells));
    }
    return rows;
}

std::vector<std::map<std::wstring, std::wstring>> DriverAnswer::Records(const std::wstring& key) const {
    std::vector<std::map<std::wstring, std::wstring>> records;
    const std::wstring prefix = key + L"=";
    for (const std::wstring& line : lines) {
        if (line.compare(0, prefix.size(), prefix) != 0) continue;
        std::map<std::wstring, std::wstring> fields;
        for (const std::wstring& field : SplitTabs(line)) {
            const size_t equals = field.find(L'=');
            if (equals == std::wstring::npos) continue;
            fields[field.substr(0, equals)] = DriverClient::Unescape(field.substr(equals + 1));
        }
        records.push_back(std::move(fields));
    }
    return records;
}

bool DriverAnswer::Point(const std::wstring& key, POINT& point) const {
    return Has(key) && DriverClient::ParsePoint(Value(key), point);
}

std::map<int, POINT> DriverAnswer::Positions() const {
    std::map<int, POINT> positions;
    for (const auto& cells : Cells(L"pos")) {
        POINT point{};
        if (cells.size() == 2 && DriverClient::ParsePoint(cells[1], point))
            positions[static_cast<int>(std::wcstol(cells[0].c_str(), nullptr, 10))] = point;
    }
    return positions;
}

std::wstring DriverAnswer::Text() const {
    std::wstring text = L"exit code " + std::to_wstring(exitCode) + L"\n";
    for (const std::wstring& line : lines) text += line + L"\n";
    return text;
}

DriverClient::DriverClient() {
    wchar_t path[MAX_PATH] = {};
    const DWORD length = ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring self(path, length);
    m_path = self.substr(0, self.find_last_of(L"\\/") + 1) + L"lpdriver.exe";
}

DriverAnswer DriverClient::Run(const std::vector<std::wstring>& arguments, DWORD limitMs) const {
    DriverAnswer answer;
    SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
    ky::UniqueHandle readEnd, writeEnd;
    if (!::CreatePipe(readEnd.put(), writeEnd.put(), &inherit, 0)) return answer;
    ::SetHandleInformation(readEnd.get(), HANDLE_FLAG_INHERIT, 0);

    std::wstring line = Quote(m_path);
    for (const std::wstring& argument : arguments) line += L" " + Quote(argument);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = writeEnd.get();
    PROCESS_INFORMATION info{};
    // Wine now and then refuses a process with ERROR_INTERNAL_ERROR before it runs
    // anything; the driver is then started once more, after a moment.
    bool made = false;
    for (int attempt = 0; attempt < 2 && !made; ++attempt) {
        if (attempt > 0) ::Sleep(500);
        made = ::CreateProcessW(m_path.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                &startup, &info) != FALSE;
        if (!made && ::GetLastError() != ERROR_INTERNAL_ERROR) break;
    }
    if (!made) return answer;
    const ky::UniqueHandle process(info.hProcess), thread(info.hThread);
    writeEnd.reset();  // the pipe ends when the driver's copy closes
    answer.started = true;

    std::string bytes;
    const ULONGLONG end = ::GetTickCount64() + limitMs;
    answer.finished = true;
    while (::WaitForSingleObject(process.get(), 20) == WAIT_TIMEOUT) {
        Drain(readEnd.get(), bytes);
        if (::GetTickCount64() >= end) {
            ::TerminateProcess(process.get(), 0xDEAD);
            ::WaitForSingleObject(process.get(), 5000);
            answer.finished = false;
            break;
        }
    }
    Drain(readEnd.get(), bytes);
    ::GetExitCodeProcess(process.get(), &answer.exitCode);
    answer.lines = SplitLines(FromUtf8(bytes));
    return answer;
}

std::wstring DriverClient::Unescape(const std::wstring& text) {
    std::wstring plain;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != L'\\' || i + 1 == text.size()) {
            plain += text[i];
            continue;
        }
        const wchar_t next = text[++i];
        plain += next == L't' ? L'\t' : next == L'n' ? L'\n' : next == L'r' ? L'\r' : next;
    }
    return plain;
}

std::wstring DriverClient::Quote(const std::wstring& word) { return QuoteArgument(word); }

bool DriverClient::ParsePoint(const std::wstring& text, POINT& point) {
    long x = 0, y = 0;
    wchar_t rest = 0;
    if (std::swscanf(text.c_str(), L"%ld,%ld%lc", &x, &y, &rest) != 2) return false;
    point = POINT{x, y};
    return true;
}

std::wstring DriverClient::WindowText(HWND window) {
    wchar_t text[24];
    std::swprintf(text, 24, L"0x%llX", static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(window)));
    return text;
}

}  // namespace lpdriver
