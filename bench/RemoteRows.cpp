#include "bench/RemoteRows.h"

#include <commctrl.h>

namespace bench {

namespace {
// One request record, then its text.
constexpr size_t kTextOffset = 256;
constexpr size_t kTextChars = 1024;
static_assert(sizeof(LVITEMW) <= kTextOffset && sizeof(LVCOLUMNW) <= kTextOffset &&
              sizeof(LVFINDINFOW) <= kTextOffset);
}  // namespace

RemoteRows::RemoteRows(WatchedProgram& program, double limitMs)
    : m_program(program),
      m_list(program.list()),
      m_limitMs(limitMs),
      m_buffer(program.list(), kTextOffset + kTextChars * sizeof(wchar_t)) {}

std::wstring RemoteRows::ReadText() {
    std::wstring text(kTextChars, L'\0');
    m_buffer.Read(kTextOffset, text.data(), kTextChars * sizeof(wchar_t));
    text.resize(text.find(L'\0') == std::wstring::npos ? kTextChars - 1 : text.find(L'\0'));
    return text;
}

int RemoteRows::FindColumn(const std::wstring& heading) {
    LRESULT header = 0, columns = 0;
    if (!m_program.Ask(m_list, LVM_GETHEADER, 0, 0, m_limitMs, &header) || !header) return -1;
    if (!m_program.Ask(reinterpret_cast<HWND>(header), HDM_GETITEMCOUNT, 0, 0, m_limitMs, &columns)) return -1;
    for (int column = 0; column < columns; ++column) {
        LVCOLUMNW record{};
        record.mask = LVCF_TEXT;
        record.pszText = reinterpret_cast<wchar_t*>(m_buffer.At(kTextOffset));
        record.cchTextMax = static_cast<int>(kTextChars);
        m_buffer.Write(0, &record, sizeof record);
        LRESULT known = 0;
        if (m_program.Ask(m_list, LVM_GETCOLUMNW, column, m_buffer.At(0), m_limitMs, &known) && known &&
            _wcsicmp(ReadText().c_str(), heading.c_str()) == 0)
            return column;
    }
    return -1;
}

int RemoteRows::FindRow(const std::wstring& name) {
    if (name.size() >= kTextChars) return -1;
    m_buffer.Write(kTextOffset, name.c_str(), (name.size() + 1) * sizeof(wchar_t));
    LVFINDINFOW find{};
    find.flags = LVFI_STRING;
    find.psz = reinterpret_cast<const wchar_t*>(m_buffer.At(kTextOffset));
    m_buffer.Write(0, &find, sizeof find);
    LRESULT row = -1;
    if (!m_program.Ask(m_list, LVM_FINDITEMW, static_cast<WPARAM>(-1), m_buffer.At(0), m_limitMs, &row)) return -1;
    return static_cast<int>(row);
}

std::wstring RemoteRows::Cell(int row, int column) {
    LVITEMW record{};
    record.iSubItem = column;
    record.pszText = reinterpret_cast<wchar_t*>(m_buffer.At(kTextOffset));
    record.cchTextMax = static_cast<int>(kTextChars);
    m_buffer.Write(0, &record, sizeof record);
    const wchar_t none = L'\0';
    m_buffer.Write(kTextOffset, &none, sizeof none);
    if (!m_program.Ask(m_list, LVM_GETITEMTEXTW, row, m_buffer.At(0), m_limitMs)) return {};
    return ReadText();
}

}  // namespace bench
