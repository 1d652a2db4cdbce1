// The state of one command's user interface, given to update handlers (stands
// for CCmdUI): a menu item or a bar button is enabled, checked or renamed.
#pragma once
#include <windows.h>

namespace fw {

class CmdUI {
public:
    explicit CmdUI(UINT id, HMENU menu = nullptr, UINT index = 0) noexcept
        : m_nID(id), m_hMenu(menu), m_nIndex(index) {}
    virtual ~CmdUI() = default;

    virtual void Enable(bool on = true);
    virtual void SetCheck(int state = 1);
    virtual void SetText(const wchar_t* text);
    // A check shown as a dot: one of a group of choices.
    virtual void SetRadio(bool on = true);

    UINT m_nID;
    bool m_bEnabled = true;
    int m_nCheck = 0;
    bool m_bHandled = false;  // an update handler spoke

protected:
    HMENU m_hMenu;
    UINT m_nIndex;
};

}  // namespace fw
