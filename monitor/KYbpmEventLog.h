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
    // False when the event log could not be reached. The situation's number is
    // read in the text's code line, not in the entry's event id.
    bool report(KYbpmKind kind, int number, const std::wstring& text);

private:
    // Names the program as the source's message file when no existing file is
    // named yet, so that the event viewer shows each entry's text as it stands.
    static void registerSource();
    static void Deregister(HANDLE source) noexcept { ::DeregisterEventSource(source); }
    ky::UniqueAny<HANDLE, &KYbpmEventLog::Deregister> m_source;
};
