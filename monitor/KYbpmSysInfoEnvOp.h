// Facts of the machine and the user, by index: 5 the computer's name, 6 the
// domain of the user's account.
#pragma once
#include <windows.h>
#include <cstdint>

class KYbpmSysInfoEnvOp {
public:
    KYbpmSysInfoEnvOp();
    ~KYbpmSysInfoEnvOp();
    KYbpmSysInfoEnvOp(const KYbpmSysInfoEnvOp&) = delete;
    KYbpmSysInfoEnvOp& operator=(const KYbpmSysInfoEnvOp&) = delete;

    // False for another index, or when the answer does not fit capacity.
    bool getDataPair(int index, const wchar_t* reserved, wchar_t* out, int reserved2, uint32_t capacity);

    static inline constexpr int kComputerName = 5;
    static inline constexpr int kUserDomain = 6;

private:
    static bool computerName(wchar_t* out, uint32_t capacity);
    static bool userDomain(wchar_t* out, uint32_t capacity);
};
