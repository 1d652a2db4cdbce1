#include "tools/lpdriver/ProcessWindows.h"
#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/DriverFailure.h"

namespace lpdriver {

namespace {

struct TopLevelSearch {
    DWORD processId;
    std::vector<HWND> found;
};

BOOL CALLBACK CollectTopLevel(HWND window, LPARAM param) noexcept {
    auto* search = reinterpret_cast<TopLevelSearch*>(param);
    DWORD owner = 0;
    ::GetWindowThreadProcessId(window, &owner);
    if (search->processId == ProcessWindows::kAnyProcess || owner == search->processId)
        search->found.push_back(window);
    return TRUE;
}

BOOL CALLBACK CollectChild(HWND window, LPARAM param) noexcept {
    reinterpret_cast<std::vector<HWND>*>(param)->push_back(window);
    return TRUE;
}

// How long a window of another process may take to answer WM_GETTEXT.
constexpr UINT kTextAnswerMs = 2000;
// How long a control of another process may take to answer a query.
constexpr UINT kControlAnswerMs = 5000;

}  // namespace

DWORD ProcessWindows::ParseProcessId(const std::wstring& word) {
    if (word == L"any") return kAnyProcess;
    return ArgumentList::ParseDword(word, L"process id");
}

std::vector<HWND> ProcessWindows::TopLevel(DWORD processId) {
    TopLevelSearch search{processId, {}};
    ::EnumWindows(CollectTopLevel, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::vector<HWND> ProcessWindows::Descendants(HWND parent) {
    // EnumChildWindows already walks grandchildren, each after its parent.
    std::vector<HWND> found;
    ::EnumChildWindows(parent, CollectChild, reinterpret_cast<LPARAM>(&found));
    return found;
}

WindowFacts ProcessWindows::Describe(HWND window) {
    WindowFacts facts;
    facts.window = window;
    ::GetWindowThreadProcessId(window, &facts.processId);
    facts.className = ClassOf(window);
    facts.title = TextOf(window);
    facts.visible = ::IsWindowVisible(window) != FALSE;
    facts.enabled = ::IsWindowEnabled(window) != FALSE;
    facts.controlId = ::GetDlgCtrlID(window);
    ::GetWindowRect(window, &facts.rect);
    return facts;
}

std::wstring ProcessWindows::ClassOf(HWND window) {
    wchar_t name[256] = {};
    ::GetClassNameW(window, name, 256);
    return name;
}

std::wstring ProcessWindows::TextOf(HWND window) {
    DWORD_PTR length = 0;
    if (::SendMessageTimeoutW(window, WM_GETTEXTLENGTH, 0, 0, SMTO_ABORTIFHUNG, kTextAnswerMs,
                              &length)) {
        std::wstring text(length + 1, L'\0');
        DWORD_PTR copied = 0;
        if (::SendMessageTimeoutW(window, WM_GETTEXT, text.size(),
                                  reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG,
                                  kTextAnswerMs, &copied)) {
            text.resize(copied < length ? copied : length);
            return text;
        }
    }
    wchar_t stored[1024] = {};
    ::GetWindowTextW(window, stored, 1024);
    return stored;
}

HWND ProcessWindows::MainFrame(DWORD processId) {
    HWND firstVisible = nullptr;
    for (HWND window : TopLevel(processId)) {
        if (!::IsWindowVisible(window)) continue;
        if (::GetWindow(window, GW_OWNER) == nullptr) return window;
        if (firstVisible == nullptr) firstVisible = window;
    }
    return firstVisible;
}

LRESULT ProcessWindows::Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DWORD_PTR result = 0;
    if (!::SendMessageTimeoutW(window, message, wParam, lParam, SMTO_ABORTIFHUNG, kControlAnswerMs,
                               &result))
        ThrowWin32(L"SendMessageTimeoutW of message " + std::to_wstring(message));
    return static_cast<LRESULT>(result);
}

ky::UniqueHandle ProcessWindows::OpenForWait(DWORD processId, DWORD rights) {
    if (processId == kAnyProcess) ThrowUsage(L"this command needs one process id, not any");
    ky::UniqueHandle process(::OpenProcess(
        SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION | rights, FALSE, processId));
    if (!process) ThrowNotFound(L"no process with id " + std::to_wstring(processId));
    return process;
}

}  // namespace lpdriver
