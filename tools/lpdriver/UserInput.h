// A user's mouse on a control of another process: clicks, double-clicks and drags,
// delivered along one of two paths.
//
// System: SendInput, after bringing the control's frame to the foreground. The
// system routes each event as it routes a real mouse's: to the window under the
// pointer, or to the window that holds the capture. Nothing tells the driver when
// the program has taken an event, so a drag's steps are paced. When the point does
// not show the control (another window covers it) or SendInput injects nothing,
// the automatic choice takes the posted path instead, before any button goes down.
//
// Posted: the mouse messages a real mouse would bring, posted to the window that
// would get them (the control, or the window of its thread that holds the capture),
// at its client point. Each message is followed by a query the list answers from
// the same queue (LVM_GETVIEWRECT into memory of its process): when the answer is
// there, the program has handled the message, and the next one goes where the
// capture is now.
#pragma once
#include <windows.h>
#include "tools/lpdriver/Deadline.h"
#include "tools/lpdriver/RemoteBuffer.h"
#include <string>
#include <vector>

namespace lpdriver {

enum class InputPath { Automatic, System, Posted };

InputPath ParseInputPath(const std::wstring& word);
const wchar_t* InputPathName(InputPath path);

class Mouse {
public:
    // `control`: the window aimed at (the list, or its header); `list`: the list view
    // of the same thread, which answers the posted path's query.
    Mouse(HWND control, HWND list, InputPath path, const Deadline& deadline);

    // Points are client points of the control.
    void Click(POINT point);
    void DoubleClick(POINT point);
    // The right button pressed and let go there: the program's context menu.
    void RightClick(POINT point);
    void Drag(POINT from, POINT to);

    // Posted path: whether the program handled every message before the limit.
    // The system path cannot tell, and answers true.
    bool Handled() const noexcept { return m_handled; }
    // The path taken (System or Posted) once a gesture has begun.
    InputPath Path() const noexcept { return m_path; }
    // Why the automatic choice took the posted path; empty when it did not.
    const std::wstring& Fallback() const noexcept { return m_fallback; }

private:
    void Prepare(POINT screen);
    std::wstring SystemObstacle(POINT screen) const;
    void Press(POINT screen, UINT message, WPARAM keys);
    bool SendSystem(POINT screen, DWORD buttonFlags);
    void Post(POINT screen, UINT message, WPARAM keys);
    void AwaitHandled();
    POINT ToScreen(POINT client) const;
    std::vector<POINT> DragSteps(POINT from, POINT to) const;

    HWND m_control;
    HWND m_list;
    InputPath m_path;
    const Deadline& m_deadline;
    RemoteBuffer m_probe;
    bool m_handled = true;
    std::wstring m_fallback;
};

// Posts WM_KEYDOWN and WM_KEYUP for the key to the window, as a keyboard's driver
// makes them (scan code and extended bit in lParam). The key state of the thread
// is not changed: Shift or Ctrl posted this way do not modify the next key.
void PostKey(HWND window, UINT virtualKey);

// Posted keys reach a list before a later query to it: true once the list has
// answered one, or false at the limit.
bool AwaitListHandled(HWND list, const Deadline& deadline);

}  // namespace lpdriver
