// The base of the printer sheet's pages. A page fills its controls from the
// record it was loaded with, reads them back when it is left, and points the
// engine's work record at its own strings (CommitToRecord), so that the sheet
// hands the library one record. Back never validates: a page left backwards
// reads its controls and goes without a message. An edit box with a list under
// it completes what the user types from the list and steps into it with the keys.
#pragma once
#include <windows.h>

#include <cstdint>
#include <string>

#include "framework/PropertyPage.h"
#include "printers/KYjlpPrinterCfg.h"

class KYjlpDlgPC_Sht;

class KYjlpDlgPC_Pg : public fw::PropertyPage {
public:
    explicit KYjlpDlgPC_Pg(const fw::PropertyPageArgs& args) : fw::PropertyPage(args) {}

    // Gives a text list back to the library; the head is null afterwards, also on failure.
    virtual bool ReleaseTextList(DRIVER_LIST_ENTRY** head);
    // A key down in an edit box that has a list; true swallows it.
    virtual bool OnEditKey(UINT key, HWND edit, HWND list);
    virtual bool IsPageModified() { return true; }
    virtual DWORD GetControlHelpId(UINT id);
    virtual void OnPageContentChange();
    virtual void MarkPageModified();
    virtual void AutoCompleteEdit(HWND edit, HWND list);
    virtual bool FillPageControls() { return true; }
    // 0 success; positive: a failure that was told; negative: the sheet stops silently.
    virtual int32_t LoadFromRecord(const CLIENT_PRINTER_INFO* record) {
        (void)record;
        return 0;
    }
    // True writes the page's values into the engine's work record, false takes them out.
    virtual bool CommitToRecord(bool commit) {
        (void)commit;
        return true;
    }
    virtual bool ReloadFromRecord(const CLIENT_PRINTER_INFO* record);
    virtual bool EnableControl(UINT id, HWND window) {
        (void)id;
        (void)window;
        return true;
    }
    virtual bool EnablePageControls();

    // Readies a text list for a list box: drops blank entries and repeats of the
    // target, finds the target's entry (else the first); false when told.
    bool PruneTextList(DRIVER_LIST_ENTRY** head, int& count, const std::wstring& target, int& index,
                       DRIVER_LIST_ENTRY*& entry);
    KYjlpDlgPC_Sht* PrinterSheet() const noexcept;

protected:
    bool OnInitDialog() override;
    bool OnSetActive() override;
    bool OnKillActive() override;
    LRESULT OnWizardBack() override;

    // A double click, Enter or Space in a list: forward in a wizard, a change in a dialog.
    void ActivateForward();
    // A message box over the sheet with its caption; the text from the resource
    // library (printf-formatted with `argument` when given), else the fallback.
    int ShowPageMessage(UINT textId, const wchar_t* fallback, const wchar_t* argument, UINT style);
    // A text the page puts into an edit box selects its item when it is one, and is
    // never lengthened into another.
    void ShowInEdit(HWND edit, const std::wstring& text);
    // The list's selected item into the edit box.
    void CopySelectionToEdit(HWND list, HWND edit);
    // The focus to the edit box, all its text selected and in view.
    static void FocusWholeText(HWND edit);
    // Left or Up on the first item of a list brings the user back to the edit box.
    bool OnListKeyBack(UINT key, HWND list, HWND edit);
    // The engine, bound, or a thrown 27615.
    static KYjlpPrinterCfg& BoundEngine();
    static std::wstring ListItemText(HWND list, int index);
    static std::wstring WindowText(HWND window);
    // A text of blanks counts as empty.
    static bool IsBlankText(const std::wstring& text);

    // The page's strings changed under the work record: the record follows them,
    // so that it never points at a string the page has let go.
    void OnDataExchanged(bool save) override;

    bool m_bGoingBack = false;
    bool m_bNoComplete = false;
    bool m_bCommitted = false;  // the work record points at this page's strings

private:
    // The sheet validates the page in front when a dialog's OK or Apply is pressed.
    friend class KYjlpDlgPC_Sht;
    bool m_bInitialized = false;
};
