// lpmenuprobe.dll: the driver's reader of menus inside the program. Where the
// system keeps menus inside their process (Wine), the driver loads this library
// into the program and starts LpMenuProbeRun on a thread of the program: it reads
// the frame's menu bar there as the driver would from outside, and writes the
// records into the driver's shared memory. The library has no DllMain of its own:
// nothing runs under the loader's lock.
#include <windows.h>
#include "foundation/UniqueHandle.h"
#include "tools/lpdriver/probe/MappedView.h"
#include "tools/lpdriver/probe/MenuProbeChannel.h"
#include "tools/lpdriver/probe/MenuWalker.h"

namespace {

using namespace lpdriver;

DWORD ReadMenus(const MenuProbeRequest& request) {
    const std::wstring name = MenuProbeChannel::SectionName(request.driverProcessId);
    const ky::UniqueHandle section(::OpenFileMappingW(FILE_MAP_WRITE, FALSE, name.c_str()));
    if (!section) return kProbeNoChannel;
    const MappedView view(section.get(), FILE_MAP_WRITE, request.capacity);
    if (!view) return kProbeNoChannel;
    const HWND frame = reinterpret_cast<HWND>(static_cast<uintptr_t>(request.frame));
    if (!::IsWindow(frame)) return kProbeNoWindow;
    const HMENU menu = ::GetMenu(frame);
    if (!menu) return kProbeNoMenu;
    // Sent from this thread, each WM_INITMENUPOPUP runs on the frame's own thread,
    // where the program's update handlers expect it.
    const std::vector<MenuItemRecord> records = MenuWalker::Walk(frame, menu);
    return MenuProbeChannel::Encode(records, view.get(), request.capacity) ? kProbeRead : kProbeFull;
}

}  // namespace

// The thread entry the driver starts in the program; `parameter` points at a
// MenuProbeRequest in the program's memory. Returns a MenuProbeStatus.
extern "C" __declspec(dllexport) DWORD WINAPI LpMenuProbeRun(LPVOID parameter) noexcept {
    if (parameter == nullptr) return kProbeFailed;
    try {
        const MenuProbeRequest request = *static_cast<const MenuProbeRequest*>(parameter);
        return ReadMenus(request);
    } catch (...) {
        return kProbeFailed;
    }
}
