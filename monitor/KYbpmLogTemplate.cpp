#include "monitor/KYbpmLogTemplate.h"

#include <vector>

#include "foundation/UniqueHandle.h"
#include "monitor/KYbpmText.h"

namespace {

constexpr DWORD kLargestTemplate = 1024 * 1024;

const wchar_t* const kBuiltInTemplate =
    L"<!DOCTYPE html>\n"
    L"<html lang=\"en\">\n"
    L"<head>\n"
    L"<meta charset=\"utf-8\">\n"
    L"<title>{{TAG7}} log</title>\n"
    L"</head>\n"
    L"<body>\n"
    L"<h1>{{TAG7}}</h1>\n"
    L"<p>User {{TAG11}} on {{TAG9}}, build {{TAG4}}, started {{STARTED}}.</p>\n"
    L"<table>\n"
    L"<tr><th>Time</th><th>Number</th><th>Text</th></tr>\n"
    L"<!--LP:ENTRIES-->\n"
    L"</table>\n"
    L"</body>\n"
    L"</html>\n";

}  // namespace

KYbpmLogTemplate KYbpmLogTemplate::load(const std::wstring& path, const Tags& tags,
                                        const SYSTEMTIME& started) {
    const std::wstring startedText = KYbpmText::FormatTime(started, false);
    KYbpmLogTemplate result;
    std::wstring text;
    if (!path.empty() && readFile(path, text) && result.split(fillBlanks(text, tags, startedText)))
        return result;
    result.split(fillBlanks(kBuiltInTemplate, tags, startedText));
    result.m_bBuiltIn = true;
    return result;
}

bool KYbpmLogTemplate::readFile(const std::wstring& path, std::wstring& text) {
    ky::UniqueFile file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return false;
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(file.get(), &size) || size.QuadPart <= 0 || size.QuadPart > kLargestTemplate)
        return false;
    std::string bytes(static_cast<size_t>(size.QuadPart), '\0');
    DWORD read = 0;
    if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) ||
        read != bytes.size())
        return false;
    if (bytes.rfind("\xEF\xBB\xBF", 0) == 0) bytes.erase(0, 3);
    text = KYbpmText::FromUtf8(bytes);
    return !text.empty();
}

std::wstring KYbpmLogTemplate::fillBlanks(const std::wstring& text, const Tags& tags,
                                          const std::wstring& started) {
    std::wstring out;
    out.reserve(text.size() + 256);
    for (size_t i = 0; i < text.size();) {
        const size_t close = text.compare(i, 2, L"{{") == 0 ? text.find(L"}}", i + 2) : std::wstring::npos;
        if (close == std::wstring::npos) {
            out += text[i++];
            continue;
        }
        const std::wstring name = text.substr(i + 2, close - i - 2);
        if (name == L"STARTED") {
            out += KYbpmText::HtmlEscape(started);
        } else if (name.rfind(L"TAG", 0) == 0 && name.size() > 3 && name.size() <= 5 &&
                   name.find_first_not_of(L"0123456789", 3) == std::wstring::npos &&
                   std::stoi(name.substr(3)) < KYbpmLimits::kTagCount) {
            out += KYbpmText::HtmlEscape(tags[static_cast<size_t>(std::stoi(name.substr(3)))]);
        } else {
            out += text[i++];
            continue;
        }
        i = close + 2;
    }
    return out;
}

// Head: everything before the marker's line; tail: everything after it.
bool KYbpmLogTemplate::split(const std::wstring& text) {
    const size_t marker = text.find(kMarker);
    if (marker == std::wstring::npos) return false;
    const size_t lineStart = text.find_last_of(L'\n', marker);
    const size_t lineEnd = text.find(L'\n', marker);
    m_head = text.substr(0, lineStart == std::wstring::npos ? 0 : lineStart + 1);
    m_tail = lineEnd == std::wstring::npos ? std::wstring() : text.substr(lineEnd + 1);
    return true;
}
