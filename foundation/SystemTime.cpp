#include "foundation/SystemTime.h"

namespace ky {

SystemTime::SystemTime() : time(_time64(nullptr)) { Establish(); }

SystemTime::SystemTime(int64_t moment) : time(moment) { Establish(); }

// A moment the C runtime cannot break down leaves every field at zero.
void SystemTime::Establish() {
    const __time64_t moment = time;
    if (_localtime64_s(&tm, &moment) != 0) tm = std::tm{};
}

SystemTime::operator UTL_String() const {
    return UTL_String(256, L"%.4d-%.2d-%.2d_%.2d-%.2d-%.2d", Year(), Month(), Day(), Hour(), Min(), Sec());
}

}  // namespace ky
