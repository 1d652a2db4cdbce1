// The list of published applications: a report-style list control that is the
// view of the document (hidden in launch use).
#pragma once
#include <windows.h>
#include <commctrl.h>

#include "framework/View.h"

class KYjlpViewList : public fw::View {
public:
    KYjlpViewList() = default;
    ~KYjlpViewList() override = default;

    bool CreateView(fw::FrameWnd& frame, UINT id) override;

    int GetItemCount() const { return ListView_GetItemCount(m_hwnd); }
};
