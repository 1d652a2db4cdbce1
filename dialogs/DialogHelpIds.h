// The help context ids of the dialogs' controls: the one place where a control
// is tied to its topic of the help file. A control's topic is its id above the
// dialogs' base; labels and swatches take the topic of what they belong to.
#pragma once
#include <windows.h>

namespace lphelp {

inline constexpr DWORD kControlBase = 0x50000;
// The command of the what-is-this item of the dialogs' context menu, and that menu.
inline constexpr UINT kWhatIsThisCommand = 32849;
inline constexpr UINT kContextMenu = 130;
// Controls that are quiet: handled, with nothing shown.
inline constexpr UINT kQuietControl = 12320;
inline constexpr UINT kStaticControl = 0xFFFF;

inline constexpr DWORD ForControl(UINT id) noexcept { return kControlBase + id; }

}  // namespace lphelp
