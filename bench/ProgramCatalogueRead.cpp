// The program's own catalogue read, timed in a fresh process as the raw floor
// is: the registrar the panel makes at start-up (same user, domain and token
// groups, so the same override look-ups per entry), asked for the catalogue once.
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "app/GroupNames.h"
#include "bench/BenchClock.h"
#include "foundation/UniqueHandle.h"
#include "monitor/KYbpmSysInfoEnvOp.h"
#include "registrar/KYjutlRegistrar.h"

namespace {

std::wstring ProgramFolder() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder(path);
    return folder.substr(0, folder.find_last_of(L'\\') + 1);
}

}  // namespace

int wmain() {
    // The texts of the read (the unknown file type's words, the group names) come
    // from lp.dll, as in the panel.
    ky::UniqueHModule resources(LoadLibraryExW((ProgramFolder() + L"lp.dll").c_str(), nullptr, 0));
    if (!resources) {
        std::printf("error=lp.dll could not be loaded\n");
        return 1;
    }
    wchar_t domain[256] = {}, user[256] = {};
    KYbpmSysInfoEnvOp().getDataPair(KYbpmSysInfoEnvOp::kUserDomain, nullptr, domain, 0, 256);
    DWORD userChars = 256;
    if (!GetUserNameW(user, &userChars)) user[0] = L'\0';
    std::vector<std::wstring> groups;
    bool admin = false;
    ObtainGroupNames(resources.get(), groups, admin);

    KYjutlRegistrar registrar(KYjutlRegistrar::kModeStandard, domain, user, &groups);
    registrar.m_hInstance = resources.get();
    bench::Stopwatch watch;
    const KYjutlRegistrar_FILEList* list = registrar.ObtainInstalledApps();
    const double ms = watch.ElapsedMs();
    if (!list) {
        std::printf("error=the registrar failed with %u (detail %u, entry %d)\n", registrar.m_uError,
                    registrar.m_uErrorDetail, registrar.m_iErrorItem);
        return 1;
    }
    std::printf("entries=%zu\ngroups=%zu\nread_ms=%.3f\n", list->size(), groups.size(), ms);
    return 0;
}
