// What a dialog needs to give what-is-this help for its controls: which help the
// program has, the keys and menu that ask for it, and the one call through which
// help is shown. The application fills one and the dialog keeps its own copy.
#pragma once
#include <windows.h>

// The program's help call: a help command, its data (a context id, or the
// address of the control and help id pairs), the window help is for (may be
// null), whether a failure is told, and whether the wait cursor shows meanwhile.
using KYstdHelpCall = BOOL (*)(UINT command, DWORD_PTR data, HWND window, BYTE tellFailure, BYTE showBusy);

struct KYstdUI_DlgData {
    // The kinds of help, as the application's help kind.
    static constexpr UINT kNoHelp = 0;
    static constexpr UINT kHtmlHelp = 1;
    static constexpr UINT kWinHelp = 2;

    UINT uHelpCommand = 0;               // command of the what-is-this item of the context menu
    UINT uMenuFlags = TPM_CENTERALIGN;   // how the context menu is tracked
    UINT uHelpKind = kNoHelp;
    UINT uHelpKey = VK_F1;
    UINT uSecondKey = VK_SHIFT;          // carried along for callers that check it
    KYstdHelpCall pfnHelp = nullptr;
    UINT uCursorDelay = 50;              // ms the pointer stays on a control after its help showed
    BOOL bHelpOn = FALSE;
    UINT uContextMenu = 0;               // menu resource of the context menu; 0: none

    bool Assign(const KYstdUI_DlgData& other) noexcept;
    void Reset() noexcept;
};
