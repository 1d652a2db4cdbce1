// Icons dragged by the user to places of their own: the rows move together by
// the distance the grabbed one went, and from then on the icons stand where the
// user put them (they are saved, not sorted away). In Details and List a drag
// shows only the no-drop cursor.
#include "window/KYjlpViewList.h"

namespace {
bool IsIconMode(int mode) { return mode == KYjlpViewList::kLargeIcons || mode == KYjlpViewList::kSmallIcons; }
}  // namespace

void KYjlpViewList::ResetDrag() {
    if (m_drag.image) {
        ImageList_DragLeave(GetDesktopWindow());
        ImageList_EndDrag();
    }
    if (m_drag.captured) {
        // Letting the capture go tells this window; the drag is over by then.
        m_drag.captured = false;
        m_drag.rows.clear();
        ReleaseCapture();
    }
    if (m_drag.cursorOld) SetCursor(m_drag.cursorOld);
    m_drag = DragContext{};
}

void KYjlpViewList::BeginItemDrag(const NMLISTVIEW& begin) {
    ResetDrag();
    const int mode = ViewModeOf();
    if (IsIconMode(mode)) {
        ListView_GetOrigin(m_hwnd, &m_drag.origin);
    } else if (HWND header = ListView_GetHeader(m_hwnd); header && IsWindowVisible(header)) {
        RECT r{};
        GetWindowRect(header, &r);
        m_drag.origin = {0, r.bottom - r.top};
    }
    const int grabbed = begin.iItem;
    if (ListView_GetSelectedCount(m_hwnd) == 0 || grabbed < 0 || grabbed >= GetItemCount()) return;
    m_drag.rows.push_back(grabbed);
    for (int row = ListView_GetNextItem(m_hwnd, -1, LVNI_SELECTED); row >= 0;
         row = ListView_GetNextItem(m_hwnd, row, LVNI_SELECTED))
        if (row != grabbed) m_drag.rows.push_back(row);
    POINT position{};
    ListView_GetItemPosition(m_hwnd, grabbed, &position);
    m_drag.grab = {begin.ptAction.x - position.x, begin.ptAction.y - position.y};
    if (m_drag.rows.size() == 1) {
        POINT imageAt{};
        m_drag.image.reset(ListView_CreateDragImage(m_hwnd, grabbed, &imageAt));
        if (m_drag.image) {
            m_drag.hot = {begin.ptAction.x - imageAt.x, begin.ptAction.y - imageAt.y};
            POINT screen = begin.ptAction;
            ClientToScreen(m_hwnd, &screen);
            ImageList_BeginDrag(m_drag.image.get(), 0, 0, 0);
            ImageList_DragEnter(GetDesktopWindow(), screen.x - m_drag.hot.x, screen.y - m_drag.hot.y);
        }
    } else {
        m_drag.track = false;  // several rows jump on release; nothing follows the mouse
    }
    SetCapture(m_hwnd);
    m_drag.captured = true;
    if (!IsIconMode(mode)) m_drag.cursorOld = SetCursor(LoadCursorW(nullptr, IDC_NO));
}

// The drag image follows the mouse; at an edge the view scrolls 20 pixels a move.
void KYjlpViewList::TrackDrag(POINT client) {
    if (m_drag.rows.empty() || !m_drag.track) return;
    POINT screen = client;
    ClientToScreen(m_hwnd, &screen);
    if (m_drag.image) ImageList_DragMove(screen.x - m_drag.hot.x, screen.y - m_drag.hot.y);
    LVHITTESTINFO hit{};
    hit.pt = client;
    ListView_HitTest(m_hwnd, &hit);
    const int dx = (hit.flags & LVHT_TOLEFT) ? -20 : (hit.flags & LVHT_TORIGHT) ? 20 : 0;
    const int dy = (hit.flags & LVHT_ABOVE) ? -20 : (hit.flags & LVHT_BELOW) ? 20 : 0;
    if ((dx || dy) && IsIconMode(ViewModeOf())) {
        if (m_drag.image) ImageList_DragShowNolock(FALSE);
        ListView_Scroll(m_hwnd, dx, dy);
        if (m_drag.image) ImageList_DragShowNolock(TRUE);
    }
}

void KYjlpViewList::EndDrag(POINT client) {
    if (m_drag.rows.empty()) return;
    if (m_drag.image) {
        ImageList_DragLeave(GetDesktopWindow());
        ImageList_EndDrag();
        m_drag.image.reset();
    }
    if (IsIconMode(ViewModeOf())) {
        POINT origin{}, grabbed{};
        ListView_GetOrigin(m_hwnd, &origin);
        ListView_GetItemPosition(m_hwnd, m_drag.rows.front(), &grabbed);
        const int dx = client.x + (origin.x - m_drag.origin.x) - m_drag.grab.x - grabbed.x;
        const int dy = client.y + (origin.y - m_drag.origin.y) - m_drag.grab.y - grabbed.y;
        for (auto row = m_drag.rows.rbegin(); row != m_drag.rows.rend(); ++row) {
            POINT at{};
            ListView_GetItemPosition(m_hwnd, *row, &at);
            ListView_SetItemPosition32(m_hwnd, *row, at.x + dx, at.y + dy);
        }
        m_sort.iconsPlaced = true;
    }
    ResetDrag();
    InvalidateRect(m_hwnd, nullptr, TRUE);
}
