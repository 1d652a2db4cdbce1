// The program's one door to the registry: the catalogue of published applications
// (machine-wide, read only), the user's preference store (read and write, as a
// whole backed up and restored), and the server-wide facts the panel needs.
//
// No operation shows anything. A failing operation returns false (or null) and
// leaves its number in m_uError (the first error of the operation wins), a second
// number or a Win32 code in m_uErrorDetail, and the one-based list item in
// m_iErrorItem. Callers turn number n into situation 27220 + n (1 to 275), any
// other non-zero number into 27218 (see SituationFromError).
#pragma once
#include <windows.h>
#include <commctrl.h>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "foundation/UniqueHandle.h"
#include "registrar/AppKeyValues.h"
#include "registrar/CatalogueMemo.h"
#include "registrar/KYjutlRegistrar_FILE.h"
#include "registrar/KYjutlRegistrar_LVISP.h"
#include "registrar/KYjutlRegistrar_PREFS.h"

class KYjutlRegistrar {
public:
    static constexpr uint32_t kModeClassic = 0;
    static constexpr uint32_t kModeStandard = 1;
    static constexpr DWORD kScratchChars = 1024;

    KYjutlRegistrar();  // Standard store, no domain, no user, no groups
    KYjutlRegistrar(uint32_t mode, const wchar_t* domain, const wchar_t* user,
                    std::vector<std::wstring>* groups);
    virtual ~KYjutlRegistrar();
    KYjutlRegistrar(const KYjutlRegistrar&) = delete;
    KYjutlRegistrar& operator=(const KYjutlRegistrar&) = delete;

    // Situation of a registrar number: 0 none, 27220 + n for 1 to 275, else 27218.
    // The one place that maps them: the program reports registrar failures through it.
    static constexpr int SituationFromError(uint32_t error) noexcept {
        if (error == 0) return 0;
        return error <= 275 ? 27220 + static_cast<int>(error) : 27218;
    }

    // Core.
    bool Initialize(HMODULE resources, const wchar_t* domain, const wchar_t* user,
                    std::vector<std::wstring>* groups);
    virtual void ReleaseAll();
    bool StoreAll(HMODULE resources);
    bool GetSharedAccounts(wchar_t* buffer, int size);
    bool GetPrintInfInitialDir(std::wstring& directory);
    bool GetPrintInfInitialDir(wchar_t* buffer, int size);
    bool SetPrintInfInitialDir(const wchar_t* directory);

    // Catalogue.
    KYjutlRegistrar_FILEList* ObtainInstalledApps();
    bool CountInstalledApps();
    KYjutlRegistrar_FILE* ObtainInstalledApp(HKEY installedApps, uint32_t index);
    bool ObtainAppValue(HKEY appKey, const wchar_t* subkey, const wchar_t* valueName, void* data,
                        DWORD& size);
    bool ObtainAppCmdLineOptions(HKEY appKey, KYjutlRegistrar_FILE& record);
    bool ObtainAppStartDirectory(HKEY appKey, KYjutlRegistrar_FILE& record);
    bool ObtainAppStartState(HKEY appKey, KYjutlRegistrar_FILE& record);
    bool ObtainFileTypeName(const wchar_t* extension, wchar_t** target);
    bool ResetAppList();

    // Preference store.
    bool ObtainPreferences();
    bool StorePreferences();
    bool StoreItemScreenPositions();
    void ResetPreferences();
    static bool DefaultCustomColors(COLORREF* colors, int count);
    static bool DefaultWindowPlacement(WINDOWPLACEMENT& placement);
    static COLORREF Contrast(COLORREF color) noexcept;
    bool AddItemScreenPosition(const KYjutlRegistrar_LVISP& position,
                               KYjutlRegistrar_LVISPArray* target);
    void FreeItemScreenPositions(KYjutlRegistrar_LVISPArray** array);
    bool ReorderColumns(uint32_t count, const int* ids);
    bool ReplaceColumn(int index, LVCOLUMNW* column, bool freeOld);
    static void FreeColumn(LVCOLUMNW* column) noexcept;

    // The store as a whole.
    bool DeletePreferences();
    bool RestorePreferences();
    bool BackupPreferences(const wchar_t* fileName);
    uint32_t AdjustPrivilege(const wchar_t* privilege, bool enable);
    bool SwitchStore(uint32_t mode);

    // Server-wide facts.
    bool ObtainCloseOption();
    bool ObtainSharedAccounts();
    bool ObtainSessionTimeout();
    bool ObtainSessionTimeoutInner();  // as ObtainSessionTimeout, without its own catch-all

    // Set by the owner between construction and the first read.
    HMODULE m_hInstance = nullptr;
    bool m_bKeepPreferences = true;
    const wchar_t* m_pszRestoreFile = nullptr;  // not owned
    const wchar_t* m_pszOnlyApp = nullptr;      // not owned

    // Read by the owner.
    KYjutlRegistrar_FILEList* m_pAppList = nullptr;
    uint32_t m_nInstalledApps = 0;
    uint32_t m_uMode = kModeStandard;
    std::wstring m_strPreferencesKey;
    std::wstring m_strDomain;
    std::wstring m_strUser;
    KYjutlRegistrar_PREFS* m_pPreferences = nullptr;
    uint32_t m_uCloseOption = 0;
    uint32_t m_uSessionTimeout = 0;
    // What the server offers of client printing; bit 4 lets client printers start.
    static constexpr uint32_t kClientPrintersOffered = 0x10;
    uint32_t m_uClientPrinting = 0;
    wchar_t m_szSharedAccounts[260] = {};
    std::vector<std::wstring>* m_pGroups = nullptr;  // not owned

