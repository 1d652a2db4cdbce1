#include "foundation/KYstdPgmStat_DATA.h"

#include <cwctype>
#include <new>

KYstdPgmStat_DATA::KYstdPgmStat_DATA() = default;

KYstdPgmStat_DATA::~KYstdPgmStat_DATA() { ReleaseAll(); }

void KYstdPgmStat_DATA::ClearSituations() {
    if (m_puSituations)
        for (uint32_t i = 0; i < m_nSituationsMax; ++i) m_puSituations[i] = 0;
    m_nSituations = 0;
}

void KYstdPgmStat_DATA::ClearDetails() { ClearDetailsWorker(); }

void KYstdPgmStat_DATA::ClearDetailsWorker() {
    if (m_puDetails)
        for (uint32_t i = 0; i < m_nDetailsMax; ++i) m_puDetails[i] = 0;
    m_nDetails = 0;
}

void KYstdPgmStat_DATA::ReleaseAll() {
    m_puSituations.reset();
    m_nSituations = m_nSituationsMax = 0;
    m_puDetails.reset();
    m_nDetails = m_nDetailsMax = 0;
    m_pszTitle.reset();
}

bool KYstdPgmStat_DATA::IsValid() const {
    // A title of blanks would give message boxes an empty caption: refused.
    return m_puSituations && m_puDetails && m_nSituationsMax > 0 && m_nDetailsMax > 0 &&
           m_pszTitle && std::iswgraph(m_pszTitle[0]) && m_hResources != nullptr;
}

uint32_t* KYstdPgmStat_DATA::Allocate(std::unique_ptr<uint32_t[]>& array, uint32_t& used,
                                      uint32_t& capacity, uint32_t count) {
    if (array) return array.get();
    if (count == 0) return nullptr;
    array.reset(new (std::nothrow) uint32_t[count]());
    if (!array) return nullptr;
    capacity = count;
    used = 0;
    return array.get();
}

uint32_t* KYstdPgmStat_DATA::AllocateSituations(uint32_t count) {
    return Allocate(m_puSituations, m_nSituations, m_nSituationsMax, count);
}

uint32_t* KYstdPgmStat_DATA::AllocateDetails(uint32_t count) {
    return Allocate(m_puDetails, m_nDetails, m_nDetailsMax, count);
}

const wchar_t* KYstdPgmStat_DATA::SetTitle(const wchar_t* text) {
    if (!text) return nullptr;
    size_t length = wcslen(text);
    std::unique_ptr<wchar_t[]> copy(new (std::nothrow) wchar_t[length + 1]());
    if (!copy) return nullptr;
    wmemcpy(copy.get(), text, length);
    m_pszTitle = std::move(copy);
    return m_pszTitle.get();
}

HMODULE KYstdPgmStat_DATA::SetResources(HMODULE module) {
    if (!module) return nullptr;
    HMODULE former = m_hResources;
    m_hResources = module;
    return former;
}

uint32_t* KYstdPgmStat_DATA::Add(uint32_t* array, uint32_t& used, uint32_t capacity,
                                 uint32_t value, uint32_t index) {
    if (!array || capacity < 1) return nullptr;
    if (index == kAfterLast) index = used;
    if (index >= capacity) return nullptr;
    array[index] = value;
    if (index >= used) used = index + 1;
    return array;
}

uint32_t* KYstdPgmStat_DATA::AddSituation(uint32_t value, uint32_t index) {
    return Add(m_puSituations.get(), m_nSituations, m_nSituationsMax, value, index);
}

uint32_t* KYstdPgmStat_DATA::AddDetail(uint32_t value, uint32_t index) {
    return Add(m_puDetails.get(), m_nDetails, m_nDetailsMax, value, index);
}

uint32_t KYstdPgmStat_DATA::Situation(uint32_t index) const {
    return index < m_nSituations ? m_puSituations[index] : 0;
}

uint32_t KYstdPgmStat_DATA::Detail(uint32_t index) const {
    return index < m_nDetails ? m_puDetails[index] : 0;
}
