// The printer sheet in its two forms: a wizard that adds a printer, and a dialog
// with Apply that changes an installed one and gives what-is-this help for its
// controls. Pages ask g_bPrinterWizard which form runs.
#pragma once
#include <windows.h>

#include "dialogs/KYstdUI_DlgData.h"
#include "framework/PropertySheet.h"
#include "printers/KYjlpPrinterCfg.h"

class KYjlpDlgPC_Pg;

class KYjlpDlgPC_Sht : public fw::PropertySheet {
public:
    // Codes the sheet ends with besides OK, Cancel and Finish.
    static constexpr INT_PTR kEndedByLibrary = 1024;   // the library refused in a way that ends the sheet
    static constexpr INT_PTR kPrinterDeleted = 1025;
    static constexpr UINT kApplyNow = 12321, kHelpButton = 9, kHelpCommand = 57670, kWhatsThis = 32849;

    KYjlpDlgPC_Sht(const fw::PropertySheetArgs& args, const KYstdUI_DlgData* data);

    virtual bool InstallNewPrinter();
    virtual DWORD GetControlHelpId(UINT id);
    virtual bool ShowWhatsThisMenu();
    virtual bool ApplyPrinterEdit();
    // Shows the page the library's result names; true when the sheet is ended or stays as it is.
    bool GoToFailedPage(uint32_t result, int activeId);
    // Only the page in front is validated; `modified` says whether any page changed.
    bool ValidatePages(bool& modified);
    bool ShowControlHelp(UINT id);
    bool ShowHelpAtCursor();
    KYjlpDlgPC_Pg* ActivePrinterPage() const noexcept;
    const KYstdUI_DlgData& Data() const noexcept { return m_dlgData; }

protected:
    bool OnSheetCommand(UINT id) override;
    bool OnSheetMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) override;
    void OnSheetCreated() override;
    bool PreTranslateMessage(MSG& msg) override;

private:
    bool RunEngineChange(bool (KYjlpPrinterCfg::*change)(uint32_t&), int failure);
    void OnApplyNow();
    void OnSheetOk();
    bool OnSheetHelp(const HELPINFO* info);
    bool OnRightButton(const MSG& msg, bool down);
    void ReloadPagesAfterApply();
    HWND ChildAtLastClick() const;

    bool m_bSuppressCommand = false;
    KYstdUI_DlgData m_dlgData;
    DWORD m_helpRequest[3] = {};
    POINT m_ptLastClick{};
};
