// The monitor's settings kept by the server's administrator in
// HKLM\SOFTWARE\Veltran\Corvane\AppServer: PM_BehaviorCriteria and PM_LogFileByteLimit.
#pragma once
#include <cstdint>

class KYbpmData;

struct KYbpmDataQRW {
    // PM_LogFileByteLimit (REG_DWORD): 4 MiB when missing, never under 64 KiB.
    static uint32_t obtainLogFileByteCountLimit();
    // PM_BehaviorCriteria (REG_DWORD or REG_QWORD): 0 when missing.
    static int64_t obtainBehaviorCriteria();
    // Adds the registry's criteria to those of data; false for a null data.
    static bool updateBehaviorCriteria(KYbpmData* data);
};
