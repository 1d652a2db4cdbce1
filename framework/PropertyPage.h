// One page of a property sheet or a wizard (stands for CPropertyPage): a child
// dialog of the resource library that the system's sheet creates when the page is
// first shown. The sheet's notifications arrive as typed virtual handlers.
#pragma once
#include <windows.h>
#include <commctrl.h>

#include <string>

#include "framework/Dialog.h"

namespace fw {

class PropertySheet;

struct PropertyPageArgs {
    UINT templateId = 0;
    UINT captionId = 0;         // the tab's text in a dialog; 0: the template's caption
    UINT headerTitleId = 0;     // a wizard's header; 0: none
    UINT headerSubtitleId = 0;
};

struct PageLook {
    bool wizard = false;
    bool hideHeader = false;  // the welcome and finish pages stand beside the watermark
    bool helpButton = false;
};

class PropertyPage : public Dialog {
public:
    explicit PropertyPage(const PropertyPageArgs& args);

    // The system's page for this object; null when it cannot be made.
    HPROPSHEETPAGE CreatePage(PropertySheet& sheet, const PageLook& look);
    PropertySheet* Sheet() const noexcept { return m_pSheet; }
    HWND SheetHandle() const noexcept;
    // A dialog's Apply button follows the pages that say they are changed.
    void SetModified(bool modified) noexcept;

protected:
    // True: the page may show.
    virtual bool OnSetActive() { return true; }
    // True: the page may be left.
    virtual bool OnKillActive() { return UpdateData(true); }
    // 0 moves as the sheet would; -1 stays.
    virtual LRESULT OnWizardBack() { return 0; }
    virtual LRESULT OnWizardNext() { return 0; }
    // True: the wizard may end.
    virtual bool OnWizardFinish() { return true; }
    virtual bool OnApply() { return true; }
    virtual void OnReset() {}
    // Keys of the sheet's own loop end at the sheet, never at a page.
    void OnOK() override {}
    void OnCancel() override {}
    bool OnDialogMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) override;
    void OnSetUpFailed() noexcept override;

private:
    static INT_PTR CALLBACK PageProc(HWND hwnd, UINT msg, WPARAM w, LPARAM l) noexcept;
    bool OnSheetNotify(const NMHDR& header, LRESULT& result);

    PropertyPageArgs m_args;
    PropertySheet* m_pSheet = nullptr;
    // The system reads these while it makes the page; they live as long as the object.
    std::wstring m_caption, m_headerTitle, m_headerSubtitle;
};

}  // namespace fw
