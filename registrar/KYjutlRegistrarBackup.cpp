// The preference store as a whole: thrown away, restored from a hive file, saved to
// one; the privileges those need; and the switch between the two stores.
#include "registrar/KYjutlRegistrar.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <string>

#include "registrar/RegistrarText.h"

namespace {

constexpr const wchar_t* kSettingsKey = L"SOFTWARE\\Veltran\\Corvane\\LaunchPanel\\Settings";
constexpr REGSAM kReadMask = 0x20009;
constexpr REGSAM kWriteMask = 0x20006;
constexpr REGSAM kFullMask = 0x2001F;  // switching stores and deleting trees

using RegDeleteKeyExFn = LONG(WINAPI*)(HKEY, LPCWSTR, REGSAM, DWORD);

RegDeleteKeyExFn DeleteKeyEx() {
    // Looked up once: where the export is missing, the plain delete stands in.
    static const RegDeleteKeyExFn function = [] {
        HMODULE advapi = GetModuleHandleW(L"Advapi32.dll");
        FARPROC proc = advapi ? GetProcAddress(advapi, "RegDeleteKeyExW") : nullptr;
        return reinterpret_cast<RegDeleteKeyExFn>(reinterpret_cast<void*>(proc));
    }();
    return function;
}

// Reads a file whole when it is small enough to be an empty hive; false when it
// can't be read or is larger.
bool ReadSmallFile(const wchar_t* file, std::string& bytes) {
    constexpr LONGLONG kLargest = 1 << 20;
    ky::UniqueFile handle(CreateFileW(file, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size{};
    if (!handle || !GetFileSizeEx(handle.get(), &size) || size.QuadPart > kLargest) return false;
    bytes.resize(static_cast<size_t>(size.QuadPart));
    if (bytes.empty()) return true;
    DWORD read = 0;
    const DWORD wanted = static_cast<DWORD>(bytes.size());
    return ReadFile(handle.get(), bytes.data(), wanted, &read, nullptr) && read == wanted;
}

uint32_t ReadU32(const std::string& bytes, size_t at) {
    uint32_t value = 0;
    memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

// A hive in the system's own format: the root key's cell, found through the
// header, counts its subkeys and values.
bool SystemHiveHoldsEntries(const std::string& bytes) {
    constexpr size_t kFirstBin = 0x1000, kRootCell = 0x24;  // in the header
    constexpr size_t kSubkeys = 0x18, kValues = 0x28;       // in the root key's cell
    if (bytes.size() < kRootCell + 4) return true;
    const size_t root = kFirstBin + ReadU32(bytes, kRootCell);
    if (root + kValues + 4 > bytes.size() || bytes.compare(root + 4, 2, "nk") != 0) return true;
    return ReadU32(bytes, root + kSubkeys) != 0 || ReadU32(bytes, root + kValues) != 0;
}

// A hive in Wine's text format: "[]" heads the root key; any other key line or
// any value line is an entry.
bool WineHiveHoldsEntries(const std::string& text) {
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find('\n', at), text.size());
        if (text[at] == '"' || text[at] == '@') return true;
        if (text[at] == '[' && at + 1 < end && text[at + 1] != ']') return true;
        at = end + 1;
    }
    return false;
}

// False only for a hive known to hold nothing; a file that can't be read or
// isn't a hive of a known format may hold anything.
bool HiveMayHoldEntries(const wchar_t* file) {
    std::string bytes;
    if (!ReadSmallFile(file, bytes)) return true;
    if (bytes.compare(0, 4, "regf") == 0) return SystemHiveHoldsEntries(bytes);
    if (bytes.compare(0, 23, "WINE REGISTRY Version 2") == 0) return WineHiveHoldsEntries(bytes);
    return true;
}

}  // namespace

LONG KYjutlRegistrar::DeleteOneKey(HKEY parent, const wchar_t* name) {
    if (RegDeleteKeyExFn function = DeleteKeyEx()) return function(parent, name, 0, 0);
    return RegDeleteKeyW(parent, name);
}

LONG KYjutlRegistrar::RecurseDeleteKey(HKEY parent, const wchar_t* name) {
    ky::UniqueHKey key;
    LONG rc = RegOpenKeyExW(parent, name, 0, kFullMask, key.put());
    if (rc != ERROR_SUCCESS) return rc;
    wchar_t child[256];  // the longest key name the registry allows, and its terminator
    for (;;) {
        DWORD chars = static_cast<DWORD>(std::size(child));
        rc = RegEnumKeyExW(key.get(), 0, child, &chars, nullptr, nullptr, nullptr, nullptr);
        if (rc == ERROR_NO_MORE_ITEMS) break;
        if (rc != ERROR_SUCCESS) return rc;
        rc = RecurseDeleteKey(key.get(), child);
        if (rc != ERROR_SUCCESS) return rc;
    }
    key.reset();
    return DeleteOneKey(parent, name);
}

bool KYjutlRegistrar::DeletePreferences() {
    ClearErrors();
    ky::UniqueHKey settings;
    Guard(92, [&] {
        if (m_strPreferencesKey.empty() && !ResolvePreferencesKeyName()) throw uint32_t{0};
        if (m_keyPreferences && !ClosePreferencesKey(true)) throw uint32_t{0};
        LONG rc = RegOpenKeyExW(HKEY_CURRENT_USER, kSettingsKey, 0, kReadMask, settings.put());
        if (rc == ERROR_FILE_NOT_FOUND) throw uint32_t{0};  // nothing to delete
        if (rc != ERROR_SUCCESS) {
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{204};
        }
        const wchar_t* store = m_uMode == kModeStandard  ? L"Standard"
                               : m_uMode == kModeClassic ? L"Classic"
                                                         : nullptr;
        if (!store) throw uint32_t{73};
        rc = RecurseDeleteKey(settings.get(), store);
        if (rc != ERROR_SUCCESS && rc != ERROR_FILE_NOT_FOUND) {
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{91};
        }
    });
    if (CloseKey(settings) != ERROR_SUCCESS) RecordLateError(203);
    return m_uError == 0;
}

bool KYjutlRegistrar::RestorePreferences() {
    ClearErrors();
    wchar_t fullPath[kScratchChars];
    Guard(96, [&] {
        if (!m_pszRestoreFile || !*m_pszRestoreFile) throw uint32_t{99};
        if (!ResolvePreferencesKeyName()) throw uint32_t{0};
        if (m_keyPreferences && !ClosePreferencesKey(true)) throw uint32_t{0};
        LocateRestoreFile(fullPath, kScratchChars);
        // The old store goes before the hive has proved good: a restore that fails
        // from here on leaves the store empty, and the next run starts from defaults.
        if (!DeletePreferences()) throw uint32_t{0};
        LONG rc = RegCreateKeyExW(HKEY_CURRENT_USER, m_strPreferencesKey.c_str(), 0, nullptr, 0,
                                  kWriteMask, nullptr, m_keyPreferences.put(), nullptr);
        if (rc != ERROR_SUCCESS) {
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{94};
        }
        if (uint32_t failure = AdjustPrivilege(L"SeRestorePrivilege", true)) throw failure;
        rc = LoadHiveIntoStore(fullPath);
        if (rc != ERROR_SUCCESS) {
            AdjustPrivilege(L"SeRestorePrivilege", false);
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{95};
        }
        if (uint32_t failure = AdjustPrivilege(L"SeRestorePrivilege", false)) throw failure;
        if (!ClosePreferencesKey(false)) throw uint32_t{0};
    });
    if (CloseKey(m_keyPreferences) != ERROR_SUCCESS) RecordLateError(90);
    return m_uError == 0;
}

void KYjutlRegistrar::LocateRestoreFile(wchar_t* fullPath, DWORD capacity) {
    const wchar_t* file = m_pszRestoreFile;
    const size_t directory = registrar_text::DirectoryLength(file);
    const wchar_t* searchDirectory = nullptr;  // the standard search order
    if (directory > 0) {
        if (directory >= wcslen(file) || directory >= kScratchChars) throw uint32_t{99};
        wmemcpy(m_wszA, file, directory);
        m_wszA[directory] = L'\0';
        searchDirectory = m_wszA;
    }
    DWORD chars = SearchPathW(searchDirectory, file + directory, nullptr, kScratchChars, m_wszB, nullptr);
    if (chars == 0 || chars >= kScratchChars) {
        m_uErrorDetail = GetLastError();
        throw uint32_t{98};
    }
    if (!registrar_text::CopyText(m_wszB, fullPath, capacity)) throw uint32_t{97};
}

LONG KYjutlRegistrar::LoadHiveIntoStore(const wchar_t* file) {
    LONG rc = RegRestoreKeyW(m_keyPreferences.get(), file, 0);
    if (rc != ERROR_SUCCESS) return rc;
    // Wine answers a restore with success and restores nothing: there a hive with
    // entries is loaded beside the users' hives and copied into the store. Where
    // the restore works, an empty store came from an empty hive, and mounting it
    // again could only turn a good restore into a failure.
    if (!StoreIsEmpty() || !HiveMayHoldEntries(file)) return ERROR_SUCCESS;
    return CopyHiveIntoStore(file);
}

bool KYjutlRegistrar::StoreIsEmpty() const {
    ky::UniqueHKey store;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, m_strPreferencesKey.c_str(), 0, kReadMask, store.put()) !=
        ERROR_SUCCESS)
        return true;
    DWORD subkeys = 0, values = 0;
    if (RegQueryInfoKeyW(store.get(), nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values,
                         nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
        return true;
    return subkeys == 0 && values == 0;
}

LONG KYjutlRegistrar::CopyHiveIntoStore(const wchar_t* file) {
    // A fresh mount name for each restore: a hive that could not be unloaded
    // must not stand in the way of the next restore of this run.
    static unsigned restores = 0;
    wchar_t mount[64];
    swprintf(mount, std::size(mount), L"LaunchPanelRestore%lu_%u", GetCurrentProcessId(), ++restores);
    // Loading a hive also needs the backup privilege; without it the load says
    // why, so the switch's own result is not the one to keep.
    const uint32_t detail = m_uErrorDetail;
    AdjustPrivilege(L"SeBackupPrivilege", true);
    m_uErrorDetail = detail;
    LONG rc = RegLoadKeyW(HKEY_USERS, mount, file);
    if (rc == ERROR_SUCCESS) {
        {
            ky::UniqueHKey hive;
            rc = RegOpenKeyExW(HKEY_USERS, mount, 0, kReadMask, hive.put());
            if (rc == ERROR_SUCCESS) rc = RegCopyTreeW(hive.get(), nullptr, m_keyPreferences.get());
        }
        RegUnLoadKeyW(HKEY_USERS, mount);
    }
    AdjustPrivilege(L"SeBackupPrivilege", false);
    m_uErrorDetail = detail;
    return rc;
}

bool KYjutlRegistrar::BackupPreferences(const wchar_t* fileName) {
    ClearErrors();
    const bool wasOpen = static_cast<bool>(m_keyPreferences);
    Guard(101, [&] {
        if (!fileName || !*fileName) throw uint32_t{103};
        if (!wasOpen) {
            if (!ResolvePreferencesKeyName()) throw uint32_t{0};
            LONG rc = RegOpenKeyExW(HKEY_CURRENT_USER, m_strPreferencesKey.c_str(), 0, kReadMask,
                                    m_keyPreferences.put());
            if (rc != ERROR_SUCCESS) {
                m_uErrorDetail = static_cast<uint32_t>(rc);
                throw uint32_t{93};
            }
        }
        DWORD attributes = GetFileAttributesW(fileName);
        if (attributes != INVALID_FILE_ATTRIBUTES &&
            ((attributes & FILE_ATTRIBUTE_DIRECTORY) || !DeleteFileW(fileName)))
            throw uint32_t{102};
        if (uint32_t failure = AdjustPrivilege(L"SeBackupPrivilege", true)) throw failure;
        LONG rc = RegSaveKeyW(m_keyPreferences.get(), fileName, nullptr);
        if (rc != ERROR_SUCCESS) {
            AdjustPrivilege(L"SeBackupPrivilege", false);
            if (GetFileAttributesW(fileName) != INVALID_FILE_ATTRIBUTES) DeleteFileW(fileName);
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{100};
        }
        if (uint32_t failure = AdjustPrivilege(L"SeBackupPrivilege", false)) throw failure;
    });
    if (!wasOpen && CloseKey(m_keyPreferences) != ERROR_SUCCESS) RecordLateError(89);
    return m_uError == 0;
}

uint32_t KYjutlRegistrar::AdjustPrivilege(const wchar_t* privilege, bool enable) {
    uint32_t result = 0;
    DWORD error = 0;  // the system's reason, for the detail field of the caller's report
    ky::UniqueHandle token;
    try {
        SetLastError(0);
        if (!OpenThreadToken(GetCurrentThread(), TOKEN_ADJUST_PRIVILEGES, FALSE, token.put()) &&
            (GetLastError() != ERROR_NO_TOKEN ||
             !OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES, token.put()))) {
            error = GetLastError();
            result = 5;
        } else {
            TOKEN_PRIVILEGES change{};
            change.PrivilegeCount = 1;
            change.Privileges[0].Attributes = enable ? SE_PRIVILEGE_ENABLED : 0;
            if (!LookupPrivilegeValueW(nullptr, privilege, &change.Privileges[0].Luid)) {
                error = GetLastError();
                result = 4;
            } else {
                // The call's result says nothing about a privilege the token lacks
                // (ERROR_NOT_ALL_ASSIGNED): the last error does.
                AdjustTokenPrivileges(token.get(), FALSE, &change, 0, nullptr, nullptr);
                error = GetLastError();
                if (error != ERROR_SUCCESS) result = 2;
            }
        }
    } catch (...) {
        result = 1;
    }
    if (!ky::CloseTelling(token) && result == 0) result = 3;
    if (result != 0 && m_uErrorDetail == 0) m_uErrorDetail = error;
    return result;
}

bool KYjutlRegistrar::SwitchStore(uint32_t mode) {
    if (mode == m_uMode) return true;
    ClearErrors();
    Guard(265, [&] {
        m_uMode = mode;
        if (!m_strPreferencesKey.empty()) {
            m_strPreferencesKey.clear();
            if (!ResolvePreferencesKeyName()) throw uint32_t{0};
        }
        if (!m_keyPreferences) return;
        CloseKey(m_keyPreferences);
        if (!ResolvePreferencesKeyName()) throw uint32_t{0};
        LONG rc = RegCreateKeyExW(HKEY_CURRENT_USER, m_strPreferencesKey.c_str(), 0, nullptr, 0,
                                  kFullMask, nullptr, m_keyPreferences.put(), nullptr);
        if (rc != ERROR_SUCCESS) {
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{93};
        }
    });
    if (m_uError != 0) {
        m_strPreferencesKey.clear();
        CloseKey(m_keyPreferences);
    }
    return m_uError == 0;
}
