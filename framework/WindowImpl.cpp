#include "framework/WindowImpl.h"

namespace fw {

namespace {
const wchar_t kThisProperty[] = L"LaunchPanel.Window";
}

WindowImpl::~WindowImpl() {
    // An object that dies before its window stops its messages reaching freed memory.
    if (m_hwnd && ::IsWindow(m_hwnd)) {
        ::RemovePropW(m_hwnd, kThisProperty);
        if (m_originalProc)
            ::SetWindowLongPtrW(m_hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_originalProc));
        else
            ::SetWindowLongPtrW(m_hwnd, GWLP_USERDATA, 0);
    }
}

bool WindowImpl::Create(const WindowCreateArgs& args) {
    HINSTANCE instance = ::GetModuleHandleW(nullptr);
    WNDCLASSEXW wc{};
    wc.cbSize = sizeof wc;
    if (!::GetClassInfoExW(instance, args.className, &wc)) {
        wc.cbSize = sizeof wc;
        wc.style = CS_DBLCLKS;
        wc.lpfnWndProc = StaticProc;
        wc.hInstance = instance;
        wc.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
        wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
        wc.lpszClassName = args.className;
        wc.hIcon = ::LoadIconW(instance, MAKEINTRESOURCEW(128));
        if (!::RegisterClassExW(&wc)) return false;
    }
    const RECT& r = args.rect;
    int width = r.right == CW_USEDEFAULT ? CW_USEDEFAULT : r.right - r.left;
    int height = r.bottom == CW_USEDEFAULT ? CW_USEDEFAULT : r.bottom - r.top;
    HWND hwnd = ::CreateWindowExW(args.exStyle, args.className, args.title, args.style, r.left,
                                  r.top, width, height, args.parent, args.menuOrId, instance, this);
    return hwnd != nullptr;
}

bool WindowImpl::Subclass(HWND hwnd) {
    if (!hwnd || m_hwnd) return false;
    m_hwnd = hwnd;
    ::SetPropW(hwnd, kThisProperty, this);
    m_originalProc = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrW(hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(SubclassProc)));
    return m_originalProc != nullptr;
}

WindowImpl* WindowImpl::FromHandle(HWND hwnd) noexcept {
    if (!hwnd) return nullptr;
    if (auto* subclassed = static_cast<WindowImpl*>(::GetPropW(hwnd, kThisProperty))) return subclassed;
    // The user data of a window is ours only when our procedure runs it.
    if (reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(hwnd, GWLP_WNDPROC)) != StaticProc) return nullptr;
    return reinterpret_cast<WindowImpl*>(::GetWindowLongPtrW(hwnd, GWLP_USERDATA));
}

LRESULT WindowImpl::OnMessage(UINT msg, WPARAM w, LPARAM l) { return DefaultProc(msg, w, l); }

LRESULT WindowImpl::DefaultProc(UINT msg, WPARAM w, LPARAM l) {
    if (m_originalProc) return ::CallWindowProcW(m_originalProc, m_hwnd, msg, w, l);
    return ::DefWindowProcW(m_hwnd, msg, w, l);
}

LRESULT WindowImpl::Dispatch(UINT msg, WPARAM w, LPARAM l) noexcept {
    LRESULT result = 0;
    try {
        result = OnMessage(msg, w, l);
    } catch (...) {
        // A handler must never take the message loop down; the failure was its to report.
        result = DefaultProc(msg, w, l);
    }
    if (msg == WM_NCDESTROY) {
        ::RemovePropW(m_hwnd, kThisProperty);
        m_hwnd = nullptr;
        OnFinalMessage();
    }
    return result;
}

LRESULT CALLBACK WindowImpl::StaticProc(HWND hwnd, UINT msg, WPARAM w, LPARAM l) noexcept {
    auto* self = reinterpret_cast<WindowImpl*>(::GetWindowLongPtrW(hwnd, GWLP_USERDATA));
    if (!self && msg == WM_NCCREATE) {
        self = static_cast<WindowImpl*>(reinterpret_cast<CREATESTRUCTW*>(l)->lpCreateParams);
        self->m_hwnd = hwnd;
        ::SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    if (!self) return ::DefWindowProcW(hwnd, msg, w, l);
    if (msg == WM_NCDESTROY) ::SetWindowLongPtrW(hwnd, GWLP_USERDATA, 0);
    return self->Dispatch(msg, w, l);
}

LRESULT CALLBACK WindowImpl::SubclassProc(HWND hwnd, UINT msg, WPARAM w, LPARAM l) noexcept {
    auto* self = static_cast<WindowImpl*>(::GetPropW(hwnd, kThisProperty));
    if (!self) return ::DefWindowProcW(hwnd, msg, w, l);
    if (msg == WM_NCDESTROY) {
        WNDPROC original = self->m_originalProc;
        ::SetWindowLongPtrW(hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(original));
        LRESULT r = self->Dispatch(msg, w, l);
        self->m_originalProc = nullptr;
        return r;
    }
    return self->Dispatch(msg, w, l);
}

}  // namespace fw