    // The outcome of the last operation.
    uint32_t m_uError = 0;
    uint32_t m_uErrorDetail = 0;
    int m_iErrorItem = -1;

private:
    // The shape every operation shares.
    void ClearErrors() noexcept;
    void RecordError(uint32_t error) noexcept;       // first error wins
    void RecordLateError(uint32_t error) noexcept;   // clean-up: first error or detail
    bool Tolerate(std::initializer_list<uint32_t> tolerated) noexcept;
    template <typename Body>
    void Guard(uint32_t unexpected, Body&& body) noexcept {
        try {
            body();
        } catch (uint32_t error) {
            RecordError(error);
        } catch (...) {
            RecordError(unexpected);
        }
    }
    static LONG CloseKey(ky::UniqueHKey& key) noexcept;

    // Keys.
    bool ResolvePreferencesKeyName();
    bool OpenPreferencesKeyForWriting();
    bool ClosePreferencesKey(bool afterReading);
    static LONG RecurseDeleteKey(HKEY parent, const wchar_t* name);
    static LONG DeleteOneKey(HKEY parent, const wchar_t* name);
    static LONG QueryText(HKEY key, const wchar_t* name, wchar_t* buffer, DWORD capacity);
    static bool TerminateText(wchar_t* buffer, DWORD bytes, DWORD capacity) noexcept;

    // Catalogue helpers.
    int AppSubkeys(HKEY appKey);
    void ReadAppKey(HKEY appKey, const FILETIME& written, KYjutlRegistrar_FILE& record);
    // The record from the key, or from its values read before (appKey may then be null).
    void ReadAppRecord(HKEY appKey, const AppKeyValues* values, int subkeys, KYjutlRegistrar_FILE& record);
    bool ObtainAppText(HKEY appKey, const wchar_t* subkey, const wchar_t* valueName);
    // ObtainAppValue, telling the override chain how the close of the subkey went.
    bool ReadAppValue(HKEY appKey, const wchar_t* subkey, const wchar_t* valueName, void* data,
                      DWORD& size, LONG& closed);
    bool ObtainOverride(HKEY appKey, const wchar_t* valueName, void* data, DWORD& size, bool text);
    struct OverrideChain;  // the value of one override chain and its numbers
    bool ObtainOverriddenText(HKEY appKey, const OverrideChain& chain, wchar_t*& field);
    void MarkChainFailure(const OverrideChain& chain) noexcept;
    bool ExpandA();
    void CollectInstalledApps(HKEY installedApps, uint32_t& reached);
    void NameFileTypes();
    bool LookUpClassText(const wchar_t* extension);
    void FormatUnknownType(const wchar_t* extension, bool present);

    // Preference readers.
    void ReadDword(const wchar_t* name, uint32_t failure, DWORD& value);
    bool ObtainSchemaId();
    bool ObtainColors();
    bool ObtainControlBarsStates();
    bool ObtainColumnIndices();
    bool ParseColumnIndices(const wchar_t* text, int* taken);
    bool ObtainColumns();
    LVCOLUMNW* ObtainColumn(int position, uint32_t id);
    void ObtainColumnHeading(LVCOLUMNW& column, int kind);
    void ObtainColumnFormat(LVCOLUMNW& column, int kind);
    void ObtainColumnWidth(LVCOLUMNW& column, int kind);
    bool ObtainItemScreenPositions();
    void ReadItemScreenPositions(HKEY positions);
    bool ObtainItemsSortInfo();
    bool ObtainListViewStyles();
    bool ObtainMainFrameStyles();
    bool ObtainPrintInfInitialDir();
    void DefaultPrintInfInitialDir();
    bool ObtainWindowPlacement();
    void FreeColumns();

    // Preference writers.
    void WriteDword(const wchar_t* name, DWORD value, uint32_t failure);
    void WriteBinary(const wchar_t* name, const void* data, DWORD size, uint32_t failure);
    void WriteText(const wchar_t* name, const wchar_t* text, uint32_t failure);
    bool StoreColors();
    bool StoreControlBarsStates();
    bool StoreColumnIndices();
    bool StoreColumns();
    bool StoreColumn(const LVCOLUMNW& column);
    void WriteItemScreenPositions();
    bool StoreItemsSortInfo();
    bool StoreListViewStyles();
    bool StoreMainFrameStyles();
    bool StorePrintInfInitialDir();
    bool StoreSchemaId();
    bool StoreWindowPlacement();

    // Restore helpers.
    void LocateRestoreFile(wchar_t* fullPath, DWORD capacity);
    LONG LoadHiveIntoStore(const wchar_t* file);
    bool StoreIsEmpty() const;
    LONG CopyHiveIntoStore(const wchar_t* file);

    ky::UniqueHKey m_keyPreferences;
    CatalogueMemo m_catalogueMemo;

    // Scratch block: shared work buffers, nothing in them survives an operation.
    FILETIME m_ftScratch = {};
    DWORD m_dwScratch1 = 0;
    // The subkeys of the application key being read, -1 when not known: asked once
    // per application, so that its three override chains need not ask again.
    int m_nAppSubkeys = -1;
    // The values of the application key being read, when they were read in one
    // pass; null when each value is asked of the key.
    const AppKeyValues* m_pAppValues = nullptr;
    DWORD m_dwScratch2 = 0;
    wchar_t m_wszA[kScratchChars] = {};
    wchar_t m_wszB[kScratchChars] = {};
    DWORD m_cbA = sizeof m_wszA;
    DWORD m_cbB = sizeof m_wszB;
};
