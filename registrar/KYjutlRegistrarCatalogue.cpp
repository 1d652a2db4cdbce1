// The catalogue reader: every published application under InstalledApps, with the
// user's and the groups' overrides already applied. A key that can't be read fails
// the whole catalogue: the panel never shows a list with one entry left out.
#include "registrar/KYjutlRegistrar.h"

#include <cstdlib>
#include <cwchar>
#include <new>
#include <string>
#include <unordered_map>

#include "foundation/FoldCase.h"
#include "registrar/RegistrarText.h"

namespace {

constexpr const wchar_t* kInstalledAppsKey = L"SOFTWARE\\Veltran\\Corvane\\AppServer\\InstalledApps";
constexpr REGSAM kReadMask = 0x20009;           // without KEY_NOTIFY on purpose
constexpr REGSAM kOverrideMask = KEY_QUERY_VALUE;
constexpr int kAttempts = 6;
constexpr DWORD kRetryPauseMs = 10;
constexpr UINT kUnknownTypeFormat = 24697;

void DeleteRecord(KYjutlRegistrar_FILE*& record) noexcept {
    if (!record) return;
    ReleaseRegistrarFile(*record);
    delete record;
    record = nullptr;
}

}  // namespace

bool KYjutlRegistrar::ResetAppList() {
    if (m_pAppList) {
        for (KYjutlRegistrar_FILE*& record : *m_pAppList) DeleteRecord(record);
        m_pAppList->clear();
        return true;
    }
    m_pAppList = new (std::nothrow) KYjutlRegistrar_FILEList;
    if (!m_pAppList) {
        RecordError(49);
        return false;
    }
    return true;
}

bool KYjutlRegistrar::CountInstalledApps() {
    ClearErrors();
    m_nInstalledApps = 0;
    ky::UniqueHKey key;
    Guard(67, [&] {
        LONG rc = RegOpenKeyExW(HKEY_LOCAL_MACHINE, kInstalledAppsKey, 0, kReadMask, key.put());
        if (rc == ERROR_FILE_NOT_FOUND) throw uint32_t{0};
        if (rc != ERROR_SUCCESS) {
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{65};
        }
        DWORD subkeys = 0;
        rc = RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr,
                              nullptr, nullptr, nullptr, nullptr, nullptr);
        if (rc != ERROR_SUCCESS) {
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{66};
        }
        m_nInstalledApps = subkeys;
    });
    CloseKey(key);  // a failed close changes nothing that was counted
    return m_uError == 0;
}

KYjutlRegistrar_FILEList* KYjutlRegistrar::ObtainInstalledApps() {
    ClearErrors();
    uint32_t reached = 0;
    ky::UniqueHKey installedApps;
    Guard(44, [&] {
        if (!m_hInstance) throw uint32_t{258};
        if ((!m_pAppList || !m_pAppList->empty()) && !ResetAppList()) throw uint32_t{0};
        if (!CountInstalledApps() || m_nInstalledApps == 0) throw uint32_t{0};
        LONG rc = RegOpenKeyExW(HKEY_LOCAL_MACHINE, kInstalledAppsKey, 0, kReadMask,
                                installedApps.put());
        if (rc != ERROR_SUCCESS) {
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{48};
        }
        m_catalogueMemo.Begin();
        CollectInstalledApps(installedApps.get(), reached);
    });
    m_catalogueMemo.End(m_uError == 0 && !m_pszOnlyApp);
    if (CloseKey(installedApps) != ERROR_SUCCESS) RecordLateError(46);
    if (m_uError == 0) NameFileTypes();
    if (m_uError != 0) {
        // 0 when the read failed before its first entry: the caller learns that no
        // entry was at fault.
        m_iErrorItem = static_cast<int>(reached);
        ReleaseRegistrarFileList(m_pAppList);
        return nullptr;
    }
    return m_pAppList;
}

void KYjutlRegistrar::CollectInstalledApps(HKEY installedApps, uint32_t& reached) {
    for (uint32_t index = 0; index < m_nInstalledApps; ++index) {
        reached = index + 1;
        KYjutlRegistrar_FILE* record = nullptr;
        for (int attempt = 1; !record; ++attempt) {
            record = ObtainInstalledApp(installedApps, index);
            if (record) break;
            if (attempt == kAttempts) throw m_uError != 0 ? m_uError : uint32_t{38};
            ClearErrors();
            Sleep(kRetryPauseMs);
        }
        bool only = m_pszOnlyApp != nullptr;
        if (only && _wcsicmp(m_pszOnlyApp, record->pszAppName) != 0) {
            DeleteRecord(record);
            continue;
        }
        try {
            m_pAppList->push_back(record);
        } catch (...) {
            DeleteRecord(record);
            throw uint32_t{45};
        }
        if (only) return;
    }
}

