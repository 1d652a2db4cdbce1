// A program started by a test and observed from outside: its top-level windows,
// its message boxes, its end. Killed when the test lets go of it.
#pragma once
#include <windows.h>

#include <string>
#include <vector>

#include "foundation/UniqueHandle.h"

namespace lptest {

struct MessageBoxInfo {
    HWND hwnd = nullptr;
    std::wstring caption;
    std::wstring text;
};

class ChildProcess {
public:
    // Starts exe with the arguments (quoted by the caller) in directory (empty: the test's).
    ChildProcess(const std::wstring& exe, const std::wstring& arguments,
                 const std::wstring& directory = L"");
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    bool started() const { return static_cast<bool>(m_process); }
    DWORD pid() const { return m_pid; }
    // The exit code, or STILL_ACTIVE when it had not ended within the limit.
    DWORD Wait(DWORD timeoutMs);
    // The visible top-level windows of the process, waited for up to the limit.
    std::vector<HWND> WaitForWindows(DWORD timeoutMs, const wchar_t* className = nullptr);
    // The first message box of the process, waited for up to the limit.
    bool WaitForMessageBox(DWORD timeoutMs, MessageBoxInfo& box);
    // Asks every top-level window of the process to close.
    void CloseWindows();

private:
    ky::UniqueHandle m_process;
    DWORD m_pid = 0;
};

std::vector<HWND> TopWindowsOf(DWORD pid, const wchar_t* className = nullptr, bool visibleOnly = true);
std::wstring WindowText(HWND hwnd);
std::wstring ClassOf(HWND hwnd);
// Presses a button of a dialog (IDOK, IDYES...) as a click would.
void PressButton(HWND dialog, int id);

}  // namespace lptest
