// The windows of another process as seen from outside: its top-level windows in
// Z order, their descendants, and the facts a test checks about each.
#pragma once
#include <windows.h>
#include "foundation/UniqueHandle.h"
#include <string>
#include <vector>

namespace lpdriver {

struct WindowFacts {
    HWND window = nullptr;
    DWORD processId = 0;
    std::wstring className;
    std::wstring title;
    bool visible = false;
    bool enabled = false;
    int controlId = 0;
    RECT rect{};
};

class ProcessWindows {
public:
    // Process id 0 stands for every process (a program started through the shell
    // has an id that the caller does not know).
    static constexpr DWORD kAnyProcess = 0;
    static DWORD ParseProcessId(const std::wstring& word);

    static std::vector<HWND> TopLevel(DWORD processId);
    // Every descendant of the window, depth first, in the order of its children.
    static std::vector<HWND> Descendants(HWND parent);
    static WindowFacts Describe(HWND window);
    static std::wstring ClassOf(HWND window);
    // The text as the window itself answers WM_GETTEXT (an edit control's content
    // included); the stored caption when the owner does not answer in time.
    static std::wstring TextOf(HWND window);
    // The process's main frame: its first visible top-level window without owner,
    // else its first visible top-level window; null when it shows none.
    static HWND MainFrame(DWORD processId);
    // A message sent to a window of another process, answered within a few seconds;
    // a window that does not answer is a failure of the driver (exit 3).
    static LRESULT Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    // A handle to wait on the process; fails as "not found" when there is none.
    // `rights` beyond waiting and reading the exit code may be added (PROCESS_TERMINATE).
    static ky::UniqueHandle OpenForWait(DWORD processId, DWORD rights = 0);
};

}  // namespace lpdriver