// A catalogue names few extensions: each one's type name is looked up in the class
// registry once per reading, and the names found are shared by the records after.
void KYjutlRegistrar::NameFileTypes() {
    wchar_t extension[256];
    std::unordered_map<std::wstring, std::wstring> named;
    for (KYjutlRegistrar_FILE* record : *m_pAppList) {
        if (!record || !record->pszExePath) continue;
        registrar_text::CopyText(registrar_text::ExtensionOf(record->pszExePath), extension,
                                 std::size(extension));
        std::wstring key = ky::FoldCase(extension);
        if (const auto found = named.find(key); found != named.end()) {
            if (wchar_t* text = _wcsdup(found->second.c_str())) {
                free(record->pszFileType);
                record->pszFileType = text;
                continue;
            }
        }
        if (!ObtainFileTypeName(extension, &record->pszFileType)) {
            ClearErrors();
            continue;
        }
        if (record->pszFileType) named.emplace(std::move(key), record->pszFileType);
    }
}

KYjutlRegistrar_FILE* KYjutlRegistrar::ObtainInstalledApp(HKEY installedApps, uint32_t index) {
    KYjutlRegistrar_FILE* record = nullptr;
    ky::UniqueHKey appKey;
    Guard(11, [&] {
        if (!m_hInstance) throw uint32_t{258};
        if (!m_pAppList) throw uint32_t{50};
        if (!installedApps) throw uint32_t{47};
        record = new (std::nothrow) KYjutlRegistrar_FILE{};
        if (!record) throw uint32_t{37};
        DWORD chars = kScratchChars;
        LONG rc = RegEnumKeyExW(installedApps, index, m_wszB, &chars, nullptr, nullptr, nullptr,
                                &m_ftScratch);
        if (rc != ERROR_SUCCESS) {
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{18};
        }
        record->pszAppName = _wcsdup(m_wszB);
        if (!record->pszAppName) throw uint32_t{21};
        const FILETIME written = m_ftScratch;
        // An entry unchanged since the last reading answers from it, without its key.
        if (const AppKeyValues* known = m_catalogueMemo.Recall(m_wszB, written)) {
            ReadAppRecord(nullptr, known, 0, *record);
            return;
        }
        if (swprintf(m_wszA, kScratchChars, L"%ls%ls%ls", kInstalledAppsKey, L"\\", m_wszB) < 0)
            throw uint32_t{28};
        rc = RegOpenKeyExW(HKEY_LOCAL_MACHINE, m_wszA, 0, kReadMask, appKey.put());
        if (rc != ERROR_SUCCESS) {
            m_uErrorDetail = static_cast<uint32_t>(rc);
            throw uint32_t{28};
        }
        ReadAppKey(appKey.get(), written, *record);
    });
    if (CloseKey(appKey) != ERROR_SUCCESS) RecordLateError(26);
    if (m_uError != 0) {
        m_iErrorItem = static_cast<int>(index) + 1;
        DeleteRecord(record);
    }
    return record;
}

int KYjutlRegistrar::AppSubkeys(HKEY appKey) {
    if (m_nAppSubkeys >= 0) return m_nAppSubkeys;
    DWORD subkeys = 0;
    if (RegQueryInfoKeyW(appKey, nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, nullptr, nullptr, nullptr,
                         nullptr, nullptr) != ERROR_SUCCESS)
        return -1;
    return static_cast<int>(subkeys);
}

// The key described once (its subkeys, its values and their sizes) and its values
// read in one pass; a key that can't be described or changes under the pass is
// read value by value, as the checks of the record ask.
void KYjutlRegistrar::ReadAppKey(HKEY appKey, const FILETIME& written, KYjutlRegistrar_FILE& record) {
    DWORD subkeys = 0, values = 0, longestName = 0, largestData = 0;
    if (RegQueryInfoKeyW(appKey, nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values, &longestName,
                         &largestData, nullptr, nullptr) != ERROR_SUCCESS) {
        ReadAppRecord(appKey, nullptr, -1, record);
        return;
    }
    AppKeyValues read;
    if (!read.Read(appKey, values, longestName, largestData)) {
        ReadAppRecord(appKey, nullptr, static_cast<int>(subkeys), record);
        return;
    }
    const AppKeyValues* kept = m_catalogueMemo.Keep(record.pszAppName, written, subkeys, std::move(read));
    ReadAppRecord(appKey, kept, static_cast<int>(subkeys), record);
}

