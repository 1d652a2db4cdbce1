#include "monitor/KYbpmEventLog.h"

#include <iterator>

#include "EventLogMessages.h"

namespace {

constexpr const wchar_t* kSource = L"Launch Panel";
constexpr const wchar_t* kSourceKey =
    L"SYSTEM\\CurrentControlSet\\Services\\EventLog\\Application\\Launch Panel";

// The file of the program that holds this code, when it carries the message
// table of its entries (resources/EventLogMessages.mc); empty otherwise, so that
// no file without the message is ever named.
std::wstring MessageFile() {
    HMODULE self = nullptr;
    const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!GetModuleHandleExW(flags, reinterpret_cast<LPCWSTR>(&MessageFile), &self) ||
        !FindResourceW(self, MAKEINTRESOURCEW(1), RT_MESSAGETABLE))
        return {};
    wchar_t path[MAX_PATH];
    const DWORD chars = GetModuleFileNameW(self, path, static_cast<DWORD>(std::size(path)));
    if (chars == 0 || chars >= std::size(path)) return {};
    return std::wstring(path, chars);
}

// An installer's registration, or an earlier run's, stands while its file is there.
bool NamesAnExistingFile(HKEY source) {
    wchar_t named[MAX_PATH] = {};
    DWORD size = sizeof named - sizeof(wchar_t), type = 0;
    const LONG rc = RegQueryValueExW(source, L"EventMessageFile", nullptr, &type,
                                     reinterpret_cast<BYTE*>(named), &size);
    if (rc != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) return false;
    wchar_t expanded[MAX_PATH];
    const DWORD chars = ExpandEnvironmentStringsW(named, expanded, static_cast<DWORD>(std::size(expanded)));
    return chars > 0 && chars <= std::size(expanded) &&
           GetFileAttributesW(expanded) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace

// Done at the first entry of a session, the only time the event log is written.
// Writing the machine's settings needs an administrator: in a user's session the
// installer's registration is what counts, and the entries go out either way, so
// a registration that can't be made is no failure of the entry.
void KYbpmEventLog::registerSource() {
    const std::wstring file = MessageFile();
    if (file.empty()) return;
    ky::UniqueHKey source;
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, kSourceKey, 0, nullptr, 0, KEY_QUERY_VALUE | KEY_SET_VALUE,
                        nullptr, source.put(), nullptr) != ERROR_SUCCESS ||
        NamesAnExistingFile(source.get()))
        return;
    const auto* name = reinterpret_cast<const BYTE*>(file.c_str());
    const DWORD nameBytes = static_cast<DWORD>((file.size() + 1) * sizeof(wchar_t));
    const DWORD types = EVENTLOG_ERROR_TYPE | EVENTLOG_WARNING_TYPE | EVENTLOG_INFORMATION_TYPE;
    if (RegSetValueExW(source.get(), L"EventMessageFile", 0, REG_EXPAND_SZ, name, nameBytes) == ERROR_SUCCESS)
        RegSetValueExW(source.get(), L"TypesSupported", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&types),
                       sizeof types);
}

bool KYbpmEventLog::report(KYbpmKind kind, int, const std::wstring& text) {
    if (!m_source) {
        registerSource();
        m_source.reset(RegisterEventSourceW(nullptr, kSource));
    }
    if (!m_source) return false;
    WORD type = EVENTLOG_ERROR_TYPE;
    if (kind == KYbpmKind::Warning) type = EVENTLOG_WARNING_TYPE;
    else if (kind == KYbpmKind::Notice || kind == KYbpmKind::Question) type = EVENTLOG_INFORMATION_TYPE;
    // Every entry is the one message that shows the whole text; the text's code
    // line tells the situation.
    const wchar_t* strings[] = {text.c_str()};
    return ReportEventW(m_source.get(), type, 0, LP_EVENT_SITUATION, nullptr, 1, 0, strings, nullptr) !=
           FALSE;
}
