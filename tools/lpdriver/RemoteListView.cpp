#include "tools/lpdriver/RemoteListView.h"
#include "tools/lpdriver/ProcessWindows.h"
#include <commctrl.h>

namespace lpdriver {

namespace {

// The remote buffer holds one record (item or column) and, after it, its text.
constexpr size_t kTextOffset = 256;
constexpr size_t kTextChars = 4096;
static_assert(sizeof(LVITEMW) <= kTextOffset && sizeof(LVCOLUMNW) <= kTextOffset);

}  // namespace

RemoteListView::RemoteListView(HWND listView)
    : m_listView(listView), m_buffer(listView, kTextOffset + kTextChars * sizeof(wchar_t)) {}

int RemoteListView::ItemCount() const {
    return static_cast<int>(ProcessWindows::Ask(m_listView, LVM_GETITEMCOUNT, 0, 0));
}

int RemoteListView::ColumnCount() const {
    const HWND header = reinterpret_cast<HWND>(ProcessWindows::Ask(m_listView, LVM_GETHEADER, 0, 0));
    if (header == nullptr) return 1;
    const int count = static_cast<int>(ProcessWindows::Ask(header, HDM_GETITEMCOUNT, 0, 0));
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

std::wstring RemoteListView::ReadText() const {
    // A callback item may hand back a pointer of its own instead of filling the
    // buffer; its text is then out of reach and reads as empty.
    std::wstring text(kTextChars, L'\0');
    m_buffer.Read(kTextOffset, text.data(), kTextChars * sizeof(wchar_t));
    text.resize(text.find(L'\0') == std::wstring::npos ? kTextChars - 1 : text.find(L'\0'));
    return text;
}

}  // namespace lpdriver
