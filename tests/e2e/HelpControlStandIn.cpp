#include "tests/e2e/HelpControlStandIn.h"

#include "foundation/UniqueHandle.h"
#include "tests/support/TestSupport.h"

namespace lptest {
namespace {

// The HTML Help control's class, and its server, as the machine's classes hold them.
const std::wstring kClassKey = L"SOFTWARE\\Classes\\CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}";
const std::wstring kControlServerKey = kClassKey + L"\\InprocServer32";
constexpr const wchar_t* kMergedServerKey = L"CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";

bool KeyExists(const std::wstring& path) {
    ky::UniqueHKey key;
    return RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, key.put()) == ERROR_SUCCESS;
}

}  // namespace

std::wstring HelpControlStandIn::Registered() {
    std::wstring value;
    return GetString(HKEY_CLASSES_ROOT, kMergedServerKey, L"", value) ? value : std::wstring();
}

HelpControlStandIn::HelpControlStandIn(const std::wstring& library) {
    if (!KeyExists(kClassKey)) m_created = kClassKey;
    else if (!KeyExists(kControlServerKey)) m_created = kControlServerKey;
    else m_hadValue = GetValue(HKEY_LOCAL_MACHINE, kControlServerKey, L"", m_saved, &m_savedType);
    m_active = true;
    LP_SET_STRING(HKEY_LOCAL_MACHINE, kControlServerKey, L"", library);
}

HelpControlStandIn::~HelpControlStandIn() { Restore(); }

void HelpControlStandIn::Restore() {
    if (!m_active) return;
    m_active = false;
    if (!m_created.empty()) {
        DeleteTree(HKEY_LOCAL_MACHINE, m_created);
    } else if (m_hadValue) {
        LP_SET_BINARY(HKEY_LOCAL_MACHINE, kControlServerKey, L"", m_saved.data(), static_cast<DWORD>(m_saved.size()),
                      m_savedType);
    } else {
        DeleteValue(HKEY_LOCAL_MACHINE, kControlServerKey, L"");
    }
}

}  // namespace lptest
