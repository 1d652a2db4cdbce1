#include "dialogs/KYstdButtonColor.h"

#include <cwchar>

bool KYstdButtonColor::AttachTo(HWND dialog, int id) {
    if (m_hwnd) return ::GetDlgItem(dialog, id) == m_hwnd;
    HWND button = ::GetDlgItem(dialog, id);
    if (!button || !Subclass(button)) return false;
    SetColor(m_crColor, false);
    return true;
}

void KYstdButtonColor::SetColor(COLORREF color, bool redraw) {
    m_crColor = color;
    if (!m_hwnd) return;
    wchar_t name[48];
    std::swprintf(name, 48, L"RGB(%u, %u, %u)", GetRValue(color), GetGValue(color), GetBValue(color));
    SetText(name);
    if (redraw) ::InvalidateRect(m_hwnd, nullptr, TRUE);
}

HBRUSH KYstdButtonColor::Brush() {
    // One brush per colour shown: made again only when the colour changed.
    if (!m_brush || m_crBrush != m_crColor) {
        ky::UniqueHBrush made(::CreateSolidBrush(m_crColor));
        if (!made) return nullptr;
        m_brush = std::move(made);
        m_crBrush = m_crColor;
    }
    return m_brush.get();
}

void KYstdButtonColor::Draw(const DRAWITEMSTRUCT& item) {
    RECT r = item.rcItem;
    const bool pressed = (item.itemState & ODS_SELECTED) != 0;
    ::DrawEdge(item.hDC, &r, pressed ? EDGE_SUNKEN : EDGE_RAISED, BF_RECT | BF_ADJUST);
    if (HBRUSH brush = Brush()) ::FillRect(item.hDC, &r, brush);
    if (item.itemState & ODS_FOCUS) {
        RECT focus = r;
        ::InflateRect(&focus, -2, -2);
        ::DrawFocusRect(item.hDC, &focus);
    }
}

bool KYstdButtonColor::OnReflectedMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) {
    if (msg == WM_CTLCOLORBTN) {
        HDC dc = reinterpret_cast<HDC>(w);
        if (!dc) {
            result = 0;
            return true;
        }
        ::SetBkColor(dc, m_crColor);
        result = reinterpret_cast<LRESULT>(Brush());
        return true;
    }
    if (msg == WM_DRAWITEM && l) {
        Draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(l));
        result = TRUE;
        return true;
    }
    return false;
}
