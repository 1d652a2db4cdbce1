// The name page of the printer sheet, the first working page of both forms. In
// the wizard it gives the new printer its name: when the client offers its own
// printers, only those not yet installed can be chosen, and such a printer needs
// no port page. In the dialog the name stands fixed; the page carries the default
// printer check box and the buttons that act on the printer at once: delete,
// test page and preferences.
#pragma once
#include <windows.h>

#include <string>

#include "printers/KYjlpDlgPC_Pg.h"

class KYjlpDlgPC_PgSpcName : public KYjlpDlgPC_Pg {
public:
    static constexpr UINT kTemplateId = 402;

    KYjlpDlgPC_PgSpcName();
    ~KYjlpDlgPC_PgSpcName() override;

    bool IsPageModified() override;
    DWORD GetControlHelpId(UINT id) override;
    bool FillPageControls() override;
    int32_t LoadFromRecord(const CLIENT_PRINTER_INFO* record) override;
    bool CommitToRecord(bool commit) override;
    bool EnableControl(UINT id, HWND window) override;

    // Takes the page's values out of the work record, empties it and gives the names back.
    virtual bool ResetPage();
    virtual void OnEditChanged();
    virtual void OnListSelChange();
    virtual void OnPreferences();
    virtual void OnListActivate();

    // The name comes from the client, so the sheet leaves the port page out.
    bool NoPortPage() const noexcept { return m_bNoPortPage; }

protected:
    void DoDataExchange(fw::DataExchange& dx) override;
    bool OnInitDialog() override;
    bool OnSetActive() override;
    bool OnKillActive() override;
    bool PreTranslateMessage(MSG& msg) override;
    bool OnCommand(UINT id, UINT code, HWND control) override;
    bool OnDialogMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) override;

private:
    HWND NameList() const noexcept { return Item(1016); }
    HWND NameEdit() const noexcept { return Item(1017); }
    void LoadEditedPrinter(const KYjlpPrinterCfg& engine, const CLIENT_PRINTER_INFO& record);
    // The client's printers for the wizard: which names may be added, and whether only those.
    void LoadClientNames(KYjlpPrinterCfg& engine);
    // Drops the names of printers that are installed already; false when told.
    bool KeepUninstalledNames(DRIVER_LIST_ENTRY** head, int& count);
    // True when the name is one of the client's, or one the user has already confirmed.
    bool IsOfferedName() const;
    void TellNoName(bool asked);
    // The control that takes the focus in the dialog: the check box unless it is fixed.
    void FocusDialogControl();
    void OnDeletePrinter();
    void OnPrintTest();
    // The engine for an action of the dialog: 27613 in a wizard, 27615 unbound.
    static KYjlpPrinterCfg& DialogEngine();
    // After a failed action: the cause, the action's own report, and the page the library's result names.
    void FinishFailedAction(int followUp, uint32_t result);

    int32_t m_bStartDefault = 0;
    bool m_bNoPortPage = false;
    std::wstring m_strName;
    std::wstring m_strAddedName;
    DRIVER_LIST_ENTRY* m_pNames = nullptr;
    bool m_bDefaultLocked = false;
    int32_t m_bCurDefault = 0;
    std::wstring m_strCurName;
};
