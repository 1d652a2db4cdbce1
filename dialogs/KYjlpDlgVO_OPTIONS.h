// One set of view options: the list's two colours, the custom colours of the
// colour dialog, and eleven flags for what shows and how the list behaves.
#pragma once
#include <windows.h>

struct KYjlpDlgVO_OPTIONS {
    // The flags, in their order: what the window shows, then the list's extended styles.
    enum Flag {
        kHeaders = 0, kMenu, kStatusBar, kTitleBar, kToolBar,
        kOneClick, kTwoClick, kFullRow, kGridLines, kHeaderDrag, kTrackSelect,
        kFlagCount
    };
    static constexpr int kCustomCount = 16;

    COLORREF crBackground = RGB(255, 255, 255);
    COLORREF crForeground = RGB(0, 0, 0);
    COLORREF crCustom[kCustomCount] = {};
    BOOL abFlags[kFlagCount] = {};
};

namespace lpoptions {

// Each flag's check box, and its bit: of the window bits for flags 0 to 4, of
// the list's extended style for the others.
struct FlagControl {
    int flag;
    int control;
    DWORD bit;
};
inline constexpr FlagControl kFlagControls[KYjlpDlgVO_OPTIONS::kFlagCount] = {
    {KYjlpDlgVO_OPTIONS::kHeaders, 1049, 1},
    {KYjlpDlgVO_OPTIONS::kMenu, 1052, 2},
    {KYjlpDlgVO_OPTIONS::kStatusBar, 1053, 4},
    {KYjlpDlgVO_OPTIONS::kTitleBar, 1054, 8},
    {KYjlpDlgVO_OPTIONS::kToolBar, 1055, 16},
    {KYjlpDlgVO_OPTIONS::kOneClick, 1041, 64},     // LVS_EX_ONECLICKACTIVATE
    {KYjlpDlgVO_OPTIONS::kTwoClick, 1042, 128},    // LVS_EX_TWOCLICKACTIVATE
    {KYjlpDlgVO_OPTIONS::kFullRow, 1047, 32},      // LVS_EX_FULLROWSELECT
    {KYjlpDlgVO_OPTIONS::kGridLines, 1048, 1},     // LVS_EX_GRIDLINES
    {KYjlpDlgVO_OPTIONS::kHeaderDrag, 1050, 16},   // LVS_EX_HEADERDRAGDROP
    {KYjlpDlgVO_OPTIONS::kTrackSelect, 1051, 8},   // LVS_EX_TRACKSELECT
};
inline constexpr int kFirstStyleFlag = KYjlpDlgVO_OPTIONS::kOneClick;

// The other controls of the dialog.
inline constexpr int kDefaultsButton = 1038;
inline constexpr int kRevertButton = 1039;
inline constexpr int kColoursGroup = 1040;
inline constexpr int kBackgroundButton = 1043;
inline constexpr int kBackgroundSwatch = 1044;
inline constexpr int kForegroundButton = 1045;
inline constexpr int kForegroundSwatch = 1046;
inline constexpr UINT kTemplateId = 408;

}  // namespace lpoptions
