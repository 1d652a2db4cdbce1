#include "monitor/KYbpmSituation.h"

#include <utility>

#include "monitor/KYbpm.h"

void KYbpmSituation::reset(int number) {
    m_nNumber = number > 0 ? number : 0;
    m_ints = {};
    m_uints = {};
    m_texts = {};
    m_presentation.reset();
}

void KYbpmSituation::present(Presentation presentation) {
    if (stands()) m_presentation = std::move(presentation);
}

template <typename Slots, typename Value>
bool KYbpmSituation::place(Slots& slots, Value&& value, int position, int limit) {
    if (!stands()) return false;
    if (limit > static_cast<int>(slots.size())) limit = static_cast<int>(slots.size());
    if (position == KYbpm_NEXT_POSITION) {
        position = 0;
        while (position < limit && slots[static_cast<size_t>(position)]) ++position;
    }
    if (position < 0 || position >= limit) return false;
    slots[static_cast<size_t>(position)] = std::forward<Value>(value);
    return true;
}

bool KYbpmSituation::addInt(int32_t value, int position, int limit) {
    return place(m_ints, value, position, limit);
}

bool KYbpmSituation::addUInt(uint32_t value, int position, int limit) {
    return place(m_uints, value, position, limit);
}

bool KYbpmSituation::addText(std::wstring value, int position, int limit) {
    return place(m_texts, std::move(value), position, limit);
}

// One filler of kind i, u or s and place 0-4 into out; false when the kind is unknown.
bool KYbpmSituation::fillOne(wchar_t kind, int index, std::wstring& out) const {
    static const wchar_t* const none = L"(none)";
    const size_t at = static_cast<size_t>(index);
    switch (kind) {
    case L'i': out += m_ints[at] ? std::to_wstring(*m_ints[at]) : none; return true;
    case L'u': out += m_uints[at] ? std::to_wstring(*m_uints[at]) : none; return true;
    case L's': out += m_texts[at] ? *m_texts[at] : none; return true;
    default: return false;
    }
}

std::wstring KYbpmSituation::fill(const std::wstring& pattern) const {
    std::wstring out;
    out.reserve(pattern.size() + 64);
    for (size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != L'%' || i + 1 >= pattern.size()) {
            out += pattern[i];
            continue;
        }
        if (pattern[i + 1] == L'%') {
            out += L'%';
            ++i;
            continue;
        }
        const wchar_t digit = i + 2 < pattern.size() ? pattern[i + 2] : L'\0';
        if (digit >= L'1' && digit <= L'5' && fillOne(pattern[i + 1], digit - L'1', out)) {
            i += 2;
            continue;
        }
        out += pattern[i];
    }
    return out;
}
