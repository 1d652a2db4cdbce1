// listbox: an item of a list box in a dialog (on a property sheet's page too) chosen
// as a user's click chooses it: the list selects the item, then its parent hears
// LBN_SELCHANGE, and LBN_DBLCLK after it for a double-click.
#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/Commands.h"
#include "tools/lpdriver/DialogReader.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/ProcessWindows.h"
#include <vector>

namespace lpdriver {

namespace {

bool IsDigits(const std::wstring& word) {
    if (word.empty()) return false;
    for (const wchar_t c : word)
        if (c < L'0' || c > L'9') return false;
    return true;
}

std::wstring ItemText(HWND list, int index) {
    const int length = static_cast<int>(ProcessWindows::Ask(list, LB_GETTEXTLEN, index, 0));
    if (length < 0) return {};
    std::vector<wchar_t> text(static_cast<size_t>(length) + 1, L'\0');
    ProcessWindows::Ask(list, LB_GETTEXT, index, reinterpret_cast<LPARAM>(text.data()));
    return text.data();
}

// A word of digits names an item by its index; any other word by its whole text
// (LB_FINDSTRINGEXACT, which compares without regard to case). -1 for no such item.
int FindItem(HWND list, const std::wstring& word) {
    if (IsDigits(word)) {
        const uint64_t index = ArgumentList::ParseNumber(word, L"item index");
        const LRESULT count = ProcessWindows::Ask(list, LB_GETCOUNT, 0, 0);
        return count > 0 && index < static_cast<uint64_t>(count) ? static_cast<int>(index) : -1;
    }
    const LRESULT found =
        ProcessWindows::Ask(list, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(word.c_str()));
    return found == LB_ERR ? -1 : static_cast<int>(found);
}

// The item alone selected, and the focus on it, as after a click.
void Select(HWND list, int index) {
    if (::GetWindowLongPtrW(list, GWL_STYLE) & (LBS_MULTIPLESEL | LBS_EXTENDEDSEL)) {
        ProcessWindows::Ask(list, LB_SETSEL, FALSE, -1);
        ProcessWindows::Ask(list, LB_SETSEL, TRUE, index);
        ProcessWindows::Ask(list, LB_SETCARETINDEX, index, FALSE);
        return;
    }
    if (ProcessWindows::Ask(list, LB_SETCURSEL, index, 0) == LB_ERR)
        throw DriverFailure{kExitWin32, L"LB_SETCURSEL did not select item " + std::to_wstring(index)};
}

// The selection change is sent, as the list sends it: the parent has handled it when
// the command ends. The double-click is posted after it, so that one that opens a
// modal dialog does not hold the driver.
void Notify(HWND list, bool twice) {
    const HWND parent = ::GetParent(list);
    const int id = ::GetDlgCtrlID(list);
    ProcessWindows::Ask(parent, WM_COMMAND, MAKEWPARAM(id, LBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
    if (twice && !::PostMessageW(parent, WM_COMMAND, MAKEWPARAM(id, LBN_DBLCLK), reinterpret_cast<LPARAM>(list)))
        ThrowWin32(L"PostMessageW");
}

}  // namespace

int RunListBox(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--title", true}, {L"--double", false}});
    args.RequirePositional(4, 4);
    const DWORD processId = ProcessWindows::ParseProcessId(args.Positional(0));
    const std::wstring& idWord = args.Positional(1);
    const int id = static_cast<int>(static_cast<int64_t>(ArgumentList::ParseNumber(idWord, L"control id")));
    const DWORD limit = ArgumentList::ParseDword(args.Positional(3), L"time limit");
    const HWND list = DialogReader::AwaitControl(processId, args.Value(L"--title"), id, limit, out).control;
    if (::lstrcmpiW(ProcessWindows::ClassOf(list).c_str(), L"ListBox") != 0)
        ThrowNotFound(L"control " + idWord + L" is no list box");
    if (!::IsWindowVisible(list) || !::IsWindowEnabled(list))
        ThrowNotFound(L"list box " + idWord + L" does not show or is disabled");
    out.Window(L"hwnd", list);
    const int index = FindItem(list, args.Positional(2));
    if (index < 0) ThrowNotFound(L"list box " + idWord + L" has no item " + args.Positional(2));
    Select(list, index);
    Notify(list, args.Has(L"--double"));
    const int selected = static_cast<int>(ProcessWindows::Ask(list, LB_GETCURSEL, 0, 0));
    out.Number(L"selected", selected);
    out.Field(L"text", selected >= 0 ? ItemText(list, selected) : std::wstring());
    return kExitSuccess;
}

}  // namespace lpdriver
