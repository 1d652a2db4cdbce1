// A non-owning, non-copyable handle of a window (stands for CWnd's plain calls):
// one-line wrappers over the Win32 window functions.
#pragma once
#include <windows.h>
#include <string>

namespace fw {

class Window {
public:
    Window() noexcept = default;
    explicit Window(HWND hwnd) noexcept : m_hwnd(hwnd) {}
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window() = default;

    HWND Handle() const noexcept { return m_hwnd; }
    explicit operator bool() const noexcept { return m_hwnd != nullptr && ::IsWindow(m_hwnd); }
    void Attach(HWND hwnd) noexcept { m_hwnd = hwnd; }
    HWND Detach() noexcept { HWND h = m_hwnd; m_hwnd = nullptr; return h; }

    bool Show(int how) const noexcept { return ::ShowWindow(m_hwnd, how) != FALSE; }
    bool IsVisible() const noexcept { return ::IsWindowVisible(m_hwnd) != FALSE; }
    bool Update() const noexcept { return ::UpdateWindow(m_hwnd) != FALSE; }
    bool Destroy() noexcept { return ::DestroyWindow(m_hwnd) != FALSE; }
    bool Move(const RECT& r, bool repaint = true) const noexcept {
        return ::MoveWindow(m_hwnd, r.left, r.top, r.right - r.left, r.bottom - r.top, repaint) != FALSE;
    }
    bool GetClientRect(RECT& r) const noexcept { return ::GetClientRect(m_hwnd, &r) != FALSE; }
    bool SetText(const wchar_t* text) const noexcept { return ::SetWindowTextW(m_hwnd, text) != FALSE; }
    std::wstring GetText() const;
    LRESULT Send(UINT msg, WPARAM w = 0, LPARAM l = 0) const noexcept { return ::SendMessageW(m_hwnd, msg, w, l); }
    bool Post(UINT msg, WPARAM w = 0, LPARAM l = 0) const noexcept { return ::PostMessageW(m_hwnd, msg, w, l) != FALSE; }
    LONG_PTR Style() const noexcept { return ::GetWindowLongPtrW(m_hwnd, GWL_STYLE); }
    LONG_PTR ExStyle() const noexcept { return ::GetWindowLongPtrW(m_hwnd, GWL_EXSTYLE); }
    HMENU Menu() const noexcept { return ::GetMenu(m_hwnd); }
    bool SetTimer(UINT_PTR id, UINT ms) const noexcept { return ::SetTimer(m_hwnd, id, ms, nullptr) != 0; }
    bool KillTimer(UINT_PTR id) const noexcept { return ::KillTimer(m_hwnd, id) != FALSE; }

protected:
    HWND m_hwnd = nullptr;
};

}  // namespace fw
