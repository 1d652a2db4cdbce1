// The program status: what the operation now running found wrong, and the door
// through which last-resort message boxes are shown. One instance per process.
#pragma once
#include <windows.h>
#include <memory>
#include <string>

#include "foundation/KYstdPgmStat_DATA.h"

class KYstdPgmStat {
public:
    // Takes over a prepared, valid data object (the holder is emptied) and
    // returns the process's single status; null when the data is not valid.
    static KYstdPgmStat* CreateStatus(std::unique_ptr<KYstdPgmStat_DATA>& holder);
    static KYstdPgmStat* Instance();

    virtual int ShowMessage(const std::wstring& text, const wchar_t* title, UINT style, HWND owner);
    virtual void Detach();
    virtual bool Attach(KYstdPgmStat_DATA* data);
    virtual ~KYstdPgmStat();
    KYstdPgmStat(const KYstdPgmStat&) = delete;
    KYstdPgmStat& operator=(const KYstdPgmStat&) = delete;

    // Called at the entry of each user-visible operation: both lists are emptied.
    void ClearStatus();
    // The first situation, 0 when the status is clean.
    uint32_t FirstSituation() const;
    bool IsClean() const { return FirstSituation() == 0; }
    KYstdPgmStat_DATA* Data() const { return m_pData; }

private:
    explicit KYstdPgmStat(KYstdPgmStat_DATA* data);
    KYstdPgmStat_DATA* m_pData = nullptr;
};
