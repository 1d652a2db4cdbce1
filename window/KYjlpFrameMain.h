// The one top-level window of Launch Panel. In its Standard form it is an
// ordinary window with menu, toolbar, status bar and title bar, each of which the
// user can switch off; in its Classic form it is the session's desktop: a
// borderless window over the whole screen, behind every other window. It holds
// the close policy of the session, carries the network drive commands and gives
// the rest of the program the busy state.
#pragma once
#include <memory>
#include <string>

#include "framework/FrameWnd.h"
#include "framework/ToolBar.h"
#include "window/KYjlpStatusBar.h"

class KYjlpFrameMain : public fw::FrameWnd {
public:
    static constexpr UINT kToolBarId = 59392;
    static constexpr UINT kStatusBarId = 59393;
    static constexpr UINT kSessionPaneId = 32822;
    // The title that marks the Classic desktop's window.
    static constexpr const wchar_t* kClassicTitle = L"LaunchPanel_ModeClassicDesktop_";

    KYjlpFrameMain() = default;
    ~KYjlpFrameMain() override;

    bool LoadFrame(UINT resourceId, DWORD style = WS_OVERLAPPEDWINDOW) override;
    bool OnCmdMsg(UINT id, fw::CmdUI* ui) override;

    // The display step at the end of start-up and after a settings restore:
    // bars, list, placement, icon, title, shown. caller names who asks, for the reports.
    bool RestoreWindow(const wchar_t* caller);

    // how: 1 shows, -1 hides, 0 toggles; nothing happens where the state already fits.
    void ShowMenuBar(int how);
    void ShowStatusBar(int how);
    void ShowTitleBar(int how);
    void ShowToolBar(int how);
    // The bars as they stand, as the preferences keep them: 2 menu, 4 status bar,
    // 8 title bar, 16 toolbar.
    uint32_t ObtainBarState() const;

    // 0 or the situation number.
    int CreateBarStatus();
    int CreateBarTool();

    // The menu, made ready once at start: printers, the About text, Disconnect.
    void ReadyMenu();
    void AdjustMenuTexts(HMENU menu);
    // Disconnect is offered exactly while the session allows it; false when that is unknown.
    bool AddDisconnectItem(HMENU menu);
    // The session's offer changed (time-out, shared account, printers): the menu follows.
    void RebuildMenu();
    // The printers submenu of the menu bar lists the engine's printers below its first item.
    void ReloadPrinterMenu();

    KYjlpStatusBar* StatusBar() { return m_pStatusBar.get(); }
    fw::ToolBar* ToolBar() { return m_pToolBar.get(); }
    // A message on the first pane (a program starting, a check running) until EndBusyText.
    void SetBusyText(const std::wstring& text);
    // The first pane shows the count again.
    void EndBusyText();
    // The wait cursor with a message on the status bar, while a long step runs.
    void ShowBusy(HCURSOR* saved, UINT messageId, const wchar_t* argument = nullptr, LPCWSTR cursor = nullptr);
    void EndBusy(HCURSOR* saved, int pane = 0);
    void SetBusyCursor(HCURSOR* saved, LPCWSTR cursor, bool system, const wchar_t* text, int pane);

    // Help of the given viewer command; true when the help window came.
    bool ShowHelp(UINT command, DWORD_PTR data, HWND owner, bool messageOnFailure, bool busy);
    // The help function the dialogs call.
    static BOOL HelpForwarder(UINT command, DWORD_PTR data, HWND window, BYTE tellFailure, BYTE busy) noexcept;
    bool HelpAvailable() const;
    // The client's name and address told by the session device, for programs started later.
    LRESULT OnClientEnvVarChange();

protected:
    void PreCreateWindow(fw::WindowCreateArgs& args) override;
    int OnCreate() override;
    void OnClose() override;
    void RecalcLayout() override;
    void SetMessageText(const std::wstring& text) override;
    LRESULT OnMessage(UINT msg, WPARAM w, LPARAM l) override;

private:
    friend struct KYjlpFrameCommands;
    bool OnSysCommand(WPARAM command);
    void OnWindowPosChanging(WINDOWPOS& pos);
    void OnTopMenuSelect(UINT item, UINT flags, HMENU menu);
    void OnSettingChange(UINT flags, const wchar_t* section);
    bool OnHelpInfo();
    void OnNetworkDrive(UINT id);
    void OnToggleBar(UINT id);
    void OnUpdateToggleBar(fw::CmdUI& ui);
    void OnUpdateSessionPane(fw::CmdUI& ui);
    void OnUpdateHelp(fw::CmdUI& ui);
    void OnHelpCommand(UINT id);
    void UpdateSessionPane();
    bool ShowMenuFromResource();
    void ReportRestore(int number, const wchar_t* caller, DWORD error);
    void SetPlacement(const wchar_t* caller);
    void SetFrameIcon(const wchar_t* caller);
    void SetTitle(const wchar_t* caller);

    bool m_bClassicTitleSet = false;
    bool m_bShown = false;  // the window has been shown once
    UINT m_nResourceId = 0;
    std::unique_ptr<KYjlpStatusBar> m_pStatusBar;
    std::unique_ptr<fw::ToolBar> m_pToolBar;
    std::wstring m_strSessionPane;
};
