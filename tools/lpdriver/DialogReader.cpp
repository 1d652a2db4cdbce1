#include "tools/lpdriver/DialogReader.h"
#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/ProcessWindows.h"
#include "tools/lpdriver/WindowWait.h"
#include <cwctype>

namespace lpdriver {

namespace {

std::wstring Plain(const std::wstring& text) {
    std::wstring plain;
    for (const wchar_t c : text)
        if (c != L'&') plain += static_cast<wchar_t>(std::towlower(c));
    return plain;
}

bool IsNumber(const std::wstring& word) {
    if (word.empty()) return false;
    for (const wchar_t c : word)
        if (c < L'0' || c > L'9') return false;
    return true;
}

}  // namespace

HWND DialogReader::FindVisible(DWORD processId, const std::optional<std::wstring>& caption) {
    for (HWND window : ProcessWindows::TopLevel(processId)) {
        if (!::IsWindowVisible(window) || ProcessWindows::ClassOf(window) != kDialogClass) continue;
        if (caption && ProcessWindows::TextOf(window) != *caption) continue;
        return window;
    }
    return nullptr;
}

std::wstring DialogReader::MessageText(HWND dialog) {
    const HWND text = ::GetDlgItem(dialog, kMessageTextId);
    return text ? ProcessWindows::TextOf(text) : std::wstring();
}

std::vector<DialogButton> DialogReader::Buttons(HWND dialog) {
    std::vector<DialogButton> buttons;
    for (HWND child : ProcessWindows::Descendants(dialog)) {
        if (!::IsWindowVisible(child) || ::lstrcmpiW(ProcessWindows::ClassOf(child).c_str(), L"Button") != 0)
            continue;
        buttons.push_back({child, ::GetDlgCtrlID(child), ProcessWindows::TextOf(child),
                           ::IsWindowEnabled(child) != FALSE});
    }
    return buttons;
}

std::optional<DialogButton> DialogReader::Choose(const std::vector<DialogButton>& buttons,
                                                 const std::wstring& word) {
    const bool byId = IsNumber(word);
    const std::wstring wanted = Plain(word);
    for (const DialogButton& button : buttons) {
        if (byId ? std::to_wstring(button.id) == word : Plain(button.text) == wanted) return button;
    }
    return std::nullopt;
}

void DialogReader::Press(const DialogButton& button, bool click) {
    const HWND parent = ::GetParent(button.window);
    if (parent == nullptr) ThrowNotFound(L"the button is gone");
    const BOOL posted = click ? ::PostMessageW(button.window, BM_CLICK, 0, 0)
                              : ::PostMessageW(parent, WM_COMMAND, MAKEWPARAM(button.id, BN_CLICKED),
                                               reinterpret_cast<LPARAM>(button.window));
    if (!posted) ThrowWin32(L"PostMessageW");
}

HWND DialogReader::Control(HWND dialog, int id) {
    HWND hidden = nullptr;
    for (HWND child : ProcessWindows::Descendants(dialog)) {
        if (::GetDlgCtrlID(child) != id) continue;
        if (::IsWindowVisible(child)) return child;
        if (hidden == nullptr) hidden = child;
    }
    return hidden;
}

HWND DialogReader::Await(DWORD processId, const std::optional<std::wstring>& caption, DWORD limitMs,
                         OutputWriter& out) {
    WindowWait wait(processId, limitMs);
    return wait.Until([&] { return FindVisible(processId, caption); }, L"the dialog", out);
}

HWND DialogReader::AwaitNamed(const std::vector<std::wstring>& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--title", true}});
    args.RequirePositional(2, 2);
    const DWORD processId = ProcessWindows::ParseProcessId(args.Positional(0));
    const DWORD limit = ArgumentList::ParseDword(args.Positional(1), L"time limit");
    const HWND dialog = Await(processId, args.Value(L"--title"), limit, out);
    out.Window(L"hwnd", dialog);
    out.Field(L"caption", ProcessWindows::TextOf(dialog));
    return dialog;
}

DialogControl DialogReader::AwaitControl(DWORD processId, const std::optional<std::wstring>& caption, int id,
                                         DWORD limitMs, OutputWriter& out) {
    DialogControl found;
    WindowWait wait(processId, limitMs);
    found.control = wait.Until(
        [&]() -> HWND {
            found.dialog = FindVisible(processId, caption);
            return found.dialog ? Control(found.dialog, id) : nullptr;
        },
        L"control " + std::to_wstring(id) + L" of the dialog", out);
    return found;
}

}  // namespace lpdriver
