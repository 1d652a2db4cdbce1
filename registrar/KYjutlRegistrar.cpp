// The registrar's life, its way of failing, and the rules for keys and values that
// all its readers and writers share.
#include "registrar/KYjutlRegistrar.h"

#include <algorithm>
#include <cstdlib>
#include <cwchar>
#include <new>

namespace {

constexpr const wchar_t* kStandardStoreKey = L"SOFTWARE\\Veltran\\Corvane\\LaunchPanel\\Settings\\Standard";
constexpr const wchar_t* kClassicStoreKey = L"SOFTWARE\\Veltran\\Corvane\\LaunchPanel\\Settings\\Classic";
constexpr REGSAM kWriteMask = 0x20006;  // KEY_WRITE

}  // namespace

void ReleaseRegistrarFile(KYjutlRegistrar_FILE& record) noexcept {
    for (wchar_t* text : {record.pszAppName, record.pszExePath, record.pszFileType,
                          record.pszCmdLineOptions, record.pszStartDirectory, record.pszIconPath}) {
        free(text);
    }
    record = KYjutlRegistrar_FILE{};
}

void ReleaseRegistrarFileList(KYjutlRegistrar_FILEList*& list) noexcept {
    if (!list) return;
    for (KYjutlRegistrar_FILE* record : *list) {
        if (!record) continue;
        ReleaseRegistrarFile(*record);
        delete record;
    }
    list->clear();
    delete list;
    list = nullptr;
}

KYjutlRegistrar::KYjutlRegistrar() : KYjutlRegistrar(kModeStandard, nullptr, nullptr, nullptr) {}

KYjutlRegistrar::KYjutlRegistrar(uint32_t mode, const wchar_t* domain, const wchar_t* user,
                                 std::vector<std::wstring>* groups)
    : m_uMode(mode), m_pGroups(groups) {
    if (domain) m_strDomain = domain;
    if (user) m_strUser = user;
}

KYjutlRegistrar::~KYjutlRegistrar() {
    ReleaseAll();
    // A key still open after a failed close is dropped without looking at the result.
    m_keyPreferences.reset();
}

void KYjutlRegistrar::ClearErrors() noexcept {
    m_uError = 0;
    m_uErrorDetail = 0;
    m_iErrorItem = -1;
}

void KYjutlRegistrar::RecordError(uint32_t error) noexcept {
    if (m_uError == 0) m_uError = error;
}

void KYjutlRegistrar::RecordLateError(uint32_t error) noexcept {
    if (m_uError == 0)
        m_uError = error;
    else
        m_uErrorDetail = error;
}

bool KYjutlRegistrar::Tolerate(std::initializer_list<uint32_t> tolerated) noexcept {
    if (m_uError == 0) return false;
    if (std::find(tolerated.begin(), tolerated.end(), m_uError) == tolerated.end()) return false;
    ClearErrors();
    return true;
}

LONG KYjutlRegistrar::CloseKey(ky::UniqueHKey& key) noexcept { return ky::CloseTelling(key); }

bool KYjutlRegistrar::TerminateText(wchar_t* buffer, DWORD bytes, DWORD capacity) noexcept {
    DWORD chars = bytes / sizeof(wchar_t);
    if (chars < capacity) {
        buffer[chars] = L'\0';
        return true;
    }
    if (buffer[capacity - 1] == L'\0') return true;
    // A full buffer without its terminator: the value is longer than the buffer holds.
    buffer[0] = L'\0';
    return false;
}

LONG KYjutlRegistrar::QueryText(HKEY key, const wchar_t* name, wchar_t* buffer, DWORD capacity) {
    std::fill_n(buffer, capacity, L'\0');
    DWORD bytes = capacity * sizeof(wchar_t);
    LONG rc = RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(buffer), &bytes);
    if (rc != ERROR_SUCCESS) {
        buffer[0] = L'\0';
        return rc;
    }
    return TerminateText(buffer, bytes, capacity) ? ERROR_SUCCESS : ERROR_MORE_DATA;
}

bool KYjutlRegistrar::ResolvePreferencesKeyName() {
    if (!m_strPreferencesKey.empty()) return true;
    Guard(70, [&] {
        m_strPreferencesKey = m_uMode == kModeClassic ? kClassicStoreKey : kStandardStoreKey;
        if (m_strPreferencesKey.empty()) throw uint32_t{71};
    });
    if (m_uError != 0) m_strPreferencesKey.clear();
    return m_uError == 0;
}

