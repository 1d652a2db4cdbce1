// select, column-width and column-order: a user's work on the list view of a
// process, done from outside.
#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/Commands.h"
#include "tools/lpdriver/ControlSearch.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/ProcessWindows.h"
#include "tools/lpdriver/RemoteListView.h"
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

HWND AwaitList(const ArgumentList& args, size_t limitIndex, OutputWriter& out) {
    const HWND found = AwaitControl(ParseControlQuery(args, limitIndex), RemoteListView::kClass, out);
    out.Window(L"hwnd", found);
    return found;
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
