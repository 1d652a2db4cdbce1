// The situation that stands: its number and its arguments, up to five of each
// kind (signed, unsigned, text), each in a numbered place.
#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "monitor/KYbpmSettings.h"

class KYbpmSituation {
public:
    using Ints = std::array<std::optional<int32_t>, KYbpmLimits::kArgsPerKind>;
    using UInts = std::array<std::optional<uint32_t>, KYbpmLimits::kArgsPerKind>;
    using Texts = std::array<std::optional<std::wstring>, KYbpmLimits::kArgsPerKind>;

    // A new situation: the old arguments go. A number of 0 or less is none.
    void reset(int number);
    int number() const { return m_nNumber; }
    bool stands() const { return m_nNumber > 0; }

    // position: 0 upward, or KYbpm_NEXT_POSITION for the next free place;
    // limit: how many places of the kind the monitor was told to take.
    bool addInt(int32_t value, int position, int limit);
    bool addUInt(uint32_t value, int position, int limit);
    bool addText(std::wstring value, int position, int limit);

    // A report its caller composed whole (the program's own message-box paths):
    // shown and logged instead of the text made from the number.
    struct Presentation {
        std::wstring text;
        std::wstring caption;  // empty: the monitor's caption
        UINT style = 0;        // buttons and icon of the box; 0: the class's own
    };
    void present(Presentation presentation);
    const std::optional<Presentation>& presentation() const { return m_presentation; }

    const Ints& ints() const { return m_ints; }
    const UInts& uints() const { return m_uints; }
    const Texts& texts() const { return m_texts; }

    // pattern with its fillers replaced: %i1..%i5, %u1..%u5, %s1..%s5, %%.
    // A filler without its argument reads "(none)"; anything else stands as it is.
    std::wstring fill(const std::wstring& pattern) const;

private:
    template <typename Slots, typename Value>
    bool place(Slots& slots, Value&& value, int position, int limit);
    bool fillOne(wchar_t kind, int index, std::wstring& out) const;

    int m_nNumber = 0;
    Ints m_ints;
    UInts m_uints;
    Texts m_texts;
    std::optional<Presentation> m_presentation;
};
