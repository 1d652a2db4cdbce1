// The property sheet of the driver's target: two pages, the first with a list box
// and an edit field, the second with a check box and an edit field that repeats
// the first page's id (as pages of one sheet may). Each page has an echo line (the
// same id on both) that tells what last reached the page:
//   select <index> <text>   LBN_SELCHANGE of the list box
//   double <index>          LBN_DBLCLK of the list box
//   edit <text>             EN_CHANGE of the first page's edit field
//   confirm 0|1             BN_CLICKED of the check box
//   second edit <text>      EN_CHANGE of the second page's edit field
//   applied                 PSN_APPLY (Apply or OK of the sheet)
// Exit codes: Finish of the wizard 200 + 10 * the item chosen + the check box;
// OK of the sheet 300 + the item chosen; Cancel 2.
#include "tests/driver/DriverTargetSheet.h"
#include <commctrl.h>
#include <prsht.h>
#include <string>
#include <vector>

namespace lpdrivertarget {

namespace {

constexpr int kFirstPage = 110;
constexpr const wchar_t* kWizardCaption = L"Driver Target Wizard";
constexpr int kEditId = 1103, kListId = 1104, kEchoId = 1106, kConfirmId = 1201;

struct SheetState {
    bool wizard = false;
    int chosen = -1;
    int result = IDCANCEL;
};

SheetState g_sheet;

void Echo(HWND page, const std::wstring& text) { ::SetDlgItemTextW(page, kEchoId, text.c_str()); }

std::wstring ControlText(HWND page, int id) {
    wchar_t text[128] = {};
    ::GetDlgItemTextW(page, id, text, 128);
    return text;
}

std::wstring ItemText(HWND list, int index) {
    const LRESULT length = ::SendMessageW(list, LB_GETTEXTLEN, index, 0);
    if (length < 0) return {};
    std::vector<wchar_t> text(static_cast<size_t>(length) + 1, L'\0');
    ::SendMessageW(list, LB_GETTEXT, index, reinterpret_cast<LPARAM>(text.data()));
    return text.data();
}

void OnFirstPageCommand(HWND page, int id, int code) {
    const HWND list = ::GetDlgItem(page, kListId);
    const int selected = static_cast<int>(::SendMessageW(list, LB_GETCURSEL, 0, 0));
    if (id == kListId && code == LBN_SELCHANGE) {
        g_sheet.chosen = selected;
        Echo(page, L"select " + std::to_wstring(selected) + L" " + ItemText(list, selected));
    } else if (id == kListId && code == LBN_DBLCLK) {
        Echo(page, L"double " + std::to_wstring(selected));
    } else if (id == kEditId && code == EN_CHANGE) {
        Echo(page, L"edit " + ControlText(page, kEditId));
    } else {
        return;
    }
    // Something changed: the sheet's Apply button becomes available.
    PropSheet_Changed(::GetParent(page), page);
}

void OnSecondPageCommand(HWND page, int id, int code) {
    if (id == kConfirmId && code == BN_CLICKED)
        Echo(page, L"confirm " + std::to_wstring(::IsDlgButtonChecked(page, kConfirmId)));
    else if (id == kEditId && code == EN_CHANGE)
        Echo(page, L"second edit " + ControlText(page, kEditId));
}

INT_PTR OnNotify(HWND page, LONG_PTR which, const NMHDR& header) {
    switch (header.code) {
    case PSN_SETACTIVE:
        if (g_sheet.wizard)
            PropSheet_SetWizButtons(::GetParent(page), which == 0 ? PSWIZB_NEXT : PSWIZB_BACK | PSWIZB_FINISH);
        break;
    case PSN_WIZFINISH:
        g_sheet.result = 200 + 10 * g_sheet.chosen + static_cast<int>(::IsDlgButtonChecked(page, kConfirmId));
        break;
    case PSN_APPLY:
        if (which == 0) {
            g_sheet.result = 300 + g_sheet.chosen;
            Echo(page, L"applied");
        }
        break;
    default:
        return FALSE;
    }
    ::SetWindowLongPtrW(page, DWLP_MSGRESULT, 0);
    return TRUE;
}

INT_PTR CALLBACK PageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const LONG_PTR which = ::GetWindowLongPtrW(page, GWLP_USERDATA);
    switch (message) {
    case WM_INITDIALOG: {
        const LPARAM index = reinterpret_cast<const PROPSHEETPAGEW*>(lParam)->lParam;
        ::SetWindowLongPtrW(page, GWLP_USERDATA, index);
        if (index == 0)
            for (const wchar_t* item : {L"Blue", L"Green", L"Red \u00FCber"})
                ::SendDlgItemMessageW(page, kListId, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item));
        return TRUE;
    }
    case WM_COMMAND:
        if (which == 0) OnFirstPageCommand(page, LOWORD(wParam), HIWORD(wParam));
        else OnSecondPageCommand(page, LOWORD(wParam), HIWORD(wParam));
        return TRUE;
    case WM_NOTIFY:
        return OnNotify(page, which, *reinterpret_cast<const NMHDR*>(lParam));
    default:
        return FALSE;
    }
}

}  // namespace

int ShowSheet(HINSTANCE instance, bool wizard) {
    g_sheet.wizard = wizard;
    PROPSHEETPAGEW pages[2] = {};
    // A wizard shows the title of the page showing in its title bar; a sheet on its tabs.
    const wchar_t* const tabs[2] = {L"Colour", L"Confirm"};
    for (int i = 0; i < 2; ++i) {
        pages[i].dwSize = sizeof pages[i];
        pages[i].dwFlags = PSP_USETITLE;
        pages[i].pszTitle = wizard ? kWizardCaption : tabs[i];
        pages[i].hInstance = instance;
        pages[i].pszTemplate = MAKEINTRESOURCEW(kFirstPage + i);
        pages[i].pfnDlgProc = PageProc;
        pages[i].lParam = i;
    }
    PROPSHEETHEADERW header{};
    header.dwSize = sizeof header;
    header.dwFlags = PSH_PROPSHEETPAGE | (wizard ? PSH_WIZARD : 0);
    header.hInstance = instance;
    header.pszCaption = wizard ? kWizardCaption : L"Driver Target Sheet";
    header.nPages = 2;
    header.ppsp = pages;
    ::PropertySheetW(&header);
    return g_sheet.result;
}

}  // namespace lpdrivertarget
