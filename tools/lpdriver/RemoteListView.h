// A list control of another process, read through memory placed in that process:
// the control writes its texts where the item record points, inside its own space.
#pragma once
#include <windows.h>
#include "tools/lpdriver/RemoteBuffer.h"
#include <string>
#include <vector>

namespace lpdriver {

class RemoteListView {
public:
    static constexpr const wchar_t* kClass = L"SysListView32";

    explicit RemoteListView(HWND listView);

    int ItemCount() const;
    // The columns of the header; 1 when there is no header (the item text alone).
    int ColumnCount() const;
    std::vector<std::wstring> Headings(int columns) const;
    std::wstring ItemText(int item, int column) const;
    bool IsSelected(int item) const;
    int Focused() const;  // -1: no item has the focus
    DWORD View() const;   // LV_VIEW_ICON, LV_VIEW_DETAILS, LV_VIEW_SMALLICON, LV_VIEW_LIST

private:
    std::wstring ReadText() const;

    HWND m_listView;
    RemoteBuffer m_buffer;
};

}  // namespace lpdriver
