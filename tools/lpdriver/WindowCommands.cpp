// windows, find-window, controls, command, keys and close: top-level windows of a
// process and the commands and keys a test sends them.
#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/Commands.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/ProcessWindows.h"
#include "tools/lpdriver/UserInput.h"
#include "tools/lpdriver/WindowWait.h"
#include <optional>

namespace lpdriver {

namespace {

std::wstring RectText(const RECT& rect) {
    return std::to_wstring(rect.left) + L"," + std::to_wstring(rect.top) + L"," +
           std::to_wstring(rect.right) + L"," + std::to_wstring(rect.bottom);
}

void PrintWindowRecord(const WindowFacts& facts, OutputWriter& out) {
    out.Record({{L"hwnd", OutputWriter::WindowText(facts.window)},
                {L"pid", std::to_wstring(facts.processId)},
                {L"visible", facts.visible ? L"1" : L"0"},
                {L"rect", RectText(facts.rect)},
                {L"class", facts.className},
                {L"title", facts.title}});
}

struct WindowCriteria {
    std::optional<std::wstring> className;
    std::optional<std::wstring> title;
    std::optional<std::wstring> titlePart;
    bool visibleOnly = false;

    bool Matches(HWND window) const {
        if (visibleOnly && !::IsWindowVisible(window)) return false;
        // Class names compare without regard to case, as the system registers them.
        if (className && ::lstrcmpiW(ProcessWindows::ClassOf(window).c_str(), className->c_str()) != 0)
            return false;
        if (!title && !titlePart) return true;
        const std::wstring text = ProcessWindows::TextOf(window);
        if (title && text != *title) return false;
        return !titlePart || text.find(*titlePart) != std::wstring::npos;
    }
};

// The window that has the keyboard focus in the thread of the process's main frame;
// the frame itself when none has it.
HWND FocusOrMainFrame(const std::wstring& word) {
    const HWND frame = WindowOrMainFrame(word);
    if (word.size() > 2 && word[0] == L'0' && (word[1] == L'x' || word[1] == L'X')) return frame;
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    if (::GetGUIThreadInfo(::GetWindowThreadProcessId(frame, nullptr), &info) && info.hwndFocus)
        return info.hwndFocus;
    return frame;
}

std::vector<UINT> ParseKeys(const std::wstring& word) {
    std::vector<UINT> keys;
    for (const std::wstring& piece : ArgumentList::SplitCommas(word)) {
        const DWORD key = ArgumentList::ParseDword(piece, L"key");
        // Virtual-key codes run from 1 to 254.
        if (key == 0 || key > 0xFE) ThrowUsage(L"not a virtual-key code: " + piece);
        keys.push_back(key);
    }
    return keys;
}

}  // namespace

// A window given as 0x... or, for a decimal number, the main frame of that process.
HWND WindowOrMainFrame(const std::wstring& word) {
    if (word.size() > 2 && word[0] == L'0' && (word[1] == L'x' || word[1] == L'X'))
        return ArgumentList::ParseWindow(word);
    const DWORD processId = ProcessWindows::ParseProcessId(word);
    if (processId == ProcessWindows::kAnyProcess) ThrowUsage(L"name one process or one window");
    const HWND frame = ProcessWindows::MainFrame(processId);
    if (frame == nullptr) ThrowNotFound(L"process " + word + L" shows no window");
    return frame;
}


int RunWindows(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--visible", false}});
    args.RequirePositional(1, 1);
    const DWORD processId = ProcessWindows::ParseProcessId(args.Positional(0));
    if (processId != ProcessWindows::kAnyProcess) ProcessWindows::OpenForWait(processId);
    int count = 0;
    for (HWND window : ProcessWindows::TopLevel(processId)) {
        if (args.Has(L"--visible") && !::IsWindowVisible(window)) continue;
        const WindowFacts facts = ProcessWindows::Describe(window);
        // A window destroyed since the enumeration no longer names its process.
        if (processId != ProcessWindows::kAnyProcess && facts.processId != processId) continue;
        PrintWindowRecord(facts, out);
        ++count;
    }
    out.Number(L"count", count);
    return kExitSuccess;
}

int RunFindWindow(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--class", true}, {L"--title", true},
                                    {L"--title-contains", true}, {L"--visible", false}});
    args.RequirePositional(2, 2);
    const DWORD processId = ProcessWindows::ParseProcessId(args.Positional(0));
    const DWORD limit = ArgumentList::ParseDword(args.Positional(1), L"time limit");
    const WindowCriteria criteria{args.Value(L"--class"), args.Value(L"--title"),
                                  args.Value(L"--title-contains"), args.Has(L"--visible")};
    WindowWait wait(processId, limit);
    const HWND found = wait.Until(
        [&]() -> HWND {
            for (HWND window : ProcessWindows::TopLevel(processId))
                if (criteria.Matches(window)) return window;
            return nullptr;
        },
        L"the window", out);
    const WindowFacts facts = ProcessWindows::Describe(found);
    out.Window(L"hwnd", found);
    out.Number(L"pid", facts.processId);
    out.Field(L"class", facts.className);
    out.Field(L"title", facts.title);
    out.Number(L"visible", facts.visible ? 1 : 0);
    // What the window shows of its frame: the caption bits of its style, and whether it has a menu.
    out.Number(L"style", static_cast<int64_t>(static_cast<DWORD>(::GetWindowLongPtrW(found, GWL_STYLE))));
    out.Number(L"menu", ::GetMenu(found) ? 1 : 0);
    return kExitSuccess;
}

