// Waiting for a window of another process to appear: looks again every poll
// interval until the limit, and gives up early once the process has ended.
#pragma once
#include <windows.h>
#include "foundation/UniqueHandle.h"
#include "tools/lpdriver/Deadline.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/OutputWriter.h"
#include "tools/lpdriver/ProcessWindows.h"
#include <string>

namespace lpdriver {

class WindowWait {
public:
    WindowWait(DWORD processId, DWORD limitMs)
        : m_deadline(limitMs),
          m_process(processId == ProcessWindows::kAnyProcess
                        ? ky::UniqueHandle()
                        : ProcessWindows::OpenForWait(processId)) {}

    // Calls find() until it answers a window. On time-out prints timeout=1 and
    // fails as "not found", naming `what`.
    template <typename Find>
    HWND Until(Find find, const std::wstring& what, OutputWriter& out) {
        for (;;) {
            if (HWND window = find()) return window;
            if (m_process && ::WaitForSingleObject(m_process.get(), 0) == WAIT_OBJECT_0)
                ThrowNotFound(L"the process ended before " + what + L" appeared");
            if (!m_deadline.Pause()) {
                out.Number(L"timeout", 1);
                ThrowNotFound(what + L" did not appear in time");
            }
        }
    }

private:
    Deadline m_deadline;
    ky::UniqueHandle m_process;
};

}  // namespace lpdriver
