#include "window/KYjlpStatusBar.h"

#include "framework/ResourceModule.h"
#include "window/KYjlpViewList.h"

bool KYjlpStatusBar::Create(HWND parent, UINT id, DWORD style) {
    const DWORD windowBits = (style & 0xFFFF0000) & ~static_cast<DWORD>(WS_VISIBLE);
    m_hwnd = CreateWindowExW(0, STATUSCLASSNAMEW, L"", windowBits | WS_CHILD | SBARS_SIZEGRIP, 0, 0, 0, 0, parent,
                             reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    return m_hwnd != nullptr;
}

bool KYjlpStatusBar::SetIndicatorsTracked(const int* rightEdges, int count) {
    m_pbOverride.reset();
    m_nPanes = 0;
    if (!m_hwnd || !rightEdges || count < 1) return false;
    if (!SendMessageW(m_hwnd, SB_SETPARTS, static_cast<WPARAM>(count), reinterpret_cast<LPARAM>(rightEdges)))
        return false;
    m_pbOverride = std::make_unique<int[]>(static_cast<size_t>(count));
    m_nPanes = count;
    return true;
}

bool KYjlpStatusBar::IsOverridden(int pane) const {
    return !m_pbOverride || pane < 0 || pane >= m_nPanes || m_pbOverride[static_cast<size_t>(pane)] != 0;
}

std::wstring KYjlpStatusBar::PaneText(int pane) const {
    const LRESULT length = LOWORD(SendMessageW(m_hwnd, SB_GETTEXTLENGTHW, static_cast<WPARAM>(pane), 0));
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    SendMessageW(m_hwnd, SB_GETTEXTW, static_cast<WPARAM>(pane), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<size_t>(length));
    return text;
}

bool KYjlpStatusBar::SetOverrideText(int pane, const std::wstring& text) {
    if (!m_hwnd || !IsWindowVisible(m_hwnd) || pane < 0 || pane >= m_nPanes) return false;
    m_pbOverride[static_cast<size_t>(pane)] = 1;
    if (!SendMessageW(m_hwnd, SB_SETTEXTW, static_cast<WPARAM>(pane), reinterpret_cast<LPARAM>(text.c_str()))) {
        m_pbOverride[static_cast<size_t>(pane)] = 0;  // a message that could not be shown holds nothing
        return false;
    }
    UpdateWindow(m_hwnd);
    return true;
}

void KYjlpStatusBar::ClearOverride(int pane) {
    if (m_pbOverride && pane >= 0 && pane < m_nPanes) m_pbOverride[static_cast<size_t>(pane)] = 0;
}

bool KYjlpStatusBar::RefreshPaneCount(const KYjlpViewList* view) {
    if (!m_hwnd || !IsWindowVisible(m_hwnd) || IsOverridden(0) || !view || !*view) return false;
    const int rows = view->GetItemCount();
    const int selected = rows > 0 ? static_cast<int>(ListView_GetSelectedCount(view->Handle())) : 0;
    const UINT id = selected > 0 ? 24656 : 24655;
    wchar_t text[256] = {};
    if (_snwprintf(text, 255, fw::ResString(id).c_str(), selected > 0 ? selected : rows) <= 0 || !text[0]) return false;
    if (PaneText(0) == text) return true;
    SendMessageW(m_hwnd, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(text));
    UpdateWindow(m_hwnd);
    return true;
}

int KYjlpStatusBar::Height() const {
    if (!m_hwnd || !IsWindowVisible(m_hwnd)) return 0;
    RECT r{};
    GetWindowRect(m_hwnd, &r);
    return r.bottom - r.top;
}