void KYjutlRegistrar::ReadAppRecord(HKEY appKey, const AppKeyValues* values, int subkeys,
                                    KYjutlRegistrar_FILE& record) {
    m_pAppValues = values;
    m_nAppSubkeys = -1;
    m_nAppSubkeys = subkeys >= 0 ? subkeys : AppSubkeys(appKey);
    struct Forget {
        KYjutlRegistrar& registrar;
        ~Forget() {
            registrar.m_nAppSubkeys = -1;
            registrar.m_pAppValues = nullptr;
        }
    } forget{*this};
    // A failed read of a required or present value replaces the look-up's own number;
    // its Win32 code stays in the detail.
    if (!ObtainAppText(appKey, nullptr, L"ExePath")) {
        m_uError = 0;
        throw uint32_t{39};
    }
    if (!ExpandA()) throw uint32_t{271};
    record.pszExePath = _wcsdup(m_wszA);
    if (!record.pszExePath) throw uint32_t{23};
    if (!ObtainAppCmdLineOptions(appKey, record)) throw uint32_t{0};
    if (!ObtainAppStartDirectory(appKey, record)) throw uint32_t{0};
    if (ObtainAppText(appKey, nullptr, L"IconPath")) {
        if (!ExpandA()) throw uint32_t{272};
        record.pszIconPath = _wcsdup(m_wszA);
        if (!record.pszIconPath) throw uint32_t{22};
    } else if (m_uError == 32) {
        ClearErrors();
    } else {
        m_uError = 0;
        throw uint32_t{25};
    }
    DWORD size = sizeof m_dwScratch1;
    if (ObtainAppValue(appKey, nullptr, L"IconIndex", &m_dwScratch1, size)) {
        record.iIconIndex = static_cast<int>(m_dwScratch1) < 0 ? 0 : static_cast<int>(m_dwScratch1);
    } else if (m_uError == 32) {
        ClearErrors();
    } else {
        m_uError = 0;
        throw uint32_t{24};
    }
    if (!ObtainAppStartState(appKey, record)) {
        ClearErrors();
        record.iStartState = 0;
    }
}

bool KYjutlRegistrar::ObtainAppText(HKEY appKey, const wchar_t* subkey, const wchar_t* valueName) {
    DWORD size = m_cbA;
    if (!ObtainAppValue(appKey, subkey, valueName, m_wszA, size)) return false;
    if (TerminateText(m_wszA, size, kScratchChars)) return true;
    RecordError(35);
    if (m_uErrorDetail == 0) m_uErrorDetail = ERROR_MORE_DATA;
    return false;
}

bool KYjutlRegistrar::ExpandA() {
    DWORD chars = ExpandEnvironmentStringsW(m_wszA, m_wszB, kScratchChars);
    if (chars == 0 || chars > kScratchChars) return false;
    return registrar_text::CopyText(m_wszB, m_wszA, kScratchChars);
}

bool KYjutlRegistrar::ObtainAppValue(HKEY appKey, const wchar_t* subkey, const wchar_t* valueName,
                                     void* data, DWORD& size) {
    LONG closed = ERROR_SUCCESS;
    return ReadAppValue(appKey, subkey, valueName, data, size, closed);
}

