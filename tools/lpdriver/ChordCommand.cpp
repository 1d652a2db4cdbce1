// chord: a shortcut such as Ctrl+Shift+M typed on the real keyboard path, so that
// the program's accelerators see the modifiers down (posted keys cannot do that).
#include <windows.h>

#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/Commands.h"
#include "tools/lpdriver/DriverFailure.h"

namespace lpdriver {

namespace {
INPUT Key(WORD vk, bool up) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = vk;
    input.ki.wScan = static_cast<WORD>(::MapVirtualKeyW(vk, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
    return input;
}
}  // namespace

int RunChord(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {});
    args.RequirePositional(2, 2);
    std::vector<WORD> keys;
    std::wstring word = args.Positional(1);
    for (size_t start = 0; start <= word.size();) {
        size_t plus = word.find(L'+', start);
        if (plus == std::wstring::npos) plus = word.size();
        const DWORD vk = ArgumentList::ParseDword(word.substr(start, plus - start), L"virtual key");
        if (vk == 0 || vk > 254) ThrowUsage(L"a virtual key lies between 1 and 254");
        keys.push_back(static_cast<WORD>(vk));
        start = plus + 1;
    }
    const HWND frame = WindowOrMainFrame(args.Positional(0));
    out.Window(L"hwnd", frame);
    ::SetForegroundWindow(frame);
    std::vector<INPUT> inputs;
    for (WORD vk : keys) inputs.push_back(Key(vk, false));
    for (auto it = keys.rbegin(); it != keys.rend(); ++it) inputs.push_back(Key(*it, true));
    const UINT sent = ::SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
    out.Number(L"sent", sent);
    if (sent != inputs.size()) ThrowNotFound(L"the system took no keyboard input");
    return kExitSuccess;
}

}  // namespace lpdriver
