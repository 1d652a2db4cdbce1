// The builder of the program monitor: everything KYbpm::create needs, told one
// setting at a time. Each setter answers false and leaves a self code when its
// input is null, blank or out of range; the setting then keeps its old value.
#pragma once
#include <windows.h>
#include <cstdint>

#include "monitor/KYbpmSettings.h"

class KYbpm;
struct KYbpmDataQRW;

class KYbpmData {
public:
    explicit KYbpmData(const int64_t& criteria);
    ~KYbpmData();
    KYbpmData(const KYbpmData&) = delete;
    KYbpmData& operator=(const KYbpmData&) = delete;

    bool learnSelfResourceModule();
    int getSelfDX_Code() const;
    void forgetSelfDX_Code();
    bool isSelfSatisfied() const;
    bool setSelfDX_FaultTolerance(int level);
    bool setCharSetExternal(int charset);
    bool setLogFileByteCountLimit(uint32_t limit, uint32_t& granted);
    bool recordTag(const wchar_t* text, int tag);
    bool recordLogFileNomenclature(const wchar_t* logFile, const wchar_t* templatePath, uint32_t form);
    bool setSituationMode(uint32_t mode);
    bool setResourceModule(HMODULE module);
    bool setDescriptionFillersQty(int n);
    bool setArgsIntQty(int n);
    bool setArgsStrQty(int n);
    bool setArgsUIntQty(int n);
    bool setDescriptionAffixIDsQty(int n);
    bool setDescriptionAffixID_Min(int id);
    bool recordDialogBoxCaption(const wchar_t* caption);
    bool createPlugIns(int count);
    bool sizeMapOfDataForThreads(int count);
    // The class of one situation, kept in code rather than in its text.
    bool recordSituationKind(int number, const KYbpmDirective& kind);

private:
    friend class KYbpm;
    friend struct KYbpmDataQRW;

    bool fail(int code);
    bool setCount(int& target, int n, int highest);

    KYbpmSettings m_settings;
    int m_nSelfCode = 0;
};
