#include "monitor/KYbpmEventLog.h"

bool KYbpmEventLog::report(KYbpmKind kind, int number, const std::wstring& text) {
    if (!m_source) m_source.reset(RegisterEventSourceW(nullptr, L"Launch Panel"));
    if (!m_source) return false;
    WORD type = EVENTLOG_ERROR_TYPE;
    if (kind == KYbpmKind::Warning) type = EVENTLOG_WARNING_TYPE;
    else if (kind == KYbpmKind::Notice || kind == KYbpmKind::Question) type = EVENTLOG_INFORMATION_TYPE;
    const wchar_t* strings[] = {text.c_str()};
    return ReportEventW(m_source.get(), type, 0, static_cast<DWORD>(number), nullptr, 1, 0, strings,
                        nullptr) != FALSE;
}
