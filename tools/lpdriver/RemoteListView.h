// A list control of another process, read and set through memory placed in that
// process: the control writes its texts, points and rectangles where the message
// points, inside its own space, and reads the states and orders it is given there.
#pragma once
#include <windows.h>
#include "tools/lpdriver/RemoteBuffer.h"
#include <string>
#include <vector>

namespace lpdriver {

// The sort arrow the header shows (HDF_SORTUP / HDF_SORTDOWN on one column).
struct SortState {
    int column = -1;         // -1: no column shows an arrow
    const wchar_t* direction = L"none";  // "up", "down" or "none"
};

class RemoteListView {
public:
    static constexpr const wchar_t* kClass = L"SysListView32";

    explicit RemoteListView(HWND listView);

    HWND Window() const noexcept { return m_listView; }
    int ItemCount() const;
    // The columns of the header; 1 when there is no header (the item text alone).
    int ColumnCount() const;
    std::vector<std::wstring> Headings(int columns) const;
    std::wstring ItemText(int item, int column) const;
    bool IsSelected(int item) const;
    int Focused() const;  // -1: no item has the focus
    DWORD View() const;   // LV_VIEW_ICON, LV_VIEW_DETAILS, LV_VIEW_SMALLICON, LV_VIEW_LIST

    // Client coordinates of the list, as LVM_GETITEMPOSITION and LVM_GETORIGIN answer.
    POINT ItemPosition(int item) const;
    // The control has an origin in the icon views only; elsewhere 0,0.
    POINT Origin() const;
    // LVIR_BOUNDS, LVIR_ICON or LVIR_LABEL; fails as "not found" for a row that is not there.
    RECT ItemRect(int item, int area) const;

    // The header control; null when the list has none (yet).
    HWND Header() const;
    // The header's items, 0 without a header.
    int HeaderItemCount() const;
    RECT HeaderItemRect(int column) const;
    SortState Sort() const;
    int ColumnWidth(int column) const;
    std::vector<int> ColumnOrder(int columns) const;

    // Selection (LVIS_SELECTED) and focus (LVIS_FOCUSED) of one row, or of every row for -1.
    void SetItemState(int item, UINT state, UINT mask) const;
    void SetColumnWidth(int column, int width) const;
    void SetColumnOrder(const std::vector<int>& order) const;

private:
    std::wstring ReadText() const;
    // A rectangle the window writes at the start of the buffer for `message`;
    // `first` is what its left edge holds on the way in (LVM_GETITEMRECT's LVIR_ code).
    bool AskRect(HWND window, UINT message, WPARAM wParam, LONG first, RECT& rect) const;

    HWND m_listView;
    RemoteBuffer m_buffer;
};

}  // namespace lpdriver
