// A row of command buttons along the top of a frame (stands for CToolBar): the
// buttons and their images come from a toolbar resource and the bitmap of the
// same id in the resource library; the frame keeps their states up to date at
// idle through the same update handlers as the menu items.
#pragma once
#include <windows.h>
#include <commctrl.h>

#include "foundation/UniqueHandle.h"
#include "framework/Window.h"

namespace fw {

class CmdTarget;

class ToolBar : public Window {
public:
    // Creates the bar (hidden until the frame shows it) as a child of parent.
    bool Create(HWND parent, DWORD style, UINT id);
    // Buttons and images of the toolbar resource id; false when either is missing.
    bool LoadToolBar(UINT resourceId);
    // Asks the update handler of each button for its state.
    void UpdateButtons(CmdTarget& target);
    // The height the bar takes at the top of its parent; 0 when hidden.
    int Height() const;
    int ButtonCount() const { return static_cast<int>(Send(TB_BUTTONCOUNT)); }

private:
    ky::UniqueHImageList m_images;
};

}  // namespace fw
