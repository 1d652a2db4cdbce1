// The HTML Help control, stood in for: the panel binds HtmlHelpW (ordinal 15) of
// the library that the control's class names in the registry, and a test names
// this one there. Each call adds one UTF-8 line to the file that the environment
// names (LP_HELP_RECORD), its fields separated by tabs:
//   command=<n>  data=<n> | pairs=<control id>:<help id>,...  path=<help path>  caller=<window class>
// and is then handed on to the system's own control, whose answer it returns. So
// a test sees which topic the panel asked for even where the viewer shows no page.
#include <windows.h>

#include <string>

#include "foundation/UniqueHandle.h"

namespace {

using HtmlHelpProc = HWND(WINAPI*)(HWND, LPCWSTR, UINT, DWORD_PTR);

constexpr WORD kHtmlHelpOrdinal = 15;
// The what-is-this commands, whose data is a list of control id and help id
// pairs ended by 0, 0 (HH_TP_HELP_CONTEXTMENU, HH_TP_HELP_WM_HELP).
constexpr UINT kHelpContextMenu = 16;
constexpr UINT kHelpWmHelp = 17;
// More pairs than any dialog of the panel has: a list without its end is cut.
constexpr int kMostPairs = 256;

// The system's own control, bound at the first call and kept for the process:
// the help windows it opens live on it.
HtmlHelpProc SystemHtmlHelp() {
    static HtmlHelpProc entry = []() noexcept -> HtmlHelpProc {
        wchar_t path[MAX_PATH] = {};
        const UINT length = GetSystemDirectoryW(path, MAX_PATH);
        if (length == 0 || length + 12 >= MAX_PATH) return nullptr;
        lstrcatW(path, L"\\hhctrl.ocx");
        ky::UniqueHModule module(LoadLibraryW(path));
        if (!module) return nullptr;
        auto found = reinterpret_cast<HtmlHelpProc>(
            reinterpret_cast<void*>(GetProcAddress(module.get(), MAKEINTRESOURCEA(kHtmlHelpOrdinal))));
        if (found) module.release();
        return found;
    }();
    return entry;
}

std::string Utf8(const std::wstring& text) {
    if (text.empty()) return {};
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), nullptr, 0,
                                         nullptr, nullptr);
    std::string bytes(static_cast<size_t>(size > 0 ? size : 0), '\0');
    if (size > 0)
        WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), bytes.data(), size, nullptr,
                            nullptr);
    return bytes;
}

std::string DataField(UINT command, DWORD_PTR data) {
    if ((command != kHelpContextMenu && command != kHelpWmHelp) || data == 0) return "data=" + std::to_string(data);
    std::string pairs = "pairs=";
    const DWORD* pair = reinterpret_cast<const DWORD*>(data);
    for (int count = 0; count < kMostPairs && pair[0] != 0; ++count, pair += 2) {
        if (count > 0) pairs += ',';
        pairs += std::to_string(pair[0]) + ':' + std::to_string(pair[1]);
    }
    return pairs;
}

std::wstring ClassOf(HWND window) {
    wchar_t name[256] = {};
    return window && GetClassNameW(window, name, 256) > 0 ? name : L"";
}

void Record(HWND caller, LPCWSTR path, UINT command, DWORD_PTR data) {
    wchar_t recordPath[MAX_PATH] = {};
    const DWORD length = GetEnvironmentVariableW(L"LP_HELP_RECORD", recordPath, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return;
    const std::string line = "command=" + std::to_string(command) + '\t' + DataField(command, data) + "\tpath=" +
                             Utf8(path ? path : L"") + "\tcaller=" + Utf8(ClassOf(caller)) + '\n';
    ky::UniqueFile file(CreateFileW(recordPath, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return;
    DWORD written = 0;
    WriteFile(file.get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

}  // namespace

// Exported at ordinal 15 by HelpControl.def, as the system's control exports it.
extern "C" HWND WINAPI HtmlHelpW(HWND caller, LPCWSTR path, UINT command, DWORD_PTR data) noexcept {
    try {
        Record(caller, path, command, data);
    } catch (...) {
        // A call that cannot be recorded is still handed on.
    }
    const HtmlHelpProc entry = SystemHtmlHelp();
    return entry ? entry(caller, path, command, data) : nullptr;
}
