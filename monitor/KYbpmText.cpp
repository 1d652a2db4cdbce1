#include "monitor/KYbpmText.h"

#include <cstdio>
#include <cwctype>

#include "monitor/KYbpmSettings.h"

namespace KYbpmText {

bool LoadResourceString(HMODULE module, int id, std::wstring& text) {
    text.clear();
    if (!module || id <= 0 || id > 0xFFFF) return false;
    const wchar_t* start = nullptr;
    // With a capacity of 0, LoadStringW hands out the resource's own text, so
    // no length limit applies.
    const int length = LoadStringW(module, static_cast<UINT>(id), reinterpret_cast<LPWSTR>(&start), 0);
    if (length <= 0 || !start) return false;
    text.assign(start, static_cast<size_t>(length));
    return true;
}

bool IsBlank(const wchar_t* text) {
    if (!text) return true;
    for (; *text; ++text)
        if (!std::iswspace(*text)) return false;
    return true;
}

bool IsBlank(const std::wstring& text) { return IsBlank(text.c_str()); }

std::wstring TrimLeft(const std::wstring& text) {
    size_t i = 0;
    while (i < text.size() && std::iswspace(text[i])) ++i;
    return text.substr(i);
}

std::string ToUtf8(const std::wstring& text) {
    if (text.empty()) return {};
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                         nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<size_t>(size > 0 ? size : 0), '\0');
    if (size > 0)
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), out.data(), size,
                            nullptr, nullptr);
    return out;
}

static std::wstring Widen(const char* text, size_t length, UINT codePage) {
    if (!text || length == 0) return {};
    const int size = MultiByteToWideChar(codePage, 0, text, static_cast<int>(length), nullptr, 0);
    std::wstring out(static_cast<size_t>(size > 0 ? size : 0), L'\0');
    if (size > 0) MultiByteToWideChar(codePage, 0, text, static_cast<int>(length), out.data(), size);
    return out;
}

std::wstring FromUtf8(const std::string& text) { return Widen(text.data(), text.size(), CP_UTF8); }

std::wstring FromNarrow(const char* text, int charSet) {
    if (!text) return {};
    const UINT codePage = charSet == KYbpmCharSet::kUtf8 ? CP_UTF8
                          : charSet == KYbpmCharSet::kOem ? CP_OEMCP
                                                          : CP_ACP;
    return Widen(text, std::char_traits<char>::length(text), codePage);
}

std::wstring HtmlEscape(const std::wstring& text) {
    std::wstring out;
    out.reserve(text.size());
    for (wchar_t c : text) {
        switch (c) {
        case L'&': out += L"&amp;"; break;
        case L'<': out += L"&lt;"; break;
        case L'>': out += L"&gt;"; break;
        case L'"': out += L"&quot;"; break;
        case L'\'': out += L"&#39;"; break;
        default: out += c;
        }
    }
    return out;
}

namespace {

bool IsAsciiAlnum(wchar_t c) {
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9');
}

// A page of the code pages beside the log: "Codes/" and a file name, with an
// anchor perhaps. Arguments can carry catalogue and item names, so anything else
// (a scheme, "//host", a way up) must not become a link in the log.
bool IsCodePage(const std::wstring& target) {
    static const std::wstring folder = L"Codes/";
    if (target.compare(0, folder.size(), folder) != 0 || target.size() == folder.size()) return false;
    if (!IsAsciiAlnum(target[folder.size()])) return false;
    for (size_t i = folder.size(); i < target.size(); ++i) {
        const wchar_t c = target[i];
        if (!IsAsciiAlnum(c) && c != L'.' && c != L'_' && c != L'-' && c != L'#') return false;
    }
    return true;
}

// A code link at text[at]: <a href="target">label</a>, with a code page as its
// target and a label without markup. Returns its length, 0 when none.
size_t MatchLink(const std::wstring& text, size_t at, std::wstring& target, std::wstring& label) {
    static const std::wstring open = L"<a href=\"";
    if (text.compare(at, open.size(), open) != 0) return 0;
    const size_t targetStart = at + open.size();
    const size_t targetEnd = text.find(L"\">", targetStart);
    if (targetEnd == std::wstring::npos) return 0;
    target = text.substr(targetStart, targetEnd - targetStart);
    if (!IsCodePage(target)) return 0;
    const size_t labelStart = targetEnd + 2;
    const size_t labelEnd = text.find(L"</a>", labelStart);
    if (labelEnd == std::wstring::npos) return 0;
    label = text.substr(labelStart, labelEnd - labelStart);
    if (label.find_first_of(L"<>") != std::wstring::npos) return 0;
    return labelEnd + 4 - at;
}

}  // namespace

std::wstring PlainText(const std::wstring& text) {
    std::wstring out, target, label;
    for (size_t i = 0; i < text.size();) {
        const size_t length = text[i] == L'<' ? MatchLink(text, i, target, label) : 0;
        if (length) {
            out += label;
            i += length;
        } else {
            out += text[i++];
        }
    }
    return out;
}

std::wstring HtmlText(const std::wstring& text) {
    std::wstring out, target, label;
    for (size_t i = 0; i < text.size();) {
        const size_t length = text[i] == L'<' ? MatchLink(text, i, target, label) : 0;
        if (length) {
            out += L"<a href=\"" + HtmlEscape(target) + L"\">" + HtmlEscape(label) + L"</a>";
            i += length;
        } else if (text[i] == L'\r') {
            ++i;
        } else if (text[i] == L'\n') {
            out += L"<br>";
            ++i;
        } else {
            out += HtmlEscape(std::wstring(1, text[i++]));
        }
    }
    return out;
}

std::wstring FormatTime(const SYSTEMTIME& time, bool iso) {
    wchar_t buffer[40];
    swprintf(buffer, 40, L"%04u-%02u-%02u%lc%02u:%02u:%02u.%03u", time.wYear, time.wMonth, time.wDay,
             iso ? L'T' : L' ', time.wHour, time.wMinute, time.wSecond, time.wMilliseconds);
    return buffer;
}

}  // namespace KYbpmText
