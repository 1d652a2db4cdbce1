#include "framework/CmdUI.h"

namespace fw {

void CmdUI::Enable(bool on) {
    m_bEnabled = on;
    m_bHandled = true;
    if (m_hMenu)
        ::EnableMenuItem(m_hMenu, m_nIndex, MF_BYPOSITION | (on ? MF_ENABLED : MF_GRAYED));
}

void CmdUI::SetCheck(int state) {
    m_nCheck = state;
    m_bHandled = true;
    if (m_hMenu)
        ::CheckMenuItem(m_hMenu, m_nIndex, MF_BYPOSITION | (state ? MF_CHECKED : MF_UNCHECKED));
}

void CmdUI::SetRadio(bool on) {
    m_nCheck = on ? 1 : 0;
    m_bHandled = true;
    if (!m_hMenu) return;
    MENUITEMINFOW mii{};
    mii.cbSize = sizeof mii;
    mii.fMask = MIIM_FTYPE | MIIM_STATE;
    if (!::GetMenuItemInfoW(m_hMenu, m_nIndex, TRUE, &mii)) return;
    mii.fType |= MFT_RADIOCHECK;
    mii.fState = on ? (mii.fState | MFS_CHECKED) : (mii.fState & ~MFS_CHECKED);
    ::SetMenuItemInfoW(m_hMenu, m_nIndex, TRUE, &mii);
}

void CmdUI::SetText(const wchar_t* text) {
    m_bHandled = true;
    if (!m_hMenu || !text) return;
    MENUITEMINFOW mii{};
    mii.cbSize = sizeof mii;
    mii.fMask = MIIM_STRING;
    mii.dwTypeData = const_cast<wchar_t*>(text);
    ::SetMenuItemInfoW(m_hMenu, m_nIndex, TRUE, &mii);
}

}  // namespace fw
