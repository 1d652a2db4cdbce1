#include "window/KYjlpViewList.h"

#include "framework/FrameWnd.h"

bool KYjlpViewList::CreateView(fw::FrameWnd& frame, UINT id) {
    RECT r{};
    frame.GetClientRect(r);
    HWND hwnd = CreateWindowExW(0, WC_LISTVIEWW, L"",
                                WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | LVS_REPORT | LVS_SHAREIMAGELISTS,
                                r.left, r.top, r.right - r.left, r.bottom - r.top, frame.Handle(),
                                reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)),
                                GetModuleHandleW(nullptr), nullptr);
    return hwnd && Subclass(hwnd);
}
