// The keys of an edit box that has a list under it: the arrows step into the
// list, and typing completes from the list unless the user has just erased.
#include <vector>

#include "printers/KYjlpDlgPC_Pg.h"

namespace {
bool IsUsableList(HWND list) {
    return list && ::IsWindow(list) && ::IsWindowVisible(list) && ::IsWindowEnabled(list) &&
           ::SendMessageW(list, LB_GETCOUNT, 0, 0) > 0;
}

// Down (or Right at the end of the text) goes to the next item, the first when none is chosen.
bool StepIntoList(HWND edit, HWND list) {
    if (!IsUsableList(list)) return false;
    const int count = static_cast<int>(::SendMessageW(list, LB_GETCOUNT, 0, 0));
    const int current = static_cast<int>(::SendMessageW(list, LB_GETCURSEL, 0, 0));
    int index = current < 0 ? 0 : current + 1;
    if (index >= count) index = count - 1;
    const LRESULT length = ::SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0);
    std::vector<wchar_t> text(static_cast<size_t>(length > 0 ? length : 0) + 1, L'\0');
    ::SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
    ::SetWindowTextW(edit, text.data());
    ::SetFocus(list);
    ::SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
    return true;
}

// The caret stands left of the last character when its x lies before that character's.
bool CaretBeforeEnd(HWND edit, int length) {
    POINT caret{};
    if (length == 0 || !::GetCaretPos(&caret)) return false;
    const LRESULT last = ::SendMessageW(edit, EM_POSFROMCHAR, static_cast<WPARAM>(length - 1), 0);
    return last != -1 && caret.x <= static_cast<short>(LOWORD(last));
}
}  // namespace

bool KYjlpDlgPC_Pg::OnEditKey(UINT key, HWND edit, HWND list) {
    m_bNoComplete = false;
    const int length = ::GetWindowTextLengthW(edit);
    DWORD start = 0, end = 0;
    ::SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    switch (key) {
    case VK_BACK:
        if (length > 0) m_bNoComplete = true;
        return false;
    case VK_UP:
        return true;
    case VK_DOWN:
        return StepIntoList(edit, list);
    case VK_RIGHT:
        if (length > 0 || start != end || CaretBeforeEnd(edit, length)) return false;
        return StepIntoList(edit, list);
    case VK_DELETE:
        if (length == 0) return true;
        if ((start != end && static_cast<int>(end - start) < length) || static_cast<int>(end) != length)
            m_bNoComplete = true;
        return false;
    default:
        return false;
    }
}

void KYjlpDlgPC_Pg::AutoCompleteEdit(HWND edit, HWND list) {
    if (!edit || !::IsWindow(edit) || !IsUsableList(list)) return;
    const std::wstring text = WindowText(edit);
    if (m_bNoComplete) {
        const LRESULT exact = text.empty() ? LB_ERR
                                           : ::SendMessageW(list, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                                            reinterpret_cast<LPARAM>(text.c_str()));
        ::SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(exact), 0);
        m_bNoComplete = false;
    } else {
        const LRESULT found = text.empty() ? LB_ERR
                                           : ::SendMessageW(list, LB_SELECTSTRING, static_cast<WPARAM>(-1),
                                                            reinterpret_cast<LPARAM>(text.c_str()));
        if (found == LB_ERR) {
            ::SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
        } else {
            const std::wstring item = ListItemText(list, static_cast<int>(found));
            if (item.size() > text.size()) {
                ::SetWindowTextW(edit, item.c_str());
                ::SendMessageW(edit, EM_SETSEL, text.size(), item.size());
                ::SendMessageW(edit, EM_SCROLLCARET, 0, 0);
            }
        }
    }
    MarkPageModified();
}
