// Text helpers of the monitor: resource strings, code pages, and the two
// renderings of a situation's text. Texts may carry code links of the form
// <a href="Codes/WLE.html#5">WLE5</a>: a message box shows only the label, the
// HTML log keeps the link.
#pragma once
#include <windows.h>
#include <string>

namespace KYbpmText {

// The string id of module, full length; false when it is missing or empty.
bool LoadResourceString(HMODULE module, int id, std::wstring& text);
bool IsBlank(const wchar_t* text);
bool IsBlank(const std::wstring& text);
std::wstring TrimLeft(const std::wstring& text);

std::string ToUtf8(const std::wstring& text);
std::wstring FromUtf8(const std::string& text);
// A narrow text in the external character set (KYbpmCharSet).
std::wstring FromNarrow(const char* text, int charSet);

// Escapes & < > " ' for HTML text and attribute values.
std::wstring HtmlEscape(const std::wstring& text);
// Code links reduced to their labels: what a box, the event log and the text log show.
std::wstring PlainText(const std::wstring& text);
// Escaped HTML with code links kept as links and new lines as <br>.
std::wstring HtmlText(const std::wstring& text);

// "2026-11-21 20:50:00.123", or with iso "2026-11-21T20:50:00.123".
std::wstring FormatTime(const SYSTEMTIME& time, bool iso);

}  // namespace KYbpmText
