#include "tools/lpdriver/RemoteLibrary.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/RemoteBuffer.h"
#include <psapi.h>
#include <algorithm>
#include <vector>

namespace lpdriver {

namespace {

// How long LoadLibraryW and FreeLibrary may take in the other process.
constexpr DWORD kLoaderMs = 10000;

std::wstring FileNameOf(HMODULE module) {
    wchar_t path[MAX_PATH] = {};
    ::GetModuleFileNameW(module, path, MAX_PATH);
    const std::wstring full = path;
    const size_t slash = full.find_last_of(L"\\/");
    return slash == std::wstring::npos ? full : full.substr(slash + 1);
}

const void* KernelFunction(const char* name) {
    const HMODULE kernel = ::GetModuleHandleW(L"kernel32.dll");
    const FARPROC function = kernel ? ::GetProcAddress(kernel, name) : nullptr;
    if (function == nullptr) ThrowWin32(L"GetProcAddress of " + std::wstring(name, name + ::lstrlenA(name)));
    return reinterpret_cast<const void*>(function);
}

}  // namespace

RemoteLibrary::RemoteLibrary(HWND window, const std::wstring& path) {
    DWORD processId = 0;
    if (!::GetWindowThreadProcessId(window, &processId)) ThrowNotFound(L"the window is gone");
    m_process.reset(::OpenProcess(PROCESS_CREATE_THREAD | PROCESS_QUERY_INFORMATION | PROCESS_VM_OPERATION |
                                      PROCESS_VM_READ | PROCESS_VM_WRITE | SYNCHRONIZE,
                                  FALSE, processId));
    if (!m_process) ThrowWin32(L"OpenProcess to load a library");
    m_local.reset(::LoadLibraryW(path.c_str()));
    if (!m_local) ThrowWin32(L"LoadLibraryW of " + path);
    m_name = FileNameOf(m_local.get());
    const RemoteBuffer text(window, (path.size() + 1) * sizeof(wchar_t));
    text.Write(0, path.c_str(), (path.size() + 1) * sizeof(wchar_t));
    // The thread's exit code holds only the low half of the module's address:
    // the module list of the process tells where it was loaded.
    RunThread(RemoteAddressOf(KernelFunction("LoadLibraryW")), text.At(0), kLoaderMs);
    m_remoteBase = RemoteBaseOf(m_name);
    if (m_remoteBase == 0) throw DriverFailure{kExitWin32, L"LoadLibraryW in the program did not load " + path};
}

RemoteLibrary::~RemoteLibrary() {
    if (m_busy || m_remoteBase == 0) return;
    try {
        RunThread(RemoteAddressOf(KernelFunction("FreeLibrary")), static_cast<LPARAM>(m_remoteBase), kLoaderMs);
    } catch (...) {
        // The library stays loaded in the program; the driver's answer is already whole.
    }
}

DWORD RemoteLibrary::Call(const char* exportName, LPARAM argument, DWORD limitMs) {
    const FARPROC local = ::GetProcAddress(m_local.get(), exportName);
    if (local == nullptr)
        ThrowWin32(L"GetProcAddress of " + std::wstring(exportName, exportName + ::lstrlenA(exportName)));
    const uintptr_t offset = reinterpret_cast<uintptr_t>(local) - reinterpret_cast<uintptr_t>(m_local.get());
    return RunThread(m_remoteBase + offset, argument, limitMs);
}

DWORD RemoteLibrary::RunThread(uintptr_t start, LPARAM argument, DWORD limitMs) {
    const ky::UniqueHandle thread(::CreateRemoteThread(m_process.get(), nullptr, 0,
                                                       reinterpret_cast<LPTHREAD_START_ROUTINE>(start),
                                                       reinterpret_cast<void*>(argument), 0, nullptr));
    if (!thread) ThrowWin32(L"CreateRemoteThread");
    if (::WaitForSingleObject(thread.get(), limitMs) != WAIT_OBJECT_0) {
        m_busy = true;
        throw DriverFailure{kExitWin32, L"a thread of the driver in the program did not end in time"};
    }
    DWORD code = 0;
    if (!::GetExitCodeThread(thread.get(), &code)) ThrowWin32(L"GetExitCodeThread");
    return code;
}

uintptr_t RemoteLibrary::RemoteAddressOf(const void* local) const {
    HMODULE module = nullptr;
    const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!::GetModuleHandleExW(flags, static_cast<LPCWSTR>(local), &module))
        ThrowWin32(L"GetModuleHandleExW");
    // A function of kernel32 may be forwarded to another module: the one that holds it counts.
    const std::wstring name = FileNameOf(module);
    const uintptr_t base = RemoteBaseOf(name);
    if (base == 0) throw DriverFailure{kExitWin32, L"the program has not loaded " + name};
    return base + (reinterpret_cast<uintptr_t>(local) - reinterpret_cast<uintptr_t>(module));
}

uintptr_t RemoteLibrary::RemoteBaseOf(const std::wstring& moduleName) const {
    std::vector<HMODULE> modules(512);
    DWORD needed = 0;
    const DWORD size = static_cast<DWORD>(modules.size() * sizeof(HMODULE));
    if (!::K32EnumProcessModulesEx(m_process.get(), modules.data(), size, &needed, LIST_MODULES_ALL))
        ThrowWin32(L"EnumProcessModulesEx");
    modules.resize(std::min<size_t>(modules.size(), needed / sizeof(HMODULE)));
    for (HMODULE module : modules) {
        wchar_t name[MAX_PATH] = {};
        if (::K32GetModuleBaseNameW(m_process.get(), module, name, MAX_PATH) &&
            ::lstrcmpiW(name, moduleName.c_str()) == 0)
            return reinterpret_cast<uintptr_t>(module);
    }
    return 0;
}

}  // namespace lpdriver
