// listview and statusbar: the common controls of a process, read from outside.
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

}  // namespace

int RunListView(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--window", true}, {L"--min-rows", true}});
    args.RequirePositional(2, 2);
    const auto rows = args.Value(L"--min-rows");
    ControlQuery query = ParseControlQuery(args, 1);
    query.minimumRows = rows ? static_cast<int>(ArgumentList::ParseDword(*rows, L"row count")) : 0;
    const HWND found = AwaitControl(query, RemoteListView::kClass, out);
    const RemoteListView list(found);
    const int columns = list.ColumnCount();
    const int count = list.ItemCount();
    out.Window(L"hwnd", found);
    out.Number(L"view", list.View());
    out.Number(L"columns", columns);
    // Lines of several cells carry each cell escaped, the cells apart by a tab.
    out.Raw(L"headings", JoinEscaped(list.Headings(columns)));
    std::wstring selected;
    for (int item = 0; item < count; ++item) {
        std::vector<std::wstring> cells;
        for (int column = 0; column < columns; ++column) cells.push_back(list.ItemText(item, column));
        out.Raw(L"row", JoinEscaped(cells));
        if (list.IsSelected(item)) selected += (selected.empty() ? L"" : L",") + std::to_wstring(item);
    }
    out.Number(L"rows", count);
    out.Raw(L"selected", selected);
    out.Number(L"focused", list.Focused());
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
        }
        out.Field(L"part", text);
    }
    return kExitSuccess;
}

}  // namespace lpdriver
