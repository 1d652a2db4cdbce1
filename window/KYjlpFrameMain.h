// The main window of Launch Panel in its Standard form: it holds the list view
// and, on close, stops the watches before the program ends.
#pragma once
#include <string>

#include "framework/FrameWnd.h"
#include "window/KYjlpStatusBar.h"

class KYjlpFrameMain : public fw::FrameWnd {
public:
    KYjlpFrameMain() = default;
    ~KYjlpFrameMain() override = default;

    // The display step at the end of start-up: the list, the title and the window
    // shown. caller names who asks, for the reports.
    bool RestoreWindow(const wchar_t* caller);
    // The menu follows what the session offers (disconnect, printers); the
    // session's own entries come with the frame's menus.
    void RebuildMenu();
    bool LoadFrame(UINT resourceId, DWORD style = WS_OVERLAPPEDWINDOW) override;
    KYjlpStatusBar& StatusBar() { return m_statusBar; }
    // A message on the first pane (a program starting, a check running) until EndBusyText.
    void SetBusyText(const std::wstring& text);
    // The first pane shows the count again.
    void EndBusyText();

protected:
    void OnClose() override;
    void RecalcLayout() override;
    LRESULT OnMessage(UINT msg, WPARAM w, LPARAM l) override;

private:
    bool m_bShown = false;  // the window has been shown once
    KYjlpStatusBar m_statusBar;
};
