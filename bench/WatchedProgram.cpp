#include "bench/WatchedProgram.h"

#include <psapi.h>
#include <commctrl.h>


namespace bench {

namespace {
// Often enough that the poll adds little to what it measures (seconds), rarely
// enough that it takes little of the two shared cores.
constexpr DWORD kPollMs = 5;
}  // namespace

WatchedProgram::WatchedProgram(const std::wstring& exe, const std::wstring& arguments)
    : m_clock(), m_child(exe, arguments) {
    if (m_child.started())
        m_process.reset(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ | SYNCHRONIZE, FALSE, m_child.pid()));
}

bool WatchedProgram::FindList() {
    if (m_list && IsWindow(m_list)) return true;
    m_frame = m_list = nullptr;
    for (HWND top : lptest::TopWindowsOf(m_child.pid(), nullptr, true)) {
        if (HWND list = FindWindowExW(top, nullptr, WC_LISTVIEWW, nullptr)) {
            m_frame = top;
            m_list = list;
            return true;
        }
    }
    return false;
}

bool WatchedProgram::Painted() const {
    return IsWindowVisible(m_frame) && IsWindowVisible(m_list) && !GetUpdateRect(m_frame, nullptr, FALSE) &&
           !GetUpdateRect(m_list, nullptr, FALSE);
}

bool WatchedProgram::Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam, double limitMs, LRESULT* answer) {
    const double left = limitMs - m_clock.ElapsedMs();
    if (left <= 0) return false;
    DWORD_PTR result = 0;
    if (!SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, static_cast<UINT>(left), &result))
        return false;
    if (answer) *answer = static_cast<LRESULT>(result);
    return true;
}

bool WatchedProgram::WaitPainted(int rows, double limitMs) {
    while (m_clock.ElapsedMs() < limitMs) {
        if (m_process && WaitForSingleObject(m_process.get(), 0) == WAIT_OBJECT_0) return false;
        LRESULT count = -1;
        // The count is answered only once the program pumps messages again, so a
        // list still being filled is never seen half full.
        if (FindList() && Ask(m_list, LVM_GETITEMCOUNT, 0, 0, limitMs, &count) && count == rows && Painted()) {
            m_paintedMs = m_clock.ElapsedMs();
            return true;
        }
        Sleep(kPollMs);
    }
    return false;
}

Memory WatchedProgram::ReadMemory() const {
    Memory memory;
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    if (m_process && GetProcessMemoryInfo(m_process.get(), &counters, sizeof counters)) {
        memory.committedKb = counters.PagefileUsage / 1024;
        memory.workingSetKb = counters.WorkingSetSize / 1024;
    }
    return memory;
}

}  // namespace bench
