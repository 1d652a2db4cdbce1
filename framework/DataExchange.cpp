#include "framework/DataExchange.h"

#include <vector>

namespace fw {

HWND DataExchange::Control(int id) {
    HWND control = ::GetDlgItem(m_dialog, id);
    if (!control) m_failed = true;
    return control;
}

void DataExchange::Check(int id, int& value) {
    HWND control = Control(id);
    if (!control) return;
    if (m_save)
        value = static_cast<int>(::SendMessageW(control, BM_GETCHECK, 0, 0));
    else
        ::SendMessageW(control, BM_SETCHECK, static_cast<WPARAM>(value), 0);
}

void DataExchange::Text(int id, std::wstring& value) {
    HWND control = Control(id);
    if (!control) return;
    if (!m_save) {
        ::SetWindowTextW(control, value.c_str());
        return;
    }
    const int length = ::GetWindowTextLengthW(control);
    std::vector<wchar_t> text(static_cast<size_t>(length) + 1, L'\0');
    ::GetWindowTextW(control, text.data(), length + 1);
    value = text.data();
}

}  // namespace fw
