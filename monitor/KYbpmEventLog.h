// Inside a session the monitor writes no file: each answered situation goes to
// the Application event log under the source "Launch Panel", where the
// server's administrator reads it.
#pragma once
#include <windows.h>
#include <string>

#include "foundation/UniqueHandle.h"
#include "monitor/KYbpmDirective.h"

class KYbpmEventLog {
public:
    // False when the event log could not be reached.
    bool report(KYbpmKind kind, int number, const std::wstring& text);

private:
    static void Deregister(HANDLE source) noexcept { ::DeregisterEventSource(source); }
    ky::UniqueAny<HANDLE, &KYbpmEventLog::Deregister> m_source;
};
