// The main window of Launch Panel in its Standard form: it holds the list view
// and, on close, stops the watches before the program ends.
#pragma once
#include "framework/FrameWnd.h"

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

protected:
    void OnClose() override;

private:
    bool m_bShown = false;  // the window has been shown once
};
