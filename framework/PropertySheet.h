// A property sheet or wizard of pages, shown modally (stands for CPropertySheet).
// The system's sheet runs modeless under a loop of its own, so that the sheet and
// its active page see every message first (a key in an edit box, a right click
// on a control), as a modal dialog of the program does; the owner is disabled
// meanwhile. The application's watches wait until the sheet ends.
#pragma once
#include <windows.h>
#include <commctrl.h>

#include <string>
#include <vector>

#include "framework/Dialog.h"
#include "framework/PropertyPage.h"

namespace fw {

struct PropertySheetArgs {
    std::wstring caption;
    HWND parent = nullptr;  // null: the application's main window while it shows
    bool wizard = false;
    bool helpButton = false;
    HICON icon = nullptr;        // borrowed
    HBITMAP watermark = nullptr; // borrowed; a wizard's welcome and finish pages
    HBITMAP header = nullptr;    // borrowed; a wizard's inner pages
};

class PropertySheet : public Dialog {
public:
    // The codes a sheet ends with when the system ends it.
    static constexpr INT_PTR kOk = IDOK, kCancel = IDCANCEL, kFinished = 12325;

    explicit PropertySheet(const PropertySheetArgs& args);
    ~PropertySheet() override;

    // Pages show in the order they are added; the sheet does not own them.
    void AddPage(PropertyPage& page, const PageLook& look);
    int GetPageCount() const noexcept { return static_cast<int>(m_pages.size()); }
    PropertyPage* GetPage(int index) const noexcept;
    int GetPageIndex(const PropertyPage* page) const noexcept;
    PropertyPage* GetActivePage() const noexcept;
    bool SetActivePage(int index) noexcept;
    // The page to show first.
    void SetStartPage(int index) noexcept { m_nStartPage = index; }
    bool IsWizard() const noexcept { return m_args.wizard; }
    const std::wstring& Caption() const noexcept { return m_args.caption; }
    void SetTitle(const std::wstring& title) noexcept;
    void SetWizardButtons(DWORD buttons) const noexcept;
    void PressButton(int button) const noexcept;

    // 1 (OK), 2 (Cancel), 12325 (Finish) or what EndDialog was given; -1 when
    // the sheet could not be shown.
    INT_PTR DoModal() override;
    // A page's finish was allowed: the sheet ends with Finish.
    void NoteFinished() noexcept { m_bFinished = true; }

protected:
    // Commands of the sheet's own buttons (OK 1, Apply 12321, Help 9); true when handled.
    virtual bool OnSheetCommand(UINT id) { (void)id; return false; }
    // Any other message to the sheet window; true when handled, with its result.
    virtual bool OnSheetMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result);
    // The window stands and shows its first page.
    virtual void OnSheetCreated() {}
    bool PreTranslateMessage(MSG& msg) override;

private:
    static LRESULT CALLBACK SheetProc(HWND hwnd, UINT msg, WPARAM w, LPARAM l, UINT_PTR id,
                                      DWORD_PTR data) noexcept;
    HWND Owner() const noexcept;
    HWND CreateSheet(HWND owner);
    void RunLoop();

    PropertySheetArgs m_args;
    std::vector<PropertyPage*> m_pages;
    std::vector<HPROPSHEETPAGE> m_handles;
    int m_nStartPage = 0;
    bool m_bFinished = false;
};

}  // namespace fw
