// One pass over a run list of the server: each value names a program of the
// system's Run key of the same hive, started with the command found there. A
// program that cannot be started is told and the pass goes on.
#include "app/KYjlpApp.h"
#include "monitor/KYbpm.h"
#include "window/KYjlpFrameMain.h"

namespace {
const wchar_t kRunKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr DWORD kNoRunKey = 0x80040152;
constexpr DWORD kReadMask = 0x20009;

const wchar_t* HiveName(HKEY hive) {
    if (hive == HKEY_CURRENT_USER) return L"HKEY_CURRENT_USER";
    if (hive == HKEY_LOCAL_MACHINE) return L"HKEY_LOCAL_MACHINE";
    return L"< HANDLE >";
}

bool IsBlank(const wchar_t* text) {
    for (; text && *text; ++text)
        if (!iswspace(*text)) return false;
    return true;
}
}  // namespace

// Tells one situation of the pass with its arguments, answered and forgotten.
void KYjlpApp::ReportAux(int number, std::initializer_list<std::wstring> texts, DWORD error) {
    if (!m_pMonitor) return;
    m_pMonitor->recordSituationID(number);
    for (const std::wstring& text : texts) m_pMonitor->recordArgument(text);
    if (error != ERROR_SUCCESS) m_pMonitor->recordArgument(FormatCode(error));
    RespondAndForget();
}

bool KYjlpApp::StartAuxProgram(const wchar_t* name, const wchar_t* command, HKEY hive) {
    std::wstring line = IsBlank(command) ? name : command;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, NORMAL_PRIORITY_CLASS, nullptr, nullptr,
                       &startup, &process) &&
        process.hProcess && process.hProcess != INVALID_HANDLE_VALUE) {
        // Nothing waits for the program: its handles go at once.
        ky::UniqueHandle started(process.hProcess), thread(process.hThread);
        return true;
    }
    const DWORD error = GetLastError();
    ReportAux(27084, {line, name, HiveName(hive), kRunKey}, error ? error : ERROR_INVALID_HANDLE);
    SetLastError(0);
    return false;
}

// One value of the list: looked up in the Run key and started. False when it was wrong.
bool KYjlpApp::RunAuxEntry(const wchar_t* name, HKEY hive, HKEY runKey) {
    wchar_t* command = m_wszScratch2;
    command[0] = L'\0';
    if (!MatchAuxKeyword(name)) {
        DWORD type = 0, size = static_cast<DWORD>((kScratchChars - 1) * sizeof(wchar_t));
        const LONG error = runKey ? RegQueryValueExW(runKey, name, nullptr, &type,
                                                     reinterpret_cast<BYTE*>(command), &size)
                                  : static_cast<LONG>(kNoRunKey);
        command[kScratchChars - 1] = L'\0';
        if (error == ERROR_FILE_NOT_FOUND) return true;  // not installed for this hive: nothing to start
        if (error != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ) || IsBlank(command)) {
            ReportAux(runKey ? 27090 : 27085, {name, HiveName(hive), kRunKey},
                      error != ERROR_SUCCESS ? static_cast<DWORD>(error) : ERROR_INVALID_DATA);
            return false;
        }
    }
    bool result = true;
    if (_wcsicmp(name, L"ctfmon.exe") == 0) {
        if (!IsAnIME_Loaded()) return true;  // no input method: the helper has nothing to do
        if (!AdjustLangBarStatus()) result = false;
    }
    wchar_t expanded[kScratchChars] = {};
    if (command[0] && ExpandEnvironmentStringsW(command, expanded, kScratchChars) > 0) command = expanded;
    return StartAuxProgram(name, command, hive) && result;
}

bool KYjlpApp::RunAuxPass(const wchar_t* listKey, HKEY hive, DWORD major) {
    const uint32_t fillMask = m_nItemFillMask;
    m_nItemFillMask = 0;
    if (m_pMonitor) m_pMonitor->forgetSituation();
    WipeScratch();
    SetLastError(0);
    bool result = true;
    HCURSOR saved = nullptr;
    auto* frame = m_bShell ? dynamic_cast<KYjlpFrameMain*>(MainWindow()) : nullptr;
    try {
        if (m_bStandalone) throw 27081;
        if (!hive || IsBlank(listKey)) throw 27080;
        ky::UniqueHKey list;
        // Both lists are the server's, kept for the machine; the pass's hive only
        // says whose Run key gives the commands.
        LONG error = RegOpenKeyExW(HKEY_LOCAL_MACHINE, listKey, 0, kReadMask, list.put());
        if (error == ERROR_FILE_NOT_FOUND) throw 0;
        if (error != ERROR_SUCCESS) {
            ReportAux(27087, {listKey}, static_cast<DWORD>(error));
            throw 0;
        }
        DWORD count = 0;
        error = RegQueryInfoKeyW(list.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count, nullptr,
                                 nullptr, nullptr, nullptr);
        if (error != ERROR_SUCCESS) {
            ReportAux(27086, {listKey}, static_cast<DWORD>(error));
            throw 0;
        }
        if (count == 0) throw 0;
        ky::UniqueHKey run;
        error = RegOpenKeyExW(hive, kRunKey, 0, kReadMask, run.put());
        if (error != ERROR_SUCCESS) {
            if (major < 6) {
                result = false;
                ReportAux(27088, {HiveName(hive), kRunKey}, static_cast<DWORD>(error));
            }
            if (m_astrAuxKeywords.empty()) throw 0;
        }
        if (frame) frame->ShowBusy(&saved, 24600);
        for (DWORD index = 0; index < count; ++index)
            if (!RunAuxValue(list.get(), index, listKey, hive, run.get())) result = false;
    } catch (int number) {
        if (number) {
            result = false;
            if (number == 27081) ReportAux(27081, {L"KYjlpApp::LaunchAuxPgms () [1]"}, ERROR_SUCCESS);
            else ReportAux(number, {}, ERROR_SUCCESS);
        }
    } catch (...) {
        result = false;
        ReportAux(27079, {}, ERROR_SUCCESS);
    }
    if (frame) frame->EndBusy(&saved, 0);
    m_nItemFillMask = fillMask;
    WipeScratch();
    return result;
}

bool KYjlpApp::RunAuxValue(HKEY list, DWORD index, const wchar_t* listKey, HKEY hive, HKEY run) {
    DWORD nameLength = static_cast<DWORD>(kScratchChars - 1), type = 0, dataSize = 0;
    m_wszScratch1[0] = L'\0';
    const LONG error = RegEnumValueW(list, index, m_wszScratch1, &nameLength, nullptr, &type, nullptr, &dataSize);
    if (error == ERROR_SUCCESS && type == REG_DWORD && !IsBlank(m_wszScratch1))
        return RunAuxEntry(m_wszScratch1, hive, run);
    // The blank default value of an empty key is tolerated.
    if (error == ERROR_SUCCESS && type == REG_SZ && dataSize <= sizeof(wchar_t) && IsBlank(m_wszScratch1)) return true;
    if (m_pMonitor) {
        m_pMonitor->recordSituationID(27089);
        m_pMonitor->recordArgument(listKey);
        m_pMonitor->recordArgument(static_cast<int32_t>(index));
        m_pMonitor->recordArgument(static_cast<int32_t>(4));
        m_pMonitor->recordArgument(FormatCode(error == ERROR_SUCCESS ? ERROR_INVALID_DATA : static_cast<DWORD>(error)));
        RespondAndForget();
    }
    return false;
}
