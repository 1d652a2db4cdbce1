#include "tools/lpdriver/RemoteListView.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/ProcessWindows.h"
#include <commctrl.h>

namespace lpdriver {

namespace {

// The remote buffer holds one record (item, column, header item, point, rectangle)
// and, after it, its text, or an array of column numbers.
constexpr size_t kTextOffset = 256;
constexpr size_t kTextChars = 4096;
constexpr size_t kBufferSize = kTextOffset + kTextChars * sizeof(wchar_t);
static_assert(sizeof(LVITEMW) <= kTextOffset && sizeof(LVCOLUMNW) <= kTextOffset &&
              sizeof(HDITEMW) <= kTextOffset);
constexpr size_t kMostColumns = kBufferSize / sizeof(int);

}  // namespace

RemoteListView::RemoteListView(HWND listView) : m_listView(listView), m_buffer(listView, kBufferSize) {}

int RemoteListView::ItemCount() const {
    return static_cast<int>(ProcessWindows::Ask(m_listView, LVM_GETITEMCOUNT, 0, 0));
}

int RemoteListView::ColumnCount() const {
    const int count = HeaderItemCount();
    return count > 0 ? count : 1;
}

std::vector<std::wstring> RemoteListView::Headings(int columns) const {
    std::vector<std::wstring> headings;
    for (int column = 0; column < columns; ++column) {
        LVCOLUMNW record{};
        record.mask = LVCF_TEXT;
        record.pszText = reinterpret_cast<LPWSTR>(m_buffer.At(kTextOffset));
        record.cchTextMax = static_cast<int>(kTextChars);
        m_buffer.Write(0, &record, sizeof record);
        const wchar_t none = L'\0';
        m_buffer.Write(kTextOffset, &none, sizeof none);
        // A list without columns (not in details view) answers false: an empty heading.
        const bool known = ProcessWindows::Ask(m_listView, LVM_GETCOLUMNW, column, m_buffer.At(0)) != 0;
        headings.push_back(known ? ReadText() : std::wstring());
    }
    return headings;
}

std::wstring RemoteListView::ItemText(int item, int column) const {
    LVITEMW record{};
    record.iSubItem = column;
    record.pszText = reinterpret_cast<LPWSTR>(m_buffer.At(kTextOffset));
    record.cchTextMax = static_cast<int>(kTextChars);
    m_buffer.Write(0, &record, sizeof record);
    const wchar_t none = L'\0';
    m_buffer.Write(kTextOffset, &none, sizeof none);
    ProcessWindows::Ask(m_listView, LVM_GETITEMTEXTW, item, m_buffer.At(0));
    return ReadText();
}

bool RemoteListView::IsSelected(int item) const {
    return (ProcessWindows::Ask(m_listView, LVM_GETITEMSTATE, item, LVIS_SELECTED) & LVIS_SELECTED) != 0;
}

int RemoteListView::Focused() const {
    return static_cast<int>(ProcessWindows::Ask(m_listView, LVM_GETNEXTITEM, static_cast<WPARAM>(-1),
                                                MAKELPARAM(LVNI_FOCUSED, 0)));
}

DWORD RemoteListView::View() const {
    return static_cast<DWORD>(ProcessWindows::Ask(m_listView, LVM_GETVIEW, 0, 0));
}

POINT RemoteListView::ItemPosition(int item) const {
    POINT point{};
    m_buffer.Write(0, &point, sizeof point);
    if (!ProcessWindows::Ask(m_listView, LVM_GETITEMPOSITION, item, m_buffer.At(0)))
        ThrowNotFound(L"the list has no row " + std::to_wstring(item));
    m_buffer.Read(0, &point, sizeof point);
    return point;
}

POINT RemoteListView::Origin() const {
    // Outside the icon views the control answers false and leaves the point as it was.
    POINT point{};
    m_buffer.Write(0, &point, sizeof point);
    ProcessWindows::Ask(m_listView, LVM_GETORIGIN, 0, m_buffer.At(0));
    m_buffer.Read(0, &point, sizeof point);
    return point;
}

RECT RemoteListView::ItemRect(int item, int area) const {
    RECT rect{};
    if (!AskRect(m_listView, LVM_GETITEMRECT, item, area, rect))
        ThrowNotFound(L"the list has no row " + std::to_wstring(item));
    return rect;
}

HWND RemoteListView::Header() const {
    return reinterpret_cast<HWND>(ProcessWindows::Ask(m_listView, LVM_GETHEADER, 0, 0));
}

int RemoteListView::HeaderItemCount() const {
    const HWND header = Header();
    if (header == nullptr) return 0;
    const int count = static_cast<int>(ProcessWindows::Ask(header, HDM_GETITEMCOUNT, 0, 0));
    return count > 0 ? count : 0;
}

RECT RemoteListView::HeaderItemRect(int column) const {
    const HWND header = Header();
    RECT rect{};
    if (header == nullptr || !AskRect(header, HDM_GETITEMRECT, column, 0, rect))
        ThrowNotFound(L"the list has no column " + std::to_wstring(column));
    return rect;
}

SortState RemoteListView::Sort() const {
    const HWND header = Header();
    const int columns = HeaderItemCount();
    for (int column = 0; column < columns; ++column) {
        HDITEMW record{};
        record.mask = HDI_FORMAT;
        m_buffer.Write(0, &record, sizeof record);
        if (!ProcessWindows::Ask(header, HDM_GETITEMW, column, m_buffer.At(0))) continue;
        m_buffer.Read(0, &record, sizeof record);
        if (record.fmt & HDF_SORTUP) return {column, L"up"};
        if (record.fmt & HDF_SORTDOWN) return {column, L"down"};
    }
    return {};
}

int RemoteListView::ColumnWidth(int column) const {
    return static_cast<int>(ProcessWindows::Ask(m_listView, LVM_GETCOLUMNWIDTH, column, 0));
}

std::vector<int> RemoteListView::ColumnOrder(int columns) const {
    if (columns <= 0 || static_cast<size_t>(columns) > kMostColumns) return {};
    std::vector<int> order(static_cast<size_t>(columns), -1);
    m_buffer.Write(0, order.data(), order.size() * sizeof(int));
    if (!ProcessWindows::Ask(m_listView, LVM_GETCOLUMNORDERARRAY, columns, m_buffer.At(0)))
        throw DriverFailure{kExitWin32, L"the list did not answer LVM_GETCOLUMNORDERARRAY"};
    m_buffer.Read(0, order.data(), order.size() * sizeof(int));
    return order;
}

void RemoteListView::SetItemState(int item, UINT state, UINT mask) const {
    LVITEMW record{};
    record.state = state;
    record.stateMask = mask;
    m_buffer.Write(0, &record, sizeof record);
    if (!ProcessWindows::Ask(m_listView, LVM_SETITEMSTATE, static_cast<WPARAM>(item), m_buffer.At(0)))
        throw DriverFailure{kExitWin32, L"the list refused LVM_SETITEMSTATE for row " + std::to_wstring(item)};
}

void RemoteListView::SetColumnWidth(int column, int width) const {
    if (!ProcessWindows::Ask(m_listView, LVM_SETCOLUMNWIDTH, column, MAKELPARAM(width, 0)))
        throw DriverFailure{kExitWin32, L"the list refused LVM_SETCOLUMNWIDTH for column " +
                                            std::to_wstring(column)};
}

void RemoteListView::SetColumnOrder(const std::vector<int>& order) const {
    if (order.empty() || order.size() > kMostColumns) ThrowUsage(L"a column order names 1 or more columns");
    m_buffer.Write(0, order.data(), order.size() * sizeof(int));
    if (!ProcessWindows::Ask(m_listView, LVM_SETCOLUMNORDERARRAY, order.size(), m_buffer.At(0)))
        throw DriverFailure{kExitWin32, L"the list refused LVM_SETCOLUMNORDERARRAY"};
}

std::wstring RemoteListView::ReadText() const {
    // A callback item may hand back a pointer of its own instead of filling the
    // buffer; its text is then out of reach and reads as empty.
    std::wstring text(kTextChars, L'\0');
    m_buffer.Read(kTextOffset, text.data(), kTextChars * sizeof(wchar_t));
    text.resize(text.find(L'\0') == std::wstring::npos ? kTextChars - 1 : text.find(L'\0'));
    return text;
}

bool RemoteListView::AskRect(HWND window, UINT message, WPARAM wParam, LONG first, RECT& rect) const {
    rect = RECT{first, 0, 0, 0};
    m_buffer.Write(0, &rect, sizeof rect);
    if (!ProcessWindows::Ask(window, message, wParam, m_buffer.At(0))) return false;
    m_buffer.Read(0, &rect, sizeof rect);
    return true;
}

}  // namespace lpdriver
