#include "tests/support/ChildProcess.h"

namespace lptest {

namespace {
struct Search {
    DWORD pid;
    const wchar_t* className;
    bool visibleOnly;
    std::vector<HWND> found;
};

BOOL CALLBACK Collect(HWND hwnd, LPARAM param) {
    auto* search = reinterpret_cast<Search*>(param);
    DWORD pid = 0;
    GetWindowThreadProcessId(hwnd, &pid);
    if (pid != search->pid) return TRUE;
    if (search->visibleOnly && !IsWindowVisible(hwnd)) return TRUE;
    if (search->className && ClassOf(hwnd) != search->className) return TRUE;
    search->found.push_back(hwnd);
    return TRUE;
}
}  // namespace

std::wstring WindowText(HWND hwnd) {
    // WM_GETTEXT is carried across processes, unlike GetWindowText for a foreign window.
    wchar_t buffer[4096] = {};
    SendMessageTimeoutW(hwnd, WM_GETTEXT, 4096, reinterpret_cast<LPARAM>(buffer), SMTO_ABORTIFHUNG,
                        2000, nullptr);
    return buffer;
}

std::wstring ClassOf(HWND hwnd) {
    wchar_t name[256] = {};
    GetClassNameW(hwnd, name, 256);
    return name;
}

std::vector<HWND> TopWindowsOf(DWORD pid, const wchar_t* className, bool visibleOnly) {
    Search search{pid, className, visibleOnly, {}};
    EnumWindows(Collect, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

void PressButton(HWND dialog, int id) {
    PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, id)));
}

ChildProcess::ChildProcess(const std::wstring& exe, const std::wstring& arguments,
                           const std::wstring& directory) {
    std::wstring line = L"\"" + exe + L"\"";
    if (!arguments.empty()) line += L" " + arguments;
    STARTUPINFOW si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    if (!CreateProcessW(exe.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        directory.empty() ? nullptr : directory.c_str(), &si, &pi))
        return;
    m_process.reset(pi.hProcess);
    ky::UniqueHandle thread(pi.hThread);
    m_pid = pi.dwProcessId;
}

ChildProcess::~ChildProcess() {
    if (m_process && WaitForSingleObject(m_process.get(), 0) == WAIT_TIMEOUT) {
        TerminateProcess(m_process.get(), 0xDEAD);
        WaitForSingleObject(m_process.get(), 5000);
    }
}

DWORD ChildProcess::Wait(DWORD timeoutMs) {
    if (!m_process) return STILL_ACTIVE;
    if (WaitForSingleObject(m_process.get(), timeoutMs) != WAIT_OBJECT_0) return STILL_ACTIVE;
    DWORD code = STILL_ACTIVE;
    GetExitCodeProcess(m_process.get(), &code);
    return code;
}

std::vector<HWND> ChildProcess::WaitForWindows(DWORD timeoutMs, const wchar_t* className) {
    const DWORD start = GetTickCount();
    for (;;) {
        auto windows = TopWindowsOf(m_pid, className);
        if (!windows.empty() || GetTickCount() - start > timeoutMs) return windows;
        if (m_process && WaitForSingleObject(m_process.get(), 100) == WAIT_OBJECT_0) return {};
    }
}

bool ChildProcess::WaitForMessageBox(DWORD timeoutMs, MessageBoxInfo& box) {
    auto boxes = WaitForWindows(timeoutMs, L"#32770");
    if (boxes.empty()) return false;
    box.hwnd = boxes.front();
    box.caption = WindowText(box.hwnd);
    box.text = WindowText(GetDlgItem(box.hwnd, 0xFFFF));
    return true;
}

void ChildProcess::CloseWindows() {
    for (HWND hwnd : TopWindowsOf(m_pid, nullptr, false)) PostMessageW(hwnd, WM_CLOSE, 0, 0);
}

}  // namespace lptest
