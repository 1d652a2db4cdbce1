// The list's colours, as the view options choose them.
#include "window/KYjlpViewList.h"

bool KYjlpViewList::SetColors(COLORREF background, COLORREF text) {
    if (!m_hwnd) return false;
    // The texts are drawn on the same background, so that no band of another colour shows behind them.
    const bool ok = ListView_SetBkColor(m_hwnd, background) && ListView_SetTextBkColor(m_hwnd, background) &&
                    ListView_SetTextColor(m_hwnd, text);
    return ok;
}
