#include "printmonitor/PrinterChangeWatch.h"

namespace kypm {

namespace {

constexpr const wchar_t* kPrintersKey = L"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers";
constexpr const wchar_t* kDefaultKey = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Windows";
constexpr DWORD kFilter = REG_NOTIFY_CHANGE_NAME | REG_NOTIFY_CHANGE_LAST_SET;

bool OpenForNotify(HKEY root, const wchar_t* path, ky::UniqueHKey& key) {
    LONG rc = RegCreateKeyExW(root, path, 0, nullptr, 0, KEY_NOTIFY, nullptr, key.put(), nullptr);
    if (rc != ERROR_SUCCESS) rc = RegOpenKeyExW(root, path, 0, KEY_NOTIFY, key.put());
    SetLastError(static_cast<DWORD>(rc));
    return rc == ERROR_SUCCESS;
}

}  // namespace

bool PrinterChangeWatch::Start(HANDLE event) {
    Stop();
    if (!event) return true;
    HANDLE own = nullptr;
    if (!DuplicateHandle(GetCurrentProcess(), event, GetCurrentProcess(), &own, 0, FALSE,
                         DUPLICATE_SAME_ACCESS))
        return false;
    m_event.reset(own);
    if (!OpenForNotify(HKEY_LOCAL_MACHINE, kPrintersKey, m_printers) ||
        !OpenForNotify(HKEY_CURRENT_USER, kDefaultKey, m_default)) {
        DWORD error = GetLastError();
        Stop();
        SetLastError(error);
        return false;
    }
    return Rearm();
}

// Wine clears the event each time a notification is asked for. A change of the
// printers between the two requests would set the event, fire its one-shot
// notification, and then be cleared by the second request: the later steps of
// that change (a printer is removed key by key) would reach nobody. The
// printers, whose changes come in many steps, are therefore asked for last; the
// default printer changes in one write, which the reading after this sees.
bool PrinterChangeWatch::Rearm() {
    if (!m_event) return true;
    return Arm(m_default.get(), false) && Arm(m_printers.get(), true);
}

// The notification outlives the thread that asks for it where Windows allows
// that; older systems, and Wine, do not know the flag and get the plain request.
bool PrinterChangeWatch::Arm(HKEY key, bool subtree) {
    LONG rc = RegNotifyChangeKeyValue(key, subtree, kFilter | REG_NOTIFY_THREAD_AGNOSTIC,
                                      m_event.get(), TRUE);
    if (rc == ERROR_INVALID_PARAMETER)
        rc = RegNotifyChangeKeyValue(key, subtree, kFilter, m_event.get(), TRUE);
    SetLastError(static_cast<DWORD>(rc));
    return rc == ERROR_SUCCESS;
}

void PrinterChangeWatch::Stop() {
    m_printers.reset();
    m_default.reset();
    m_event.reset();
}

}  // namespace kypm
