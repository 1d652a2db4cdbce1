// The HTML Help control as the tests name it: for its lifetime the registry gives
// the control's class another in-process server (the recording stand-in beside
// the tests), which the panel then binds for its help. What the registry held
// before comes back when it goes, a value as it was, keys it made deleted.
#pragma once
#include <windows.h>

#include <string>
#include <vector>

namespace lptest {

class HelpControlStandIn {
public:
    // The control's server, as the panel reads it: the default value of the
    // class's InprocServer32 key under HKEY_CLASSES_ROOT; empty when none.
    static std::wstring Registered();

    // Names the library (a full Windows path) as the control's server, under
    // HKLM\Software\Classes; a failure fails the test.
    explicit HelpControlStandIn(const std::wstring& library);
    ~HelpControlStandIn();
    HelpControlStandIn(const HelpControlStandIn&) = delete;
    HelpControlStandIn& operator=(const HelpControlStandIn&) = delete;

    // Puts back what the registry held; once, the later calls do nothing.
    void Restore();

private:
    bool m_active = false;
    std::wstring m_created;  // the outermost key that was made for it; empty when none was
    bool m_hadValue = false;
    DWORD m_savedType = REG_SZ;
    std::vector<BYTE> m_saved;
};

}  // namespace lptest
