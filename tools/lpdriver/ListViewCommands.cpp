// listview and statusbar: the common controls of a process, read from outside.
#include <cwchar>
#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/Commands.h"
#include "tools/lpdriver/ControlSearch.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/ProcessWindows.h"
#include "tools/lpdriver/RemoteBuffer.h"
#include "tools/lpdriver/RemoteListView.h"
#include <commctrl.h>

namespace lpdriver {

namespace {

std::wstring JoinEscaped(const std::vector<std::wstring>& cells) {
    std::wstring line;
    for (size_t i = 0; i < cells.size(); ++i) line += (i ? L"\t" : L"") + OutputWriter::Escape(cells[i]);
    return line;
}

std::wstring PointText(POINT point) {
    return std::to_wstring(point.x) + L"," + std::to_wstring(point.y);
}

template <typename Number>
std::wstring JoinNumbers(const std::vector<Number>& numbers, const wchar_t* separator) {
    std::wstring line;
    for (size_t i = 0; i < numbers.size(); ++i) line += (i ? separator : L"") + std::to_wstring(numbers[i]);
    return line;
}

void PrintRows(const RemoteListView& list, int columns, OutputWriter& out) {
    const int count = list.ItemCount();
    std::vector<int> selected;
    for (int item = 0; item < count; ++item) {
        std::vector<std::wstring> cells;
        for (int column = 0; column < columns; ++column) cells.push_back(list.ItemText(item, column));
        out.Raw(L"row", JoinEscaped(cells));
        if (list.IsSelected(item)) selected.push_back(item);
    }
    out.Number(L"rows", count);
    out.Raw(L"selected", JoinNumbers(selected, L","));
    out.Number(L"focused", list.Focused());
}

void PrintPositions(const RemoteListView& list, OutputWriter& out) {
    out.Raw(L"origin", PointText(list.Origin()));
    const int count = list.ItemCount();
    for (int item = 0; item < count; ++item)
        out.Raw(L"pos", std::to_wstring(item) + L"\t" + PointText(list.ItemPosition(item)));
}

// The header's sort arrow, and the columns as the user has sized and ordered them
// (only the details view shows columns).
void PrintColumns(const RemoteListView& list, OutputWriter& out) {
    const SortState sort = list.Sort();
    out.Number(L"sortcolumn", sort.column);
    out.Raw(L"sortdir", sort.direction);
    const int columns = list.HeaderItemCount();
    if (list.View() != LV_VIEW_DETAILS || columns == 0) return;
    std::vector<int> widths;
    for (int column = 0; column < columns; ++column) widths.push_back(list.ColumnWidth(column));
    out.Raw(L"widths", JoinNumbers(widths, L"\t"));
    out.Raw(L"order", JoinNumbers(list.ColumnOrder(columns), L"\t"));
}

}  // namespace

int RunListView(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--window", true}, {L"--min-rows", true}, {L"--positions", false}});
    args.RequirePositional(2, 2);
    ControlQuery query = ParseControlQuery(args, 1);
    if (const auto rows = args.Value(L"--min-rows"))
        query.minimumRows = static_cast<int>(ArgumentList::ParseDword(*rows, L"row count"));
    const HWND found = AwaitControl(query, RemoteListView::kClass, out);
    const RemoteListView list(found);
    const int columns = list.ColumnCount();
    out.Window(L"hwnd", found);
    out.Number(L"view", list.View());
    // Colours as COLORREF (0x00BBGGRR) and the style words, all plain answers of the control.
    out.Number(L"bkcolor", static_cast<int64_t>(ProcessWindows::Ask(found, LVM_GETBKCOLOR, 0, 0)));
    out.Number(L"textcolor", static_cast<int64_t>(ProcessWindows::Ask(found, LVM_GETTEXTCOLOR, 0, 0)));
    out.Number(L"exstyle", static_cast<int64_t>(ProcessWindows::Ask(found, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0)));
    out.Number(L"style", static_cast<int64_t>(static_cast<DWORD>(::GetWindowLongPtrW(found, GWL_STYLE))));
    out.Number(L"columns", columns);
    // Lines of several cells carry each cell escaped, the cells apart by a tab.
    out.Raw(L"headings", JoinEscaped(list.Headings(columns)));
    PrintRows(list, columns, out);
    if (args.Has(L"--positions")) PrintPositions(list, out);
    PrintColumns(list, out);
    return kExitSuccess;
}

int RunStatusBar(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--window", true}});
    args.RequirePositional(2, 2);
    const HWND bar = AwaitControl(ParseControlQuery(args, 1), STATUSCLASSNAMEW, out);
    constexpr size_t kMostParts = 256;
    const RemoteBuffer edges(bar, kMostParts * sizeof(int));
    const int parts = static_cast<int>(ProcessWindows::Ask(bar, SB_GETPARTS, kMostParts, edges.At(0)));
    out.Window(L"hwnd", bar);
    out.Number(L"parts", parts);
    for (int part = 0; part < parts; ++part) {
        // SB_GETTEXTW knows no buffer size: the buffer is made to the length first asked.
        const size_t length = LOWORD(ProcessWindows::Ask(bar, SB_GETTEXTLENGTHW, part, 0));
        std::wstring text(length, L'\0');
        if (length > 0) {
            const RemoteBuffer buffer(bar, (length + 1) * sizeof(wchar_t));
            ProcessWindows::Ask(bar, SB_GETTEXTW, part, buffer.At(0));
            buffer.Read(0, text.data(), length * sizeof(wchar_t));
            // The pane may have taken a shorter text between the two questions.
            text.resize(wcsnlen(text.c_str(), text.size()));
        }
        out.Field(L"part", text);
    }
    return kExitSuccess;
}

}  // namespace lpdriver