bool KYjutlRegistrar::ReadAppValue(HKEY appKey, const wchar_t* subkey, const wchar_t* valueName,
                                   void* data, DWORD& size, LONG& closed) {
    const DWORD capacity = size;
    LONG win32 = ERROR_SUCCESS;
    ky::UniqueHKey overrideKey;
    Guard(29, [&] {
        const bool own = !subkey || !*subkey;
        if (!appKey && !(own && m_pAppValues)) throw uint32_t{27};
        if (!valueName || !*valueName) throw uint32_t{34};
        if (!data) throw uint32_t{33};
        if (capacity == 0) throw uint32_t{36};
        HKEY source = appKey;
        if (own && m_pAppValues) {
            memset(data, 0, capacity);
            win32 = m_pAppValues->Query(valueName, data, size);
            if (win32 == ERROR_FILE_NOT_FOUND) throw uint32_t{32};
            if (win32 != ERROR_SUCCESS) throw uint32_t{35};
            return;
        }
        if (!own) {
            win32 = RegOpenKeyExW(appKey, subkey, 0, kOverrideMask, overrideKey.put());
            if (win32 != ERROR_SUCCESS) throw uint32_t{31};
            source = overrideKey.get();
        }
        memset(data, 0, capacity);
        win32 = RegQueryValueExW(source, valueName, nullptr, nullptr, static_cast<BYTE*>(data), &size);
        if (win32 == ERROR_FILE_NOT_FOUND) throw uint32_t{32};
        if (win32 != ERROR_SUCCESS) throw uint32_t{35};
    });
    closed = CloseKey(overrideKey);
    if (closed != ERROR_SUCCESS) {
        if (win32 == ERROR_SUCCESS) win32 = closed;
        RecordLateError(30);
    }
    if (m_uError == 0) return true;
    if (m_uErrorDetail == 0) m_uErrorDetail = static_cast<uint32_t>(win32);
    if (data && capacity != 0) memset(data, 0, capacity);
    size = 0;
    return false;
}

bool KYjutlRegistrar::ObtainOverride(HKEY appKey, const wchar_t* valueName, void* data, DWORD& size,
                                     bool text) {
    const DWORD capacity = size;
    auto lookUp = [&](const wchar_t* subkey) {
        size = capacity;
        LONG closed = ERROR_SUCCESS;
        const bool found = ReadAppValue(appKey, subkey, valueName, data, size, closed);
        // A subkey that can't be closed stops the chain, whatever the look-up found:
        // its own number (a missing value, say) must not hide the close.
        if (closed != ERROR_SUCCESS) {
            ClearErrors();
            throw uint32_t{30};
        }
        if (found && (!text || TerminateText(static_cast<wchar_t*>(data), size, capacity / sizeof(wchar_t))))
            return true;
        ClearErrors();  // missing key, missing value, unreadable value: all a miss
        return false;
    };
    // An application without subkeys has no overrides: its own value is the answer,
    // without a look-up per user and group that could only miss.
    if (AppSubkeys(appKey) == 0) {
        if (lookUp(nullptr)) return true;
        size = 0;
        return false;
    }
    wchar_t subkey[kScratchChars];
    if (!m_strDomain.empty() && !m_strUser.empty() &&
        swprintf(subkey, kScratchChars, L"%ls%ls%ls%ls%ls", L"Users", L"\\", m_strDomain.c_str(),
                 L"!", m_strUser.c_str()) > 0 &&
        lookUp(subkey))
        return true;
    if (m_pGroups) {
        for (const std::wstring& group : *m_pGroups) {
            if (swprintf(subkey, kScratchChars, L"%ls%ls%ls", L"Groups", L"\\", group.c_str()) > 0 &&
                lookUp(subkey))
                return true;
        }
    }
    if (lookUp(nullptr)) return true;
    size = 0;
    return false;
}

// The numbers of one override chain, each named once; 0 where the chain has no
// such step.
struct KYjutlRegistrar::OverrideChain {
    const wchar_t* valueName;
    uint32_t expandFailed;  // expanding the value found
    uint32_t noMemory;      // copying it into the record
    uint32_t outOfRange;    // a number the record can't take
    uint32_t unexpected;    // an exception inside the chain
    uint32_t marker;        // left in the detail when the chain fails with another number
};

void KYjutlRegistrar::MarkChainFailure(const OverrideChain& chain) noexcept {
    if (m_uError != 0 && m_uError != chain.unexpected) m_uErrorDetail = chain.marker;
}

bool KYjutlRegistrar::ObtainOverriddenText(HKEY appKey, const OverrideChain& chain, wchar_t*& field) {
    Guard(chain.unexpected, [&] {
        DWORD size = m_cbA;
        if (!ObtainOverride(appKey, chain.valueName, m_wszA, size, true)) return;
        if (!ExpandA()) throw chain.expandFailed;
        field = _wcsdup(m_wszA);
        if (!field) throw chain.noMemory;
    });
    MarkChainFailure(chain);
    return m_uError == 0;
}

bool KYjutlRegistrar::ObtainAppCmdLineOptions(HKEY appKey, KYjutlRegistrar_FILE& record) {
    static constexpr OverrideChain chain{.valueName = L"CmdLineOptions", .expandFailed = 12, .noMemory = 19,
                                         .outOfRange = 0, .unexpected = 13, .marker = 14};
    return ObtainOverriddenText(appKey, chain, record.pszCmdLineOptions);
}

