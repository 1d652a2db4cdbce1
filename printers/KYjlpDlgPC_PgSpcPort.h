// The port page of the printer sheet: where the printer prints, a port of the
// print monitor's list or a port or network printer that the user types. A
// typed entry that is not in the list is asked about once and then kept. A
// wizard for a printer that the client supplies has no port page.
#pragma once
#include <windows.h>

#include <string>

#include "printers/KYjlpDlgPC_Pg.h"

class KYjlpDlgPC_PgSpcPort : public KYjlpDlgPC_Pg {
public:
    static constexpr UINT kTemplateId = 403;

    KYjlpDlgPC_PgSpcPort();
    ~KYjlpDlgPC_PgSpcPort() override;

    bool IsPageModified() override;
    DWORD GetControlHelpId(UINT id) override;
    bool FillPageControls() override;
    int32_t LoadFromRecord(const CLIENT_PRINTER_INFO* record) override;
    bool CommitToRecord(bool commit) override;
    bool EnableControl(UINT id, HWND window) override;

    // Takes the page's values out of the work record, empties it and gives the list back.
    virtual bool ResetPage();
    virtual void OnEditChanged();
    virtual void OnListSelChange();
    virtual void OnListActivate();

protected:
    void DoDataExchange(fw::DataExchange& dx) override;
    bool OnInitDialog() override;
    bool OnKillActive() override;
    bool PreTranslateMessage(MSG& msg) override;
    bool OnCommand(UINT id, UINT code, HWND control) override;
    bool OnDialogMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) override;

private:
    HWND PortList() const noexcept { return Item(1024); }
    HWND PortEdit() const noexcept { return Item(1025); }
    // The ports of the print monitor; without them the user types a port.
    void ReadPorts(KYjlpPrinterCfg& engine);
    // The list readied for the list box; an empty port takes the first one.
    void TakeListedPort();
    // True when the port is one of the list's, or one the user has already confirmed.
    bool IsKnownPort() const;

    std::wstring m_strPort;
    std::wstring m_strAddedPort;
    DRIVER_LIST_ENTRY* m_pPorts = nullptr;
    std::wstring m_strCurPort;
};
