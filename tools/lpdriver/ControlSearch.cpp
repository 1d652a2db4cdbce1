#include "tools/lpdriver/ControlSearch.h"
#include "tools/lpdriver/ProcessWindows.h"
#include "tools/lpdriver/RemoteListView.h"
#include "tools/lpdriver/WindowWait.h"

namespace lpdriver {

namespace {

bool IsVisibleOfClass(HWND window, const wchar_t* className) {
    return ::IsWindowVisible(window) &&
           ::lstrcmpiW(ProcessWindows::ClassOf(window).c_str(), className) == 0;
}

HWND FindControl(DWORD processId, HWND within, const wchar_t* className) {
    std::vector<HWND> roots;
    if (within) roots.push_back(within);
    else
        for (HWND window : ProcessWindows::TopLevel(processId))
            if (::IsWindowVisible(window)) roots.push_back(window);
    for (HWND root : roots) {
        if (IsVisibleOfClass(root, className)) return root;
        for (HWND child : ProcessWindows::Descendants(root))
            if (IsVisibleOfClass(child, className)) return child;
    }
    return nullptr;
}

}  // namespace

ControlQuery ParseControlQuery(const ArgumentList& args, size_t limitIndex) {
    ControlQuery query;
    query.processId = ProcessWindows::ParseProcessId(args.Positional(0));
    query.limitMs = ArgumentList::ParseDword(args.Positional(limitIndex), L"time limit");
    if (const auto given = args.Value(L"--window")) query.within = ArgumentList::ParseWindow(*given);
    return query;
}

HWND AwaitControl(const ControlQuery& query, const wchar_t* className, OutputWriter& out) {
    WindowWait wait(query.processId, query.limitMs);
    return wait.Until(
        [&]() -> HWND {
            const HWND control = FindControl(query.processId, query.within, className);
            if (control == nullptr || query.minimumRows == 0) return control;
            return RemoteListView(control).ItemCount() >= query.minimumRows ? control : nullptr;
        },
        std::wstring(L"a control of class ") + className, out);
}

}  // namespace lpdriver
