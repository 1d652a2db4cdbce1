#include "registrar/CatalogueMemo.h"

#include <utility>

#include "foundation/FoldCase.h"

namespace {
ULONGLONG Ticks(const FILETIME& time) noexcept {
    return (static_cast<ULONGLONG>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

// A key's time moves on in steps of the system clock. One written within this
// margin before the reading began could be written again in the same step,
// its time unchanged: it is read again next time rather than trusted.
constexpr ULONGLONG kClockMargin = 100 * 10000;  // 100 ms in 100 ns units
}  // namespace

void CatalogueMemo::Begin() {
    m_last = std::move(m_kept);
    m_kept = Map{};
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    m_began = Ticks(now);
}

void CatalogueMemo::End(bool whole) {
    m_last = Map{};
    if (!whole) m_kept = Map{};
    m_scratch = AppKeyValues{};
}

bool CatalogueMemo::Trusted(const FILETIME& written) const noexcept {
    return Ticks(written) + kClockMargin < m_began;
}

const AppKeyValues* CatalogueMemo::Recall(const wchar_t* name, const FILETIME& written) {
    std::wstring key = ky::FoldCase(name);
    const auto found = m_last.find(key);
    if (found == m_last.end() || Ticks(found->second.written) != Ticks(written)) return nullptr;
    auto moved = m_kept.insert_or_assign(std::move(key), std::move(found->second));
    m_last.erase(found);
    return &moved.first->second.values;
}

const AppKeyValues* CatalogueMemo::Keep(const wchar_t* name, const FILETIME& written, DWORD subkeys,
                                        AppKeyValues&& values) {
    if (subkeys != 0 || !Trusted(written)) {
        m_scratch = std::move(values);
        return &m_scratch;
    }
    auto kept = m_kept.insert_or_assign(ky::FoldCase(name), Entry{written, std::move(values)});
    return &kept.first->second.values;
}
