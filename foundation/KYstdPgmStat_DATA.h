// The numbers gathered by the operation now running: situations, details, the
// default message-box title and the module the texts come from.
#pragma once
#include <windows.h>
#include <cstdint>
#include <memory>

class KYstdPgmStat_DATA {
public:
    static constexpr uint32_t kAfterLast = 0xFFFFFFFF;

    KYstdPgmStat_DATA();
    virtual ~KYstdPgmStat_DATA();
    KYstdPgmStat_DATA(const KYstdPgmStat_DATA&) = delete;
    KYstdPgmStat_DATA& operator=(const KYstdPgmStat_DATA&) = delete;

    virtual void ClearSituations();
    virtual void ClearDetails();
    virtual void ReleaseAll();
    virtual bool IsValid() const;

    uint32_t* AllocateSituations(uint32_t count);
    uint32_t* AllocateDetails(uint32_t count);
    const wchar_t* SetTitle(const wchar_t* text);
    HMODULE SetResources(HMODULE module);

    // Stores at index (kAfterLast: behind the last entry in use). The lists never
    // grow: past the capacity nothing is stored and the result is null.
    uint32_t* AddSituation(uint32_t value, uint32_t index);
    uint32_t* AddDetail(uint32_t value, uint32_t index);

    uint32_t SituationCount() const { return m_nSituations; }
    uint32_t SituationCapacity() const { return m_nSituationsMax; }
    uint32_t Situation(uint32_t index) const;
    uint32_t DetailCount() const { return m_nDetails; }
    uint32_t DetailCapacity() const { return m_nDetailsMax; }
    uint32_t Detail(uint32_t index) const;
    const wchar_t* Title() const { return m_pszTitle.get(); }
    HMODULE Resources() const { return m_hResources; }

protected:
    virtual void ClearDetailsWorker();

private:
    static uint32_t* Allocate(std::unique_ptr<uint32_t[]>& array, uint32_t& used,
                              uint32_t& capacity, uint32_t count);
    static uint32_t* Add(uint32_t* array, uint32_t& used, uint32_t capacity, uint32_t value,
                         uint32_t index);

    std::unique_ptr<uint32_t[]> m_puSituations;
    uint32_t m_nSituations = 0;
    uint32_t m_nSituationsMax = 0;
    std::unique_ptr<uint32_t[]> m_puDetails;
    uint32_t m_nDetails = 0;
    uint32_t m_nDetailsMax = 0;
    std::unique_ptr<wchar_t[]> m_pszTitle;
    HMODULE m_hResources = nullptr;
    uint32_t m_uWord = 60;
};
