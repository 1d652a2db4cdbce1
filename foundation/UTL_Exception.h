// The one exception of the string layer: a small code that says which step failed.
// Thrown and caught by value.
#pragma once
#include <cstdint>

class UTL_Exception {
public:
    // The codes, one for each way a string operation can fail.
    enum : int32_t {
        kSystemCallFailed = 1,        // conversion sizing, environment or short path call
        kBadArgument = 2,             // bad wide module load, or window text length changed
        kOutOfMemory = 3,
        kBadNarrowArgument = 4,       // bad narrow module load, or unknown target encoding
        kNarrowMasterMissing = 5,
        kWideMasterMissing = 6,
        kStringNotFound = 7,          // the resource string loaders gave nothing
        kWideningBufferTooSmall = 8,  // MultiByteToWideChar sizing, error 122
        kWideningCountChanged = 9,
        kModuleNotFound = 10,
        kInvalidUtf8 = 11,
        kNoUnicodeTranslation = 12,   // MultiByteToWideChar sizing, error 1113
        kNarrowingSizingFailed = 13,
        kNarrowingCountChanged = 14,
        kBadEncoding = 15,
    };

    UTL_Exception() noexcept = default;
    explicit UTL_Exception(int32_t code) noexcept;
    UTL_Exception(const UTL_Exception& other) noexcept = default;
    UTL_Exception& operator=(const UTL_Exception& other) noexcept = default;
    virtual ~UTL_Exception();

    int32_t Code() const noexcept { return m_iCode; }

private:
    int32_t m_iCode = 0;
};
