// Text helpers the program borrows from the monitor: environment expansion,
// values of a module's version resource, and grouped numbers. Every one
// answers false, and writes nothing past capacity, when the result does not fit.
#pragma once
#include <windows.h>
#include <cstdint>

struct KYbpmLocalizeHelpers {
    // source and out may be the same buffer; work, when given, holds capacity
    // characters and keeps the source meanwhile. outLength excludes the terminator.
    static bool expandEnvironmentVarStrsW(const wchar_t* source, wchar_t* out, wchar_t* work,
                                          uint32_t* outLength, uint32_t capacity);
    // form 4: the build identifier (StringFileInfo "BuildIdentifier");
    // form 13: the first field of Internal Error codes ("ErrorCodePrefix").
    static bool obtainVersionQRW(wchar_t* out, uint32_t capacity, int form, HMODULE module);
    // A StringFileInfo value of module (null: the program); langCodepage null
    // takes the first translation.
    static bool extractModuleVerValueSFI_OrigFNm(HMODULE module, wchar_t* out, uint32_t capacity,
                                                 const wchar_t* langCodepage, const wchar_t* block,
                                                 wchar_t separator);
    static bool extractModuleVerValueSFI_LegalCN(HMODULE module, wchar_t* out, uint32_t capacity,
                                                 const wchar_t* langCodepage, const wchar_t* block,
                                                 wchar_t separator);
    static bool extractModuleVerValueSFI_LegalTM(HMODULE module, wchar_t* out, uint32_t capacity,
                                                 const wchar_t* langCodepage, const wchar_t* block,
                                                 wchar_t separator);
    static bool extractModuleVerValueSFI_ProductName(HMODULE module, wchar_t* out, uint32_t capacity,
                                                     const wchar_t* langCodepage, const wchar_t* block,
                                                     wchar_t separator);
    // "-1,234,567" with the user's thousands separator.
    static bool convertIntToPunctuatedStrW(int64_t value, wchar_t* out, uint32_t capacity);
};
