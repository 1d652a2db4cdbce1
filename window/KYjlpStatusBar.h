// The frame's status bar: its first pane shows how many programs the list holds
// (or how many are selected), unless a message holds it for a moment, such as
// the name of a program that is starting. A flag per pane keeps a message from
// being overwritten by the count.
#pragma once
#include <windows.h>
#include <commctrl.h>

#include <memory>
#include <string>

#include "framework/Window.h"

class KYjlpViewList;

class KYjlpStatusBar : public fw::Window {
public:
    // Creates the bar along the bottom of parent, hidden until the frame shows it.
    // The low word of style holds the frame's bar bits, not the control's.
    bool Create(HWND parent, UINT id, DWORD style);
    // count panes, each with its override flag clear; false when the bar refused them.
    bool SetIndicatorsTracked(const int* rightEdges, int count);
    // The count of the list on pane 0, unless a message holds it; true when it is up to date.
    bool RefreshPaneCount(const KYjlpViewList* view);
    // A message that holds the pane until ClearOverride.
    bool SetOverrideText(int pane, const std::wstring& text);
    void ClearOverride(int pane);
    bool IsOverridden(int pane) const;
    std::wstring PaneText(int pane) const;
    // The height the bar takes at the bottom of its parent; 0 when hidden.
    int Height() const;

private:
    int m_nPanes = 0;
    std::unique_ptr<int[]> m_pbOverride;
};
