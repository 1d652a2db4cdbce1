#include "monitor/KYbpmDataQRW.h"

#include <windows.h>

#include "foundation/UniqueHandle.h"
#include "monitor/KYbpmData.h"
#include "monitor/KYbpmSelfCode.h"
#include "monitor/KYbpmSettings.h"

namespace {

const wchar_t* const kServerKey = L"SOFTWARE\\Veltran\\Corvane\\AppServer";

// A REG_DWORD or REG_QWORD value of the server key; false when missing or of another kind.
bool ReadNumber(const wchar_t* name, uint64_t& value) {
    ky::UniqueHKey key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kServerKey, 0, KEY_QUERY_VALUE, key.put()) != ERROR_SUCCESS)
        return false;
    uint64_t data = 0;
    DWORD type = 0;
    DWORD size = sizeof data;
    if (RegQueryValueExW(key.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(&data), &size) !=
        ERROR_SUCCESS)
        return false;
    if (type == REG_DWORD && size == sizeof(DWORD)) {
        value = static_cast<uint32_t>(data);
        return true;
    }
    if (type == REG_QWORD && size == sizeof(uint64_t)) {
        value = data;
        return true;
    }
    return false;
}

}  // namespace

uint32_t KYbpmDataQRW::obtainLogFileByteCountLimit() {
    uint64_t value = 0;
    if (!ReadNumber(L"PM_LogFileByteLimit", value) || value == 0) return KYbpmLimits::kDefaultLogBytes;
    if (value < KYbpmLimits::kMinLogBytes) return KYbpmLimits::kMinLogBytes;
    if (value > KYbpmLimits::kMaxLogBytes) return KYbpmLimits::kMaxLogBytes;
    return static_cast<uint32_t>(value);
}

int64_t KYbpmDataQRW::obtainBehaviorCriteria() {
    uint64_t value = 0;
    return ReadNumber(L"PM_BehaviorCriteria", value) ? static_cast<int64_t>(value) : 0;
}

bool KYbpmDataQRW::updateBehaviorCriteria(KYbpmData* data) {
    if (!data) return false;
    data->m_settings.criteria |= obtainBehaviorCriteria();
    return true;
}
