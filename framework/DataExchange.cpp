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

void DataExchange::ListString(int id, std::wstring& value) {
    HWND control = Control(id);
    if (!control) return;
    if (!m_save) {
        ::SendMessageW(control, LB_SELECTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(value.c_str()));
        return;
    }
    const LRESULT index = ::SendMessageW(control, LB_GETCURSEL, 0, 0);
    const LRESULT length = index < 0 ? LB_ERR : ::SendMessageW(control, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0);
    if (length < 0) {
        value.clear();
        return;
    }
    std::vector<wchar_t> text(static_cast<size_t>(length) + 1, L'\0');
    ::SendMessageW(control, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
    value = text.data();
}

namespace {
bool IsRadioButton(HWND control) {
    const LONG_PTR kind = ::GetWindowLongPtrW(control, GWL_STYLE) & BS_TYPEMASK;
    return kind == BS_RADIOBUTTON || kind == BS_AUTORADIOBUTTON;
}
}  // namespace

// The group runs from its first button to the next control that starts a group.
void DataExchange::Radio(int firstId, int& value) {
    HWND control = Control(firstId);
    if (!control) return;
    if (m_save) value = -1;
    int index = 0;
    do {
        if (!IsRadioButton(control)) break;
        if (m_save && ::SendMessageW(control, BM_GETCHECK, 0, 0) == BST_CHECKED) value = index;
        if (!m_save) ::SendMessageW(control, BM_SETCHECK, index == value ? BST_CHECKED : BST_UNCHECKED, 0);
        ++index;
        control = ::GetWindow(control, GW_HWNDNEXT);
    } while (control && !(::GetWindowLongPtrW(control, GWL_STYLE) & WS_GROUP));
}

}  // namespace fw
