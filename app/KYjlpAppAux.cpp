// The session's own programs: at the start of a session the programs that the
// server's run lists name are started once, each with the command the system's
// Run key gives it. The text-input helper is started only where an input method
// is installed, with the language bar kept out of the user's way.
#include <vector>

#include "app/KYjlpApp.h"
#include "framework/ResourceModule.h"
#include "monitor/KYbpm.h"
#include "window/KYjlpFrameMain.h"

namespace {
const wchar_t kUserList[] = L"SOFTWARE\\Veltran\\Corvane\\System\\Run\\CurrentUser";
const wchar_t kMachineList[] = L"SOFTWARE\\Veltran\\Corvane\\System\\Run\\LocalMachine";
const wchar_t kLangBarKey[] = L"SOFTWARE\\Microsoft\\CTF\\LangBar";

DWORD MajorVersion() {
    OSVERSIONINFOW info{};
    info.dwOSVersionInfoSize = sizeof info;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    return GetVersionExW(&info) ? info.dwMajorVersion : 0;
#pragma GCC diagnostic pop
}
}  // namespace

bool KYjlpApp::LaunchAuxPgms() {
    const DWORD major = MajorVersion();
    bool result = true;
    if (major >= 6 && !LoadAuxFilterKeywords()) result = false;
    if (!RunAuxPass(kUserList, HKEY_CURRENT_USER, major)) result = false;
    if (major < 6 && !LoadAuxFilterKeywords()) result = false;
    if (!RunAuxPass(kMachineList, HKEY_LOCAL_MACHINE, major)) result = false;
    m_astrAuxKeywords.clear();
    return result;
}

bool KYjlpApp::LoadAuxFilterKeywords() {
    if (!m_astrAuxKeywords.empty()) return true;
    try {
        for (UINT id : {24581u, 24582u}) {
            std::wstring word = fw::ResString(id, m_hResourceLibrary.get());
            if (word.size() > 259) word.resize(259);
            m_astrAuxKeywords.push_back(word.empty() ? L" " : word);
        }
    } catch (...) {
        m_astrAuxKeywords.clear();
        SetLastError(0);
        return false;
    }
    return true;
}

// 1: started by name with no Run entry (the first keyword); 0: looked up in the Run key.
bool KYjlpApp::MatchAuxKeyword(const wchar_t* name) const {
    if (m_astrAuxKeywords.empty() || !name || !*name) return false;
    return _wcsicmp(name, m_astrAuxKeywords[0].c_str()) == 0;
}

bool KYjlpApp::IsAnIME_Loaded() {
    try {
        const DWORD major = MajorVersion();
        using ImmIsImeFn = BOOL(WINAPI*)(HKL);
        ImmIsImeFn isIme = nullptr;
        if (major >= 6) {
            HMODULE imm = GetModuleHandleW(L"imm32.dll");
            if (!imm) return false;
            isIme = reinterpret_cast<ImmIsImeFn>(reinterpret_cast<void*>(GetProcAddress(imm, "ImmIsIME")));
            if (!isIme) return false;
        }
        const int count = GetKeyboardLayoutList(0, nullptr);
        if (count <= 0) return false;
        std::vector<HKL> layouts(static_cast<size_t>(count));
        const int read = GetKeyboardLayoutList(count, layouts.data());
        for (int i = 0; i < read; ++i) {
            const auto bits = reinterpret_cast<uintptr_t>(layouts[static_cast<size_t>(i)]);
            if (isIme ? isIme(layouts[static_cast<size_t>(i)]) != 0 : ((bits >> 28) & 0xF) == 0xE) return true;
        }
    } catch (...) {
        wchar_t text[128] = {};
        _snwprintf(text, 127, L"ERROR IsAnIME_Loaded - caught an exception with WLE %d!\n",
                   static_cast<int>(GetLastError()));
        OutputDebugStringW(text);
    }
    return false;
}

// The language bar of the text-input helper stays hidden unless the user chose otherwise.
bool KYjlpApp::AdjustLangBarStatus() {
    if (m_pMonitor) m_pMonitor->forgetSituation();
    int number = 0;
    LONG error = 0;
    ky::UniqueHKey key;
    try {
        error = RegCreateKeyExW(HKEY_CURRENT_USER, kLangBarKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.put(),
                                nullptr);
        if (error != ERROR_SUCCESS) throw 27100;
        DWORD type = 0, value = 0, size = sizeof value;
        error = RegQueryValueExW(key.get(), L"ShowStatus", nullptr, &type, reinterpret_cast<BYTE*>(&value), &size);
        bool write = false;
        if (error == ERROR_FILE_NOT_FOUND) write = true;
        else if (error == ERROR_SUCCESS && (type != REG_DWORD || size != 4)) throw 27101;
        else if (error == ERROR_SUCCESS) write = value == 3 || value == 4;
        else throw 27102;
        if (write) {
            const DWORD hidden = 0;
            error = RegSetValueExW(key.get(), L"ShowStatus", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&hidden), 4);
            if (error != ERROR_SUCCESS) throw 27103;
        }
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27099;
    }
    if (number && m_pMonitor) {
        m_pMonitor->recordSituationID(number);
        if (number != 27099) {
            m_pMonitor->recordArgument(kLangBarKey);
            m_pMonitor->recordArgument(L"ShowStatus");
            if (number == 27101) m_pMonitor->recordArgument(static_cast<int32_t>(4));
            else m_pMonitor->recordArgument(FormatCode(static_cast<uint32_t>(error)));
        }
        RespondAndForget();
        SetLastError(0);
    }
    return number == 0;
}
