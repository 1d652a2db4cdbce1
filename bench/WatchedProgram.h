// A program started by the list benchmark and watched from outside only: the
// moment its list is painted with all its rows, its memory, its frame and list.
#pragma once
#include <windows.h>

#include <string>

#include "bench/BenchClock.h"
#include "foundation/UniqueHandle.h"
#include "tests/support/ChildProcess.h"

namespace bench {

struct Memory {
    SIZE_T committedKb = 0;  // PagefileUsage: Wine reads PrivateUsage as 0
    SIZE_T workingSetKb = 0;
};

class WatchedProgram {
public:
    // Starts exe with the arguments; the clock of WaitPainted starts just before.
    WatchedProgram(const std::wstring& exe, const std::wstring& arguments);
    bool started() const { return m_child.started(); }

    // Waits until a visible top-level window of the program holds a visible list
    // view with `rows` items and neither has anything left to paint. False at
    // the limit or when the program ends.
    bool WaitPainted(int rows, double limitMs);
    // Milliseconds from the start (or from Restart) to the last WaitPainted that succeeded.
    double PaintedMs() const { return m_paintedMs; }
    void RestartClock() { m_clock.Restart(); }
    double ElapsedMs() const { return m_clock.ElapsedMs(); }

    HWND frame() const { return m_frame; }
    HWND list() const { return m_list; }
    Memory ReadMemory() const;
    // A message to a window of the program, waited for as long as the limit allows:
    // the program answers only when it is back at its message loop.
    bool Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam, double limitMs, LRESULT* answer = nullptr);
    bool Painted() const;

private:
    bool FindList();

    Stopwatch m_clock;
    lptest::ChildProcess m_child;
    ky::UniqueHandle m_process;
    HWND m_frame = nullptr;
    HWND m_list = nullptr;
    double m_paintedMs = -1;
};

}  // namespace bench
