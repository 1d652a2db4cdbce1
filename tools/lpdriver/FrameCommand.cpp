// frame: what a test sees of a program's main window besides its controls: its
// styles, whether it has a menu, its place in the z-order, and the state of each
// menu item as the program's own update handlers set it when the menu opens.
#include <windows.h>
#include <commctrl.h>

#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/Commands.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/MenuProbe.h"
#include "tools/lpdriver/ProcessWindows.h"
#include "tools/lpdriver/probe/MenuWalker.h"

namespace lpdriver {

namespace {

std::wstring Hex(uintptr_t value) {
    wchar_t text[24] = {};
    swprintf(text, 24, L"0x%llX", static_cast<unsigned long long>(value));
    return text;
}

// Each command item of the menu bar, the submenus asked to update first, as the
// program does before it shows them. Read from here where the system shares menus
// between processes; where it does not (Wine), the probe reads them inside the program.
void PrintMenu(HWND frame, HMENU menu, OutputWriter& out) {
    std::vector<MenuItemRecord> records = MenuWalker::Walk(frame, menu);
    const bool direct = !records.empty();
    if (!direct) records = MenuProbe::Read(frame);
    for (const MenuItemRecord& record : records)
        out.Record({{L"item", std::to_wstring(record.id)},
                    {L"path", record.path},
                    {L"enabled", record.enabled ? L"1" : L"0"},
                    {L"checked", record.checked ? L"1" : L"0"},
                    {L"text", record.text}});
    if (!records.empty()) out.Field(L"menu-source", direct ? L"process" : L"probe");
    out.Number(L"menu-read", records.empty() ? 0 : 1);
}

// Whether no visible top-level window lies below this one.
bool AtBottom(HWND window) {
    for (HWND below = ::GetWindow(window, GW_HWNDNEXT); below; below = ::GetWindow(below, GW_HWNDNEXT))
        if (::IsWindowVisible(below) && !(::GetWindowLongPtrW(below, GWL_EXSTYLE) & WS_EX_TOPMOST)) {
            RECT r{};
            ::GetWindowRect(below, &r);
            if (r.right > r.left && r.bottom > r.top) return false;
        }
    return true;
}

// The state of toolbar buttons by command id, as the program's update handlers set them at idle.
void PrintButtons(HWND frame, const std::wstring& ids, OutputWriter& out) {
    HWND bar = nullptr;
    for (HWND child : ProcessWindows::Descendants(frame))
        if (::lstrcmpiW(ProcessWindows::ClassOf(child).c_str(), TOOLBARCLASSNAMEW) == 0) bar = child;
    out.Number(L"toolbar", bar ? 1 : 0);
    if (!bar) return;
    for (const std::wstring& word : ArgumentList::SplitCommas(ids)) {
        const DWORD id = ArgumentList::ParseDword(word, L"command id");
        const LRESULT state = ::SendMessageW(bar, TB_GETSTATE, id, 0);
        out.Record({{L"button", std::to_wstring(id)},
                    {L"found", state == -1 ? L"0" : L"1"},
                    {L"enabled", state != -1 && (state & TBSTATE_ENABLED) ? L"1" : L"0"},
                    {L"checked", state != -1 && (state & TBSTATE_CHECKED) ? L"1" : L"0"}});
    }
}

}  // namespace

int RunFrame(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--menu", false}, {L"--buttons", true}});
    args.RequirePositional(1, 1);
    const HWND frame = WindowOrMainFrame(args.Positional(0));
    const WindowFacts facts = ProcessWindows::Describe(frame);
    out.Window(L"hwnd", frame);
    out.Field(L"title", facts.title);
    out.Field(L"style", Hex(static_cast<uintptr_t>(::GetWindowLongPtrW(frame, GWL_STYLE))));
    out.Field(L"exstyle", Hex(static_cast<uintptr_t>(::GetWindowLongPtrW(frame, GWL_EXSTYLE))));
    out.Field(L"rect", std::to_wstring(facts.rect.left) + L"," + std::to_wstring(facts.rect.top) + L"," +
                           std::to_wstring(facts.rect.right) + L"," + std::to_wstring(facts.rect.bottom));
    out.Number(L"visible", facts.visible ? 1 : 0);
    out.Number(L"zoomed", ::IsZoomed(frame) ? 1 : 0);
    out.Number(L"bottom", AtBottom(frame) ? 1 : 0);
    HMENU menu = ::GetMenu(frame);
    out.Number(L"menu", menu ? 1 : 0);
    if (args.Has(L"--menu") && menu) PrintMenu(frame, menu, out);
    if (auto ids = args.Value(L"--buttons")) PrintButtons(frame, *ids, out);
    return kExitSuccess;
}

}  // namespace lpdriver
