// The list of published applications: a report-style list control that is the
// view of the document (hidden in launch use), and the road from an item to a
// running process.
#pragma once
#include <windows.h>
#include <commctrl.h>
#include <shellapi.h>
#include <string>

#include "document/KYjlpItemList.h"
#include "framework/View.h"

class KYjlpViewList : public fw::View {
public:
    KYjlpViewList() = default;
    ~KYjlpViewList() override = default;

    bool CreateView(fw::FrameWnd& frame, UINT id) override;

    int GetItemCount() const { return ListView_GetItemCount(m_hwnd); }

    // All of one launch: check, start, hand the process over; true when started.
    // index names an item without a name.
    virtual bool LaunchItem(LV_TEXTLINE* item, int index, POSITION pos);
    // Checks the target anew (the state at list building may be old); sets m_launchCleared.
    virtual bool ValidateItemForLaunch(LV_TEXTLINE* item, const std::wstring& shownName, HWND* frameOut);
    // The shell call; a code on the scale of hInstApp, above 32 meaning success.
    virtual INT_PTR ExecuteItem(HWND owner, LV_TEXTLINE* item);
    // The hint that closes a launch failure's report.
    std::wstring LaunchHint() const;

    // True between a passed validation and the end of ExecuteItem.
    bool m_launchCleared = false;
    // The command line's launch: no message loop follows the shell call.
    bool m_bLaunchWithoutUI = false;

protected:
    // The one place where the program asks the shell to start something.
    virtual BOOL CallShell(SHELLEXECUTEINFOW& info);

private:
    void ShowBusy(UINT messageId, const std::wstring& name);
    void EndBusy();
    void QueueLaunchRequest(const wchar_t* name, HANDLE process);
};
