// A window that this program owns and whose messages it handles (stands for the
// message-handling half of CWnd): one static window procedure stores `this` at
// creation and dispatches every message to the virtual OnMessage.
#pragma once
#include "framework/Window.h"

namespace fw {

struct WindowCreateArgs {
    const wchar_t* className = nullptr;
    const wchar_t* title = L"";
    DWORD style = WS_OVERLAPPEDWINDOW;
    DWORD exStyle = 0;
    RECT rect{CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT};
    HWND parent = nullptr;
    HMENU menuOrId = nullptr;
};

class WindowImpl : public Window {
public:
    WindowImpl() noexcept = default;
    ~WindowImpl() override;

    // Registers the class (once, with this module's procedure) and creates the window.
    bool Create(const WindowCreateArgs& args);
    // Takes over an existing control's messages (a control of a system class).
    bool Subclass(HWND hwnd);
    // The object behind a window of this program, or null for any other window.
    static WindowImpl* FromHandle(HWND hwnd) noexcept;
    // A message about to be dispatched to this window or one of its children;
    // true when it was handled here (an accelerator, a dialog key).
    virtual bool PreTranslateMessage(MSG& msg) { (void)msg; return false; }
    // A notification this control sent its parent, handed back to the control's
    // own object (as the framework reflects them); true when handled, with result.
    virtual bool OnReflectedNotify(NMHDR& header, LRESULT& result) {
        (void)header;
        (void)result;
        return false;
    }
    // Any other message a control sends its parent (colours, owner drawing),
    // handed back to the control's own object; true when handled, with result.
    virtual bool OnReflectedMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) {
        (void)msg;
        (void)w;
        (void)l;
        (void)result;
        return false;
    }

protected:
    // Default: DefWindowProc, or the original procedure of a subclassed control.
    virtual LRESULT OnMessage(UINT msg, WPARAM w, LPARAM l);
    LRESULT DefaultProc(UINT msg, WPARAM w, LPARAM l);
    // The window is gone; the object may still live.
    virtual void OnFinalMessage() {}

private:
    static LRESULT CALLBACK StaticProc(HWND hwnd, UINT msg, WPARAM w, LPARAM l) noexcept;
    static LRESULT CALLBACK SubclassProc(HWND hwnd, UINT msg, WPARAM w, LPARAM l) noexcept;
    LRESULT Dispatch(UINT msg, WPARAM w, LPARAM l) noexcept;
    WNDPROC m_originalProc = nullptr;
};

}  // namespace fw