int RunControls(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {});
    args.RequirePositional(1, 1);
    const HWND parent = WindowOrMainFrame(args.Positional(0));
    out.Window(L"hwnd", parent);
    int count = 0;
    for (HWND child : ProcessWindows::Descendants(parent)) {
        const WindowFacts facts = ProcessWindows::Describe(child);
        out.Record({{L"control", OutputWriter::WindowText(child)},
                    {L"id", std::to_wstring(facts.controlId)},
                    {L"parent", OutputWriter::WindowText(::GetParent(child))},
                    {L"visible", facts.visible ? L"1" : L"0"},
                    {L"enabled", facts.enabled ? L"1" : L"0"},
                    {L"rect", RectText(facts.rect)},
                    {L"class", facts.className},
                    {L"text", facts.title}});
        ++count;
    }
    out.Number(L"count", count);
    return kExitSuccess;
}

int RunCommand(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--post", false}, {L"--timeout", true}, {L"--system", false}});
    args.RequirePositional(2, 2);
    const DWORD id = ArgumentList::ParseDword(args.Positional(1), L"command id");
    // --system: a command of the window menu (SC_CLOSE is 0xF060), as its title bar sends it.
    const UINT message = args.Has(L"--system") ? WM_SYSCOMMAND : WM_COMMAND;
    if (id > 0xFFFF) ThrowUsage(L"a command id has 16 bits");
    const auto timeout = args.Value(L"--timeout");
    const DWORD limit = timeout ? ArgumentList::ParseDword(*timeout, L"time limit") : 10000;
    const HWND target = WindowOrMainFrame(args.Positional(0));
    out.Window(L"hwnd", target);
    if (args.Has(L"--post")) {
        if (!::PostMessageW(target, message, MAKEWPARAM(id, 0), 0)) ThrowWin32(L"PostMessageW");
        out.Number(L"posted", 1);
        return kExitSuccess;
    }
    DWORD_PTR result = 0;
    if (!::SendMessageTimeoutW(target, message, MAKEWPARAM(id, 0), 0, SMTO_NORMAL, limit, &result)) {
        if (::GetLastError() != ERROR_TIMEOUT && ::GetLastError() != 0) ThrowWin32(L"SendMessageTimeoutW");
        // A command that opens a modal dialog answers only when the dialog ends.
        out.Number(L"timeout", 1);
        ThrowNotFound(L"the window did not answer the command in time");
    }
    out.Number(L"result", static_cast<int64_t>(static_cast<LRESULT>(result)));
    return kExitSuccess;
}

int RunKeys(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {});
    args.RequirePositional(2, 2);
    const std::vector<UINT> keys = ParseKeys(args.Positional(1));
    const HWND target = FocusOrMainFrame(args.Positional(0));
    out.Window(L"hwnd", target);
    for (const UINT key : keys) PostKey(target, key);
    out.Number(L"sent", static_cast<int64_t>(keys.size()));
    return kExitSuccess;
}

int RunClose(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--all", false}, {L"--wait", true}});
    args.RequirePositional(1, 1);
    const DWORD processId = ProcessWindows::ParseProcessId(args.Positional(0));
    const auto wait = args.Value(L"--wait");
    const DWORD limit = wait ? ArgumentList::ParseDword(*wait, L"wait limit") : 0;
    const ky::UniqueHandle process = ProcessWindows::OpenForWait(processId);
    int closed = 0;
    for (HWND window : ProcessWindows::TopLevel(processId)) {
        // Hidden helper windows (input method, message-only stand-ins) are left alone.
        if (!args.Has(L"--all") && !::IsWindowVisible(window)) continue;
        if (::PostMessageW(window, WM_CLOSE, 0, 0)) ++closed;
    }
    out.Number(L"closed", closed);
    if (closed == 0) ThrowNotFound(L"the process shows no window to close");
    if (!wait) return kExitSuccess;
    if (::WaitForSingleObject(process.get(), limit) != WAIT_OBJECT_0) {
        out.Number(L"timeout", 1);
        ThrowNotFound(L"the process did not end in time");
    }
    DWORD code = 0;
    if (!::GetExitCodeProcess(process.get(), &code)) ThrowWin32(L"GetExitCodeProcess");
    out.Number(L"exit", code);
    return kExitSuccess;
}

}  // namespace lpdriver
