#include "tools/lpdriver/UserInput.h"
#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/ProcessWindows.h"
#include "tools/lpdriver/OutputWriter.h"
#include <commctrl.h>
#include <climits>
#include <cstdlib>

namespace lpdriver {

namespace {

// A drag's steps after the button went down, the last one on the target.
constexpr int kDragSteps = 4;
// The pause between two steps of a drag on the system path, where nothing tells
// when the program has taken the last event.
constexpr DWORD kSystemStepMs = 40;
// How long the driver waits for the frame to come to the foreground.
constexpr DWORD kForegroundMs = 2000;
// How often the posted path looks whether the list has answered its query.
constexpr DWORD kProbePollMs = 5;

constexpr RECT kUnanswered{INT_MIN, INT_MIN, INT_MIN, INT_MIN};

bool SameRect(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

HWND CaptureOf(HWND window) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    if (!::GetGUIThreadInfo(::GetWindowThreadProcessId(window, nullptr), &info)) return nullptr;
    return info.hwndCapture;
}

bool IsSelfOrDescendant(HWND ancestor, HWND window) {
    return window == ancestor || ::IsChild(ancestor, window);
}

// Polls the buffer until the list has written its view rectangle over the mark.
bool AwaitAnswer(const RemoteBuffer& probe, const Deadline& deadline) {
    for (;;) {
        RECT rect{};
        probe.Read(0, &rect, sizeof rect);
        if (!SameRect(rect, kUnanswered)) return true;
        if (deadline.Passed()) return false;
        ::Sleep(kProbePollMs);
    }
}

bool PostProbe(HWND list, const RemoteBuffer& probe) {
    probe.Write(0, &kUnanswered, sizeof kUnanswered);
    return ::PostMessageW(list, LVM_GETVIEWRECT, 0, probe.At(0)) != FALSE;
}

}  // namespace

InputPath ParseInputPath(const std::wstring& word) {
    if (word == L"auto") return InputPath::Automatic;
    if (word == L"system") return InputPath::System;
    if (word == L"posted") return InputPath::Posted;
    ThrowUsage(L"--input is auto, system or posted, not " + word);
}

const wchar_t* InputPathName(InputPath path) {
    switch (path) {
    case InputPath::System: return L"system";
    case InputPath::Posted: return L"posted";
    default: return L"auto";
    }
}

Mouse::Mouse(HWND control, HWND list, InputPath path, const Deadline& deadline)
    : m_control(control), m_list(list), m_path(path), m_deadline(deadline), m_probe(list, sizeof(RECT)) {}

void Mouse::Click(POINT point) {
    const POINT screen = ToScreen(point);
    Prepare(screen);
    Press(screen, WM_LBUTTONDOWN, MK_LBUTTON);
    Press(screen, WM_LBUTTONUP, 0);
}

void Mouse::DoubleClick(POINT point) {
    // The second press of a double-click arrives as WM_LBUTTONDBLCLK (the list's
    // class asks for double-clicks).
    const POINT screen = ToScreen(point);
    Prepare(screen);
    Press(screen, WM_LBUTTONDOWN, MK_LBUTTON);
    Press(screen, WM_LBUTTONUP, 0);
    Press(screen, WM_LBUTTONDBLCLK, MK_LBUTTON);
    Press(screen, WM_LBUTTONUP, 0);
}

void Mouse::RightClick(POINT point) {
    const POINT screen = ToScreen(point);
    Prepare(screen);
    Press(screen, WM_RBUTTONDOWN, MK_RBUTTON);
    Press(screen, WM_RBUTTONUP, 0);
}

void Mouse::Drag(POINT from, POINT to) {
    const POINT screen = ToScreen(from);
    Prepare(screen);
    Press(screen, WM_LBUTTONDOWN, MK_LBUTTON);
    for (const POINT step : DragSteps(from, to)) {
        if (m_path == InputPath::System) ::Sleep(kSystemStepMs);
        Press(ToScreen(step), WM_MOUSEMOVE, MK_LBUTTON);
    }
    if (m_path == InputPath::System) ::Sleep(kSystemStepMs);
    Press(ToScreen(to), WM_LBUTTONUP, 0);
}

// The pointer comes to the point before any button goes down, as a user's does.
void Mouse::Prepare(POINT screen) {
    if (m_path != InputPath::Posted) {
        std::wstring obstacle = SystemObstacle(screen);
        if (obstacle.empty()) {
            if (SendSystem(screen, 0)) {
                m_path = InputPath::System;
                return;
            }
            if (m_path == InputPath::System) ThrowWin32(L"SendInput");
            obstacle = L"SendInput injected nothing";
        }
        if (m_path == InputPath::System) ThrowNotFound(obstacle);
        m_path = InputPath::Posted;
        m_fallback = obstacle;
    }
    Post(screen, WM_MOUSEMOVE, 0);
}

// Why SendInput at that point would not reach the control; empty when it would.
std::wstring Mouse::SystemObstacle(POINT screen) const {
    const HWND frame = ::GetAncestor(m_control, GA_ROOT);
    ::SetForegroundWindow(frame);
    const Deadline foreground(kForegroundMs < m_deadline.Remaining() ? kForegroundMs : m_deadline.Remaining());
    while (::GetForegroundWindow() != frame && foreground.Pause()) {}
    const HWND under = ::WindowFromPoint(screen);
    if (IsSelfOrDescendant(m_control, under)) return {};
    return L"the point " + std::to_wstring(screen.x) + L"," + std::to_wstring(screen.y) + L" shows window " +
           OutputWriter::WindowText(under) + L", not the control";
}

void Mouse::Press(POINT screen, UINT message, WPARAM keys) {
    if (m_path == InputPath::Posted) {
        Post(screen, message, keys);
        return;
    }
    DWORD flags = 0;
    if (message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK) flags = MOUSEEVENTF_LEFTDOWN;
    else if (message == WM_LBUTTONUP) flags = MOUSEEVENTF_LEFTUP;
    else if (message == WM_RBUTTONDOWN) flags = MOUSEEVENTF_RIGHTDOWN;
    else if (message == WM_RBUTTONUP) flags = MOUSEEVENTF_RIGHTUP;
    if (!SendSystem(screen, flags)) ThrowWin32(L"SendInput");
}

bool Mouse::SendSystem(POINT screen, DWORD buttonFlags) {
    // Absolute points run from 0 to 65536 across the virtual screen; rounded up, so
    // that the system's conversion back lands on the pixel meant.
    const LONGLONG left = ::GetSystemMetrics(SM_XVIRTUALSCREEN);
    const LONGLONG top = ::GetSystemMetrics(SM_YVIRTUALSCREEN);
    const LONGLONG width = ::GetSystemMetrics(SM_CXVIRTUALSCREEN);
    const LONGLONG height = ::GetSystemMetrics(SM_CYVIRTUALSCREEN);
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dx = static_cast<LONG>(((screen.x - left) * 65536 + width - 1) / width);
    input.mi.dy = static_cast<LONG>(((screen.y - top) * 65536 + height - 1) / height);
    input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_VIRTUALDESK | buttonFlags;
    return ::SendInput(1, &input, sizeof input) == 1;
}

void Mouse::Post(POINT screen, UINT message, WPARAM keys) {
    // A real mouse's messages go to the window that holds the capture, if any.
    const HWND capture = CaptureOf(m_control);
    const HWND target = capture ? capture : m_control;
    POINT client = screen;
    ::ScreenToClient(target, &client);
    if (!::PostMessageW(target, message, keys, MAKELPARAM(client.x, client.y))) ThrowWin32(L"PostMessageW");
    AwaitHandled();
}

void Mouse::AwaitHandled() {
    if (!m_handled) return;
    if (!PostProbe(m_list, m_probe)) ThrowWin32(L"PostMessageW");
    m_handled = AwaitAnswer(m_probe, m_deadline);
}

POINT Mouse::ToScreen(POINT client) const {
    ::ClientToScreen(m_control, &client);
    return client;
}

// Straight to the target in equal steps. A target closer than the drag threshold
// is reached by way of a point beyond it, towards the middle of the control, as a
// user's hand would go: the control starts a drag only once the mouse has left
// the threshold with the button down.
std::vector<POINT> Mouse::DragSteps(POINT from, POINT to) const {
    std::vector<POINT> steps;
    const int cx = ::GetSystemMetrics(SM_CXDRAG);
    const int cy = ::GetSystemMetrics(SM_CYDRAG);
    POINT start = from;
    if (std::abs(to.x - from.x) <= cx && std::abs(to.y - from.y) <= cy) {
        RECT client{};
        ::GetClientRect(m_control, &client);
        start.x += (from.x < client.right / 2 ? 1 : -1) * (2 * cx + 2);
        start.y += (from.y < client.bottom / 2 ? 1 : -1) * (2 * cy + 2);
        steps.push_back(start);
    }
    for (int step = 1; step <= kDragSteps; ++step)
        steps.push_back(POINT{start.x + (to.x - start.x) * step / kDragSteps,
                              start.y + (to.y - start.y) * step / kDragSteps});
    return steps;
}

void PostKey(HWND window, UINT virtualKey) {
    const UINT scan = ::MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC);
    const bool extended = virtualKey == VK_INSERT || virtualKey == VK_DELETE || virtualKey == VK_HOME ||
                          virtualKey == VK_END || virtualKey == VK_PRIOR || virtualKey == VK_NEXT ||
                          (virtualKey >= VK_LEFT && virtualKey <= VK_DOWN);
    const LPARAM down = 1 | (static_cast<LPARAM>(scan & 0xFF) << 16) | (extended ? (1 << 24) : 0);
    const LPARAM up = down | (static_cast<LPARAM>(1) << 30) | (static_cast<LPARAM>(1) << 31);
    if (!::PostMessageW(window, WM_KEYDOWN, virtualKey, down)) ThrowWin32(L"PostMessageW");
    if (!::PostMessageW(window, WM_KEYUP, virtualKey, up)) ThrowWin32(L"PostMessageW");
}

bool AwaitListHandled(HWND list, const Deadline& deadline) {
    const RemoteBuffer probe(list, sizeof(RECT));
    if (!PostProbe(list, probe)) ThrowWin32(L"PostMessageW");
    return AwaitAnswer(probe, deadline);
}

}  // namespace lpdriver