bool KYjutlRegistrar::OpenPreferencesKeyForWriting() {
    if (!m_strPreferencesKey.empty() && m_keyPreferences) return true;
    if (!ResolvePreferencesKeyName()) return false;
    LONG rc = RegCreateKeyExW(HKEY_CURRENT_USER, m_strPreferencesKey.c_str(), 0, nullptr, 0,
                              kWriteMask, nullptr, m_keyPreferences.put(), nullptr);
    if (rc != ERROR_SUCCESS) {
        RecordError(94);
        if (m_uErrorDetail == 0) m_uErrorDetail = static_cast<uint32_t>(rc);
        return false;
    }
    return true;
}

bool KYjutlRegistrar::ClosePreferencesKey(bool afterReading) {
    if (CloseKey(m_keyPreferences) == ERROR_SUCCESS) return true;
    RecordLateError(afterReading ? 89 : 90);
    return false;
}

bool KYjutlRegistrar::Initialize(HMODULE resources, const wchar_t* domain, const wchar_t* user,
                                 std::vector<std::wstring>* groups) {
    ClearErrors();
    Guard(8, [&] {
        if (resources) m_hInstance = resources;
        if (!m_hInstance) throw uint32_t{258};
        if (domain) m_strDomain = domain;
        if (user) m_strUser = user;
        if (groups) m_pGroups = groups;
        if (!ResolvePreferencesKeyName()) throw uint32_t{0};
        if (!m_pPreferences) {
            m_pPreferences = new (std::nothrow) KYjutlRegistrar_PREFS{};
            if (!m_pPreferences) throw uint32_t{192};
        }
        ResetPreferences();
        if (!ObtainSessionTimeout()) throw uint32_t{0};
        if (!ObtainInstalledApps()) throw uint32_t{0};
        if (!ObtainPreferences()) throw uint32_t{0};
        if (!ObtainCloseOption()) throw uint32_t{0};
    });
    if (m_uError != 0) ReleaseAll();  // leaves the error fields for the owner
    return m_uError == 0;
}

void KYjutlRegistrar::ReleaseAll() {
    ReleaseRegistrarFileList(m_pAppList);
    m_strPreferencesKey.clear();
    if (!m_pPreferences) return;
    FreeColumns();
    FreeItemScreenPositions(&m_pPreferences->pItemPositions);
    delete m_pPreferences;
    m_pPreferences = nullptr;
}

bool KYjutlRegistrar::StoreAll(HMODULE resources) {
    ClearErrors();
    Guard(9, [&] {
        if (resources) m_hInstance = resources;
        if (!ResolvePreferencesKeyName()) throw uint32_t{0};
        if (!StorePreferences()) throw uint32_t{0};
    });
    return m_uError == 0;
}

bool KYjutlRegistrar::GetSharedAccounts(wchar_t* buffer, int size) {
    if (!buffer || size <= 0) return false;
    if (buffer == m_szSharedAccounts) return true;
    size_t length = std::min(wcslen(m_szSharedAccounts), static_cast<size_t>(size - 1));
    std::copy_n(m_szSharedAccounts, length, buffer);
    buffer[length] = L'\0';
    return true;
}

bool KYjutlRegistrar::GetPrintInfInitialDir(std::wstring& directory) {
    directory.clear();
    if (m_pPreferences) directory = m_pPreferences->szPrintInfInitialDir;
    return true;
}

bool KYjutlRegistrar::GetPrintInfInitialDir(wchar_t* buffer, int size) {
    if (!buffer || size < 2) return false;
    buffer[0] = L'\0';
    if (!m_pPreferences) return true;
    size_t length = wcslen(m_pPreferences->szPrintInfInitialDir);
    if (length >= static_cast<size_t>(size)) return false;
    std::copy_n(m_pPreferences->szPrintInfInitialDir, length + 1, buffer);
    return true;
}

bool KYjutlRegistrar::SetPrintInfInitialDir(const wchar_t* directory) {
    if (!m_pPreferences || !directory) return false;
    size_t length = wcslen(directory);
    if (length >= std::size(m_pPreferences->szPrintInfInitialDir)) return false;
    std::copy_n(directory, length + 1, m_pPreferences->szPrintInfInitialDir);
    return true;
}
