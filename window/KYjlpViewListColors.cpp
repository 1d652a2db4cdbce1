// The list's colours, as the view options choose them.
#include "dialogs/KYjlpDlgVO.h"
#include "document/KYjlpDoc.h"
#include "foundation/UniqueHandle.h"
#include "window/KYjlpViewList.h"

bool KYjlpViewList::SetColors(COLORREF background, COLORREF text) {
    if (!m_hwnd) return false;
    // The texts are drawn on the same background, so that no band of another colour shows behind them.
    const bool ok = ListView_SetBkColor(m_hwnd, background) && ListView_SetTextBkColor(m_hwnd, background) &&
                    ListView_SetTextColor(m_hwnd, text);
    return ok;
}

// The list's background: the colour the user chose in the options, or the
// desktop's before the options exist.
bool KYjlpViewList::OnEraseBkgnd(HDC dc) {
    auto* doc = dynamic_cast<KYjlpDoc*>(GetDocument());
    const KYjlpDlgVO* options = doc ? doc->OptionsDialog() : nullptr;
    const COLORREF colour = options ? options->SavedOptions().crBackground : ::GetSysColor(COLOR_DESKTOP);
    ky::UniqueHBrush brush(::CreateSolidBrush(colour));
    if (!dc || !brush) return false;
    const HGDIOBJ previous = ::SelectObject(dc, brush.get());
    RECT clip{};
    ::GetClipBox(dc, &clip);
    const BOOL painted = ::PatBlt(dc, clip.left, clip.top, clip.right - clip.left, clip.bottom - clip.top, PATCOPY);
    ::SelectObject(dc, previous);
    return painted != FALSE;
}
