// The make and model page of the printer sheet: the driver in two steps, a
// manufacturer and one of its models, from the print monitor's lists. The
// models of a manufacturer are read when it is first chosen and kept while the
// lists stand. A driver file from disk would give lists of its own; its button
// is switched off in this system, but the way behind it is kept whole.
#pragma once
#include <windows.h>

#include <string>
#include <vector>

#include "printers/KYjlpDlgPC_Pg.h"

class KYjlpDlgPC_PgSpcMake : public KYjlpDlgPC_Pg {
public:
    static constexpr UINT kTemplateId = 401;
    // One model list per manufacturer, in the order of the manufacturers; null until read.
    using ModelLists = std::vector<DRIVER_LIST_ENTRY*>;

    KYjlpDlgPC_PgSpcMake();
    ~KYjlpDlgPC_PgSpcMake() override;

    bool IsPageModified() override;
    DWORD GetControlHelpId(UINT id) override;
    bool FillPageControls() override;
    int32_t LoadFromRecord(const CLIENT_PRINTER_INFO* record) override;
    bool CommitToRecord(bool commit) override;
    bool EnableControl(UINT id, HWND window) override;

    // Shows the models of the chosen manufacturer, reading them the first time; true when shown.
    virtual bool OnManufacturerSelChange();
    // Takes the page's values out of the work record, empties it and gives the lists back.
    virtual bool ResetPage();
    virtual bool ReleaseModelLists(ModelLists& lists);
    virtual void OnModelActivate();
    virtual bool SetSelection(const std::wstring& path, const std::wstring& make, const std::wstring& model);
    virtual bool SetSelectionText(const wchar_t* path, const wchar_t* make, const wchar_t* model);

protected:
    void DoDataExchange(fw::DataExchange& dx) override;
    bool OnInitDialog() override;
    bool OnSetActive() override;
    bool OnKillActive() override;
    bool OnCommand(UINT id, UINT code, HWND control) override;

private:
    // What one call of the library's driver lists gave.
    struct LibraryCall {
        int32_t result = 0;
        DWORD error = 0;
        bool thrown = false;
    };
    // A list readied for its list box: how many entries, and where the wanted one is.
    struct Pruned {
        int count = 0;
        int index = -1;
    };

    HWND MakeList() const noexcept { return Item(1012); }
    HWND ModelList() const noexcept { return Item(1014); }

    // The manufacturers and the models of the wanted one, from the installed drivers
    // (path null or empty) or from a driver file; `make` and `model` end on entries
    // of the lists. False when told; the lists are then empty.
    bool LoadDriverLists(DRIVER_LIST_ENTRY** manufacturers, ModelLists& models, const wchar_t* path,
                         std::wstring& make, std::wstring& model, bool report);
    Pruned ReadManufacturers(DRIVER_LIST_ENTRY** manufacturers, const wchar_t* path, std::wstring& make);
    void ReadModels(const wchar_t* path, const std::wstring& make, std::wstring& model, DRIVER_LIST_ENTRY*& list);
    LibraryCall EnumDrivers(const wchar_t* path, const wchar_t* make, DRIVER_LIST_ENTRY** list) const;
    [[noreturn]] static void ThrowListFailure(int number, const LibraryCall& call, const wchar_t* make,
                                              const wchar_t* path);
    static void TellListFailure(int number, const wchar_t* path, bool report);
    // The models of the manufacturer chosen in the list, read into `list`; false when there are none.
    bool ReadModelsOf(const std::wstring& make, DRIVER_LIST_ENTRY*& list);
    static void SelectExact(HWND list, std::wstring& start, std::wstring& current);

    void OnHaveDisk();
    // The open-file dialog for a driver file; false when the user cancelled.
    bool ChooseDriverFile(wchar_t (&file)[MAX_PATH]);
    // Where the dialog opens when no file is proposed; false when no directory would do.
    static bool ProposeDirectory(std::wstring& directory);
    static bool IsListableDirectory(const std::wstring& directory);
    static void KeepDriverDirectory(const wchar_t* file);

    bool m_bDiskChosen = false;
    int32_t m_bHaveDiskAllowed = 0;
    std::wstring m_strInfPath;
    std::wstring m_strMake;
    std::wstring m_strInstalledLabel;
    std::wstring m_strModel;
    DRIVER_LIST_ENTRY* m_pManufacturers = nullptr;
    ModelLists m_aModelLists;
    std::wstring m_strCurInfPath;
    std::wstring m_strCurMake;
    std::wstring m_strCurModel;
};
