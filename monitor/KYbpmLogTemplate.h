// The frame of the HTML log: the template file cut at its marker line
// <!--LP:ENTRIES-->, with the blanks {{TAG0}}..{{TAG14}} and {{STARTED}} filled
// (HTML-escaped). A missing or unreadable template, or one without the marker,
// gives a small built-in page of the same shape.
#pragma once
#include <windows.h>
#include <array>
#include <string>

#include "monitor/KYbpmSettings.h"

class KYbpmLogTemplate {
public:
    using Tags = std::array<std::wstring, KYbpmLimits::kTagCount>;

    static KYbpmLogTemplate load(const std::wstring& path, const Tags& tags, const SYSTEMTIME& started);

    const std::wstring& head() const { return m_head; }
    const std::wstring& tail() const { return m_tail; }
    bool builtIn() const { return m_bBuiltIn; }

    static inline const wchar_t* const kMarker = L"<!--LP:ENTRIES-->";

private:
    static bool readFile(const std::wstring& path, std::wstring& text);
    static std::wstring fillBlanks(const std::wstring& text, const Tags& tags, const std::wstring& started);
    bool split(const std::wstring& text);

    std::wstring m_head;
    std::wstring m_tail;
    bool m_bBuiltIn = false;
};
