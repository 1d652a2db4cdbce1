// A stand-in for the server suite's printer panel, for tests only: a window-less
// GUI program that records that it was started, and how, under
// HKCU\Software\LaunchPanelTestStandIns\PrinterPanel, then ends:
//
//   Starts            DWORD   one more at each start
//   CommandLine       REG_SZ  its whole command line as it was given
//   ShowCommand       DWORD   the show state it was asked for
//   CurrentDirectory  REG_SZ  the folder it was started in
//   Env_<name>        REG_SZ  the client's variables it inherited (CLIENTCOMPUTERNAME,
//                             CLIENTCOMPUTERIPADDRESS); removed when not set
#include <windows.h>

#include <string>

#include "foundation/UniqueHandle.h"

namespace {

constexpr const wchar_t* kKey = L"Software\\LaunchPanelTestStandIns\\PrinterPanel";

void WriteText(HKEY key, const std::wstring& name, const std::wstring& value) {
    RegSetValueExW(key, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                   static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

void WriteDword(HKEY key, const wchar_t* name, DWORD value) {
    RegSetValueExW(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), sizeof value);
}

void RecordVariable(HKEY key, const wchar_t* variable) {
    std::wstring name = std::wstring(L"Env_") + variable;
    wchar_t value[1024] = {};
    DWORD length = GetEnvironmentVariableW(variable, value, ARRAYSIZE(value));
    if (length > 0 && length < ARRAYSIZE(value))
        WriteText(key, name, value);
    else
        RegDeleteValueW(key, name.c_str());
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int showCommand) {
    ky::UniqueHKey key;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_QUERY_VALUE | KEY_SET_VALUE,
                        nullptr, key.put(), nullptr) != ERROR_SUCCESS)
        return 1;
    DWORD starts = 0, size = sizeof starts, type = 0;
    if (RegQueryValueExW(key.get(), L"Starts", nullptr, &type, reinterpret_cast<BYTE*>(&starts),
                         &size) != ERROR_SUCCESS ||
        type != REG_DWORD)
        starts = 0;
    WriteText(key.get(), L"CommandLine", GetCommandLineW());
    WriteDword(key.get(), L"ShowCommand", static_cast<DWORD>(showCommand));
    wchar_t directory[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, directory);
    WriteText(key.get(), L"CurrentDirectory", directory);
    RecordVariable(key.get(), L"CLIENTCOMPUTERNAME");
    RecordVariable(key.get(), L"CLIENTCOMPUTERIPADDRESS");
    // Counted last, so that a test that sees the count also sees the rest.
    WriteDword(key.get(), L"Starts", starts + 1);
    return 0;
}
