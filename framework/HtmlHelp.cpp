#include "framework/HtmlHelp.h"

#include "foundation/UniqueHandle.h"

namespace fw {
namespace {

using HtmlHelpProc = HWND(WINAPI*)(HWND, LPCWSTR, UINT, DWORD_PTR);

// One binding per process, on the main thread only: no lock.
struct Binding {
    bool attempted = false;
    HMODULE module = nullptr;
    HtmlHelpProc entry = nullptr;
};
Binding g_binding;

constexpr const char* kControlServerKey = "CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";
constexpr WORD kHtmlHelpOrdinal = 15;

// The HTML Help control as its class is registered, expanded when the registry
// holds it with variables; empty when it is not registered.
std::string RegisteredControlPath() {
    ky::UniqueHKey key;
    if (RegOpenKeyExA(HKEY_CLASSES_ROOT, kControlServerKey, 0, KEY_READ, key.put()) != ERROR_SUCCESS)
        return {};
    char value[MAX_PATH + 1] = {};
    DWORD type = 0;
    DWORD size = MAX_PATH;
    if (RegQueryValueExA(key.get(), nullptr, nullptr, &type, reinterpret_cast<BYTE*>(value), &size) !=
            ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ))
        return {};
    if (type != REG_EXPAND_SZ) return value;
    char expanded[MAX_PATH + 1] = {};
    const DWORD length = ExpandEnvironmentStringsA(value, expanded, MAX_PATH);
    return length > 0 && length <= MAX_PATH ? expanded : std::string{};
}

HtmlHelpProc Bind() {
    if (g_binding.attempted) return g_binding.entry;
    g_binding.attempted = true;
    const std::string registered = RegisteredControlPath();
    ky::UniqueHModule module(registered.empty() ? nullptr : LoadLibraryA(registered.c_str()));
    if (!module) module.reset(LoadLibraryA("hhctrl.ocx"));
    if (!module) return nullptr;
    auto entry = reinterpret_cast<HtmlHelpProc>(
        reinterpret_cast<void*>(GetProcAddress(module.get(), MAKEINTRESOURCEA(kHtmlHelpOrdinal))));
    if (!entry) return nullptr;
    // Bound: the control stays loaded for the rest of the process, its windows live on it.
    g_binding.module = module.release();
    g_binding.entry = entry;
    return entry;
}

}  // namespace

HWND CallHtmlHelp(HWND caller, const wchar_t* path, UINT command, DWORD_PTR data) {
    HtmlHelpProc entry = Bind();
    return entry ? entry(caller, path, command, data) : nullptr;
}

std::wstring HelpPathForCommand(const std::wstring& helpFile, UINT command) {
    return command == HH_TP_HELP_CONTEXTMENU ? helpFile + kHelpPopupSuffix : helpFile;
}

HWND ShowHelpContext(HWND caller, const std::wstring& helpFile, DWORD contextId) {
    return CallHtmlHelp(caller, helpFile.c_str(), HH_HELP_CONTEXT, contextId);
}

HWND ShowHelpTopic(HWND caller, const std::wstring& helpFile, const wchar_t* page) {
    if (!page || !*page) return CallHtmlHelp(caller, helpFile.c_str(), HH_DISPLAY_TOPIC, 0);
    const std::wstring path = helpFile + L"::/" + page;
    return CallHtmlHelp(caller, path.c_str(), HH_DISPLAY_TOPIC, 0);
}

bool ShowControlPopup(HWND control, const std::wstring& helpFile, const DWORD* idPairs) {
    if (!idPairs) return false;
    const std::wstring path = HelpPathForCommand(helpFile, HH_TP_HELP_CONTEXTMENU);
    return CallHtmlHelp(control, path.c_str(), HH_TP_HELP_CONTEXTMENU,
                        reinterpret_cast<DWORD_PTR>(idPairs)) != nullptr;
}

void CloseHtmlHelp() {
    if (g_binding.entry) g_binding.entry(nullptr, nullptr, HH_CLOSE_ALL, 0);
}

bool HtmlHelpBound() { return g_binding.entry != nullptr; }

HMODULE HtmlHelpModule() { return g_binding.module; }

}  // namespace fw