bool KYjutlRegistrar::ObtainAppStartDirectory(HKEY appKey, KYjutlRegistrar_FILE& record) {
    static constexpr OverrideChain chain{.valueName = L"StartDirectory", .expandFailed = 15, .noMemory = 20,
                                         .outOfRange = 0, .unexpected = 16, .marker = 17};
    return ObtainOverriddenText(appKey, chain, record.pszStartDirectory);
}

bool KYjutlRegistrar::ObtainAppStartState(HKEY appKey, KYjutlRegistrar_FILE& record) {
    static constexpr OverrideChain chain{.valueName = L"StartState", .expandFailed = 0, .noMemory = 0,
                                         .outOfRange = 42, .unexpected = 40, .marker = 41};
    Guard(chain.unexpected, [&] {
        DWORD size = sizeof m_dwScratch2;
        if (!ObtainOverride(appKey, chain.valueName, &m_dwScratch2, size, false)) return;
        int state = static_cast<int>(m_dwScratch2);
        if (state < 0 || state >= 3) throw chain.outOfRange;
        record.iStartState = state;
    });
    MarkChainFailure(chain);
    return m_uError == 0;
}

bool KYjutlRegistrar::ObtainFileTypeName(const wchar_t* extension, wchar_t** target) {
    ClearErrors();
    Guard(52, [&] {
        if (!target) throw uint32_t{52};
        const wchar_t* trimmed = extension ? extension : L"";
        while (*trimmed == L' ') ++trimmed;
        bool present = *trimmed != L'\0';
        bool found = false;
        if (present)
            found = LookUpClassText(trimmed);
        else
            RecordError(63);
        if (!found) {
            if (m_uError == 54) throw uint32_t{0};
            ClearErrors();
            FormatUnknownType(trimmed, present);
        }
        wchar_t* text = _wcsdup(m_wszA);
        if (!text) throw uint32_t{53};
        free(*target);
        *target = text;
    });
    if (m_uError != 0 && target) {
        free(*target);
        *target = nullptr;
    }
    return m_uError == 0;
}

bool KYjutlRegistrar::LookUpClassText(const wchar_t* extension) {
    ky::UniqueHKey typeKey;
    Guard(52, [&] {
        m_wszA[0] = L'\0';
        if (extension[0] != L'.') wcscpy(m_wszA, L".");
        if (wcslen(m_wszA) + wcslen(extension) >= kScratchChars) throw uint32_t{55};
        wcscat(m_wszA, extension);
        ky::UniqueHKey extensionKey;
        if (RegOpenKeyExW(HKEY_CLASSES_ROOT, m_wszA, 0, kReadMask, extensionKey.put()) != ERROR_SUCCESS)
            throw uint32_t{55};
        if (QueryText(extensionKey.get(), nullptr, m_wszB, kScratchChars) != ERROR_SUCCESS)
            throw uint32_t{56};
        if (!m_wszB[0]) throw uint32_t{57};
        if (CloseKey(extensionKey) != ERROR_SUCCESS) throw uint32_t{54};
        if (RegOpenKeyExW(HKEY_CLASSES_ROOT, m_wszB, 0, kReadMask, typeKey.put()) != ERROR_SUCCESS)
            throw uint32_t{60};
        if (QueryText(typeKey.get(), nullptr, m_wszA, kScratchChars) != ERROR_SUCCESS)
            throw uint32_t{61};
        if (!m_wszA[0]) throw uint32_t{62};
    });
    if (CloseKey(typeKey) != ERROR_SUCCESS) RecordLateError(59);
    return m_uError == 0;
}

void KYjutlRegistrar::FormatUnknownType(const wchar_t* extension, bool present) {
    if (LoadStringW(m_hInstance, kUnknownTypeFormat, m_wszB, kScratchChars) <= 0) throw uint32_t{58};
    wchar_t upper[256];
    if (!registrar_text::CopyText(present ? extension : L" ", upper, std::size(upper)))
        throw uint32_t{58};
    _wcsupr(upper);
    if (!registrar_text::FormatOneText(m_wszB, upper, m_wszA, kScratchChars)) throw uint32_t{58};
    if (!present) registrar_text::TrimBlanks(m_wszA);
}
