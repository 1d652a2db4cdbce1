// A moment in seconds since the epoch with its local broken-down form, both fixed
// when the value is made.
#pragma once
#include <cstdint>
#include <ctime>

#include "foundation/UTL_String.h"

namespace ky {

class SystemTime {
public:
    SystemTime();                              // the present moment
    explicit SystemTime(int64_t moment);

    int Year() const noexcept { return tm.tm_year + 1900; }
    int Month() const noexcept { return tm.tm_mon + 1; }  // 1 is January
    int Day() const noexcept { return tm.tm_mday; }
    int Hour() const noexcept { return tm.tm_hour; }
    int Min() const noexcept { return tm.tm_min; }
    int Sec() const noexcept { return tm.tm_sec; }

    explicit operator int64_t() const noexcept { return time; }
    // "yyyy-mm-dd_hh-mm-ss": usable as it stands inside a file name.
    operator UTL_String() const;

private:
    void Establish();

    int64_t time = 0;
    std::tm tm{};
};

}  // namespace ky
