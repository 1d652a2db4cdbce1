// select, activate, header-click, drag, column-width and column-order: a user's
// work on the list view of a process, done from outside.
#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/Commands.h"
#include "tools/lpdriver/ControlSearch.h"
#include "tools/lpdriver/Deadline.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/ProcessWindows.h"
#include "tools/lpdriver/RemoteListView.h"
#include "tools/lpdriver/UserInput.h"
#include <commctrl.h>
#include <algorithm>

namespace lpdriver {

namespace {

// A row, column or pixel: a number that fits a control's int.
int ParseIndex(const std::wstring& word, const wchar_t* what) {
    const DWORD value = ArgumentList::ParseDword(word, what);
    if (value > 0x7FFF) ThrowUsage(std::wstring(what) + L" is too large: " + word);
    return static_cast<int>(value);
}

// "2,0,1": numbers apart by commas, none left out.
std::vector<int> ParseIndexes(const std::wstring& word, const wchar_t* what) {
    std::vector<int> indexes;
    for (const std::wstring& piece : ArgumentList::SplitCommas(word)) indexes.push_back(ParseIndex(piece, what));
    return indexes;
}

std::wstring JoinIndexes(const std::vector<int>& indexes, const wchar_t* separator) {
    std::wstring line;
    for (size_t i = 0; i < indexes.size(); ++i) line += (i ? separator : L"") + std::to_wstring(indexes[i]);
    return line;
}

std::wstring PointText(POINT point) {
    return std::to_wstring(point.x) + L"," + std::to_wstring(point.y);
}

POINT Centre(const RECT& rect) {
    return POINT{(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

InputPath PathOf(const ArgumentList& args) {
    const auto word = args.Value(L"--input");
    return word ? ParseInputPath(*word) : InputPath::Automatic;
}

void RequireRow(const RemoteListView& list, int row) {
    if (row >= list.ItemCount()) ThrowNotFound(L"the list has no row " + std::to_wstring(row));
}

void RequireColumn(const RemoteListView& list, int column) {
    if (column >= list.HeaderItemCount()) ThrowNotFound(L"the list has no column " + std::to_wstring(column));
}

void PrintSelection(const RemoteListView& list, OutputWriter& out) {
    std::vector<int> selected;
    const int count = list.ItemCount();
    for (int item = 0; item < count; ++item)
        if (list.IsSelected(item)) selected.push_back(item);
    out.Raw(L"selected", JoinIndexes(selected, L","));
    out.Number(L"focused", list.Focused());
}

// Selected and focused alone, as a click on it leaves a row.
void SelectOnly(const RemoteListView& list, const std::vector<int>& rows) {
    list.SetItemState(-1, 0, LVIS_SELECTED);
    for (size_t i = 0; i < rows.size(); ++i)
        list.SetItemState(rows[i], i == 0 ? LVIS_SELECTED | LVIS_FOCUSED : LVIS_SELECTED,
                          i == 0 ? LVIS_SELECTED | LVIS_FOCUSED : LVIS_SELECTED);
    ProcessWindows::Ask(list.Window(), LVM_SETSELECTIONMARK, 0, rows.front());
}

// The posted path knows when the program has taken the input; past the limit the
// input is out, but the program has not handled it.
void RequireHandled(bool handled, OutputWriter& out) {
    if (handled) return;
    out.Number(L"timeout", 1);
    ThrowNotFound(L"the program did not handle the input in time");
}

// The path the gesture took, and why when the automatic choice fell back.
void PrintPath(const Mouse& mouse, OutputWriter& out) {
    out.Raw(L"input", InputPathName(mouse.Path()));
    if (!mouse.Fallback().empty()) out.Field(L"fallback", mouse.Fallback());
}

HWND AwaitList(const ArgumentList& args, size_t limitIndex, OutputWriter& out) {
    const HWND found = AwaitControl(ParseControlQuery(args, limitIndex), RemoteListView::kClass, out);
    out.Window(L"hwnd", found);
    return found;
}

DWORD LimitOf(const ArgumentList& args, size_t limitIndex) {
    return ArgumentList::ParseDword(args.Positional(limitIndex), L"time limit");
}

// Enter on the row, as the keyboard brings it: the row selected and focused alone,
// then the key posted to the list.
bool ActivateByKey(const RemoteListView& list, int row, const Deadline& deadline, OutputWriter& out) {
    SelectOnly(list, {row});
    PostKey(list.Window(), VK_RETURN);
    out.Raw(L"input", InputPathName(InputPath::Posted));
    return AwaitListHandled(list.Window(), deadline);
}

// A double-click in the middle of the row's label, scrolled into view first.
bool ActivateByMouse(const RemoteListView& list, int row, InputPath path, const Deadline& deadline,
                     OutputWriter& out) {
    ProcessWindows::Ask(list.Window(), LVM_ENSUREVISIBLE, row, FALSE);
    const POINT label = Centre(list.ItemRect(row, LVIR_LABEL));
    out.Raw(L"point", PointText(label));
    Mouse mouse(list.Window(), list.Window(), path, deadline);
    mouse.DoubleClick(label);
    PrintPath(mouse, out);
    return mouse.Handled();
}

}  // namespace

int RunSelect(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--window", true}});
    args.RequirePositional(3, 3);
    const std::vector<int> rows = ParseIndexes(args.Positional(1), L"row");
    const RemoteListView list(AwaitList(args, 2, out));
    for (const int row : rows) RequireRow(list, row);
    SelectOnly(list, rows);
    PrintSelection(list, out);
    return kExitSuccess;
}

int RunActivate(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--window", true}, {L"--keyboard", false}, {L"--input", true}});
    args.RequirePositional(3, 3);
    const int row = ParseIndex(args.Positional(1), L"row");
    const bool keyboard = args.Has(L"--keyboard");
    if (keyboard && args.Has(L"--input")) ThrowUsage(L"--keyboard posts its key; it takes no --input");
    const InputPath path = PathOf(args);
    const RemoteListView list(AwaitList(args, 2, out));
    RequireRow(list, row);
    const Deadline deadline(LimitOf(args, 2));
    const bool handled = keyboard ? ActivateByKey(list, row, deadline, out)
                                  : ActivateByMouse(list, row, path, deadline, out);
    out.Number(L"activated", row);
    RequireHandled(handled, out);
    return kExitSuccess;
}

// The right button on a row (its label's middle) or, for row -1, on the list's
// background near its lower right corner; then the popup menu the program shows.
int RunContext(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--window", true}, {L"--input", true}});
    args.RequirePositional(3, 3);
    const int row = args.Positional(1) == L"-1" ? -1 : ParseIndex(args.Positional(1), L"row");
    const InputPath path = PathOf(args);
    const RemoteListView list(AwaitList(args, 2, out));
    POINT point{};
    if (row >= 0) {
        RequireRow(list, row);
        ProcessWindows::Ask(list.Window(), LVM_ENSUREVISIBLE, row, FALSE);
        point = Centre(list.ItemRect(row, LVIR_LABEL));
    } else {
        RECT client{};
        ::GetClientRect(list.Window(), &client);
        point = {client.right - 12, client.bottom - 12};
    }
    out.Raw(L"point", PointText(point));
    const Deadline deadline(LimitOf(args, 2));
    Mouse mouse(list.Window(), list.Window(), path, deadline);
    mouse.RightClick(point);
    PrintPath(mouse, out);
    DWORD pid = 0;
    ::GetWindowThreadProcessId(list.Window(), &pid);
    HWND popup = nullptr;
    while (!popup && !deadline.Passed()) {
        for (HWND window : ProcessWindows::TopLevel(pid))
            if (::IsWindowVisible(window) && ProcessWindows::ClassOf(window) == L"#32768") popup = window;
        if (!popup) ::Sleep(50);
    }
    if (!popup) ThrowNotFound(L"no popup menu showed");
    out.Window(L"popup", popup);
    return kExitSuccess;
}

int RunHeaderClick(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--window", true}, {L"--input", true}});
    args.RequirePositional(3, 3);
    const int column = ParseIndex(args.Positional(1), L"column");
    const InputPath path = PathOf(args);
    const RemoteListView list(AwaitList(args, 2, out));
    const HWND header = list.Header();
    if (header == nullptr || !::IsWindowVisible(header)) ThrowNotFound(L"the list shows no header");
    RequireColumn(list, column);
    const POINT middle = Centre(list.HeaderItemRect(column));
    out.Window(L"header", header);
    out.Raw(L"point", PointText(middle));
    const Deadline deadline(LimitOf(args, 2));
    Mouse mouse(header, list.Window(), path, deadline);
    mouse.Click(middle);
    PrintPath(mouse, out);
    out.Number(L"clicked", column);
    RequireHandled(mouse.Handled(), out);
    return kExitSuccess;
}

int RunDrag(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--window", true}, {L"--input", true}});
    args.RequirePositional(5, 5);
    const int row = ParseIndex(args.Positional(1), L"row");
    const POINT to{ParseIndex(args.Positional(2), L"x"), ParseIndex(args.Positional(3), L"y")};
    const InputPath path = PathOf(args);
    const RemoteListView list(AwaitList(args, 4, out));
    RequireRow(list, row);
    ProcessWindows::Ask(list.Window(), LVM_ENSUREVISIBLE, row, FALSE);
    const POINT from = Centre(list.ItemRect(row, LVIR_ICON));
    out.Raw(L"from", PointText(from));
    out.Raw(L"to", PointText(to));
    const Deadline deadline(LimitOf(args, 4));
    Mouse mouse(list.Window(), list.Window(), path, deadline);
    mouse.Drag(from, to);
    PrintPath(mouse, out);
    out.Number(L"dragged", row);
    RequireHandled(mouse.Handled(), out);
    return kExitSuccess;
}

int RunColumnWidth(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--window", true}});
    args.RequirePositional(4, 4);
    const int column = ParseIndex(args.Positional(1), L"column");
    const int width = ParseIndex(args.Positional(2), L"width");
    const RemoteListView list(AwaitList(args, 3, out));
    RequireColumn(list, column);
    list.SetColumnWidth(column, width);
    out.Number(L"column", column);
    out.Number(L"width", list.ColumnWidth(column));
    return kExitSuccess;
}

int RunColumnOrder(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--window", true}});
    args.RequirePositional(3, 3);
    const std::vector<int> order = ParseIndexes(args.Positional(1), L"column");
    const RemoteListView list(AwaitList(args, 2, out));
    const int columns = list.HeaderItemCount();
    if (columns == 0) ThrowNotFound(L"the list has no columns");
    std::vector<int> sorted = order;
    std::sort(sorted.begin(), sorted.end());
    for (size_t i = 0; i < sorted.size(); ++i)
        if (sorted.size() != static_cast<size_t>(columns) || sorted[i] != static_cast<int>(i))
            ThrowUsage(L"the order names each of the list's " + std::to_wstring(columns) + L" columns once");
    list.SetColumnOrder(order);
    // The header shows the new order at once; the rows below follow when painted.
    ::InvalidateRect(list.Window(), nullptr, TRUE);
    out.Raw(L"order", JoinIndexes(list.ColumnOrder(columns), L"\t"));
    return kExitSuccess;
}

}  // namespace lpdriver
