#include "tools/lpdriver/MenuProbe.h"
#include "foundation/UniqueHandle.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/RemoteBuffer.h"
#include "tools/lpdriver/RemoteLibrary.h"
#include "tools/lpdriver/probe/MappedView.h"
#include "tools/lpdriver/probe/MenuProbeChannel.h"

namespace lpdriver {

namespace {

// Each submenu may take the frame a few seconds to update (MenuWalker's limit).
constexpr DWORD kProbeMs = 30000;

}  // namespace

std::vector<MenuItemRecord> MenuProbe::Read(HWND frame) {
    const DWORD driver = ::GetCurrentProcessId();
    const std::wstring name = MenuProbeChannel::SectionName(driver);
    const ky::UniqueHandle section(::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                                        MenuProbeChannel::kCapacity, name.c_str()));
    if (!section) ThrowWin32(L"CreateFileMappingW for the menu probe");
    const MappedView view(section.get(), FILE_MAP_READ, MenuProbeChannel::kCapacity);
    if (!view) ThrowWin32(L"MapViewOfFile for the menu probe");

    MenuProbeRequest request;
    request.frame = reinterpret_cast<uintptr_t>(frame);
    request.driverProcessId = driver;
    request.capacity = MenuProbeChannel::kCapacity;
    const RemoteBuffer parameter(frame, sizeof request);
    parameter.Write(0, &request, sizeof request);

    RemoteLibrary probe(frame, LibraryPath());
    const DWORD status = probe.Call(MenuProbeChannel::kEntryName, parameter.At(0), kProbeMs);
    if (status == kProbeNoMenu) return {};
    if (status != kProbeRead)
        throw DriverFailure{kExitWin32, L"the menu probe: " + MenuProbeChannel::Explain(status)};
    std::vector<MenuItemRecord> records;
    if (!MenuProbeChannel::Decode(view.get(), MenuProbeChannel::kCapacity, records))
        throw DriverFailure{kExitWin32, L"the menu probe's answer cannot be read"};
    return records;
}

std::wstring MenuProbe::LibraryPath() {
    wchar_t path[MAX_PATH] = {};
    const DWORD length = ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) ThrowWin32(L"GetModuleFileNameW");
    std::wstring folder = path;
    folder.resize(folder.find_last_of(L"\\/") + 1);
    const std::wstring library = folder + MenuProbeChannel::kLibraryName;
    if (::GetFileAttributesW(library.c_str()) == INVALID_FILE_ATTRIBUTES)
        throw DriverFailure{kExitWin32, L"the menu probe " + library + L" is missing"};
    return library;
}

}  // namespace lpdriver
