// The make and model page's lists: the print monitor's manufacturers and, for
// each manufacturer once it is chosen, its models, and how they fill the two
// list boxes. The list box of the manufacturers keeps the order of the list, so
// that its selection addresses the array of model lists.
#include <new>
#include <utility>

#include "monitor/KYbpm.h"
#include "printers/KYjlpDlgPC_PgSpcMake.h"
#include "printers/KYjlpPrinterHost.h"
#include "printers/PrinterReport.h"

using namespace printers;

namespace {
constexpr int kModelListFailed = 27014, kListsGeneral = 27649, kNoDriverLists = 27650, kModelsFailed = 27651,
              kModelsFromFileFailed = 27652, kNoMemory = 27653, kMakesFailed = 27654, kMakesFromFileFailed = 27655;

bool IsLiveWindow(HWND window) { return window && ::IsWindow(window); }

// A path in a report: absent and empty are told apart.
std::wstring Shown(const wchar_t* path) { return !path ? L"(NULL)" : !*path ? L"(BLANK)" : path; }

void TellModelListFailure(int line) {
    if (KYbpm* monitor = Monitor()) {
        monitor->recordSituationID(kModelListFailed);
        monitor->recordArgument(static_cast<int32_t>(line));
    }
    AddSourceTail();
    RespondOrForget();
}

void AddTexts(HWND list, const DRIVER_LIST_ENTRY* head) {
    for (const DRIVER_LIST_ENTRY* entry = head; entry; entry = entry->pNext)
        if (entry->pszText && *entry->pszText)
            ::SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry->pszText));
}
}  // namespace

bool KYjlpDlgPC_PgSpcMake::LoadDriverLists(DRIVER_LIST_ENTRY** manufacturers, ModelLists& models, const wchar_t* path,
                                           std::wstring& make, std::wstring& model, bool report) {
    DRIVER_LIST_ENTRY* inHand = nullptr;
    int number = 0;
    try {
        BoundEngine();
        ReleaseTextList(manufacturers);
        ReleaseModelLists(models);
        const Pruned makes = ReadManufacturers(manufacturers, path, make);
        if (makes.count == 0) return true;
        try {
            models.assign(static_cast<size_t>(makes.count), nullptr);
        } catch (const std::bad_alloc&) {
            if (IsNormal()) {
                RecordIfNormal(kNoMemory);
                AddArgument(static_cast<int32_t>(makes.count));
            }
            throw kNoMemory;
        }
        if (make.empty()) {
            model.clear();
            return true;
        }
        ReadModels(path, make, model, inHand);
        if (makes.index >= 0 && makes.index < makes.count)
            models[static_cast<size_t>(makes.index)] = std::exchange(inHand, nullptr);
        return true;
    } catch (int thrown) {
        number = thrown;
        RecordIfNormal(thrown);
    } catch (...) {
        number = kListsGeneral;
        RecordIfNormal(kListsGeneral);
    }
    TellListFailure(number, path, report);
    ReleaseTextList(&inHand);
    ReleaseTextList(manufacturers);
    ReleaseModelLists(models);
    make.clear();
    model.clear();
    ::SetLastError(0);
    return false;
}

// The manufacturers, readied for the list box; `make` becomes the wanted one, or the first.
KYjlpDlgPC_PgSpcMake::Pruned KYjlpDlgPC_PgSpcMake::ReadManufacturers(DRIVER_LIST_ENTRY** manufacturers,
                                                                     const wchar_t* path, std::wstring& make) {
    const LibraryCall call = EnumDrivers(path, nullptr, manufacturers);
    const int failure = path ? kMakesFromFileFailed : kMakesFailed;
    if (call.result != 0 || call.thrown) ThrowListFailure(failure, call, nullptr, path);
    if (!*manufacturers) {
        // A wizard that may open a driver file can start without lists.
        if (g_bPrinterWizard && m_bHaveDiskAllowed) return {};
        ThrowListFailure(failure, call, nullptr, path);
    }
    Pruned pruned;
    DRIVER_LIST_ENTRY* entry = nullptr;
    if (!PruneTextList(manufacturers, pruned.count, make, pruned.index, entry)) throw 0;
    if (entry && entry->pszText && (make.empty() || make != entry->pszText)) make = entry->pszText;
    return pruned;
}

// The models of `make`, readied for the list box; `model` becomes the wanted one, or the first.
void KYjlpDlgPC_PgSpcMake::ReadModels(const wchar_t* path, const std::wstring& make, std::wstring& model,
                                      DRIVER_LIST_ENTRY*& list) {
    const LibraryCall call = EnumDrivers(path, make.c_str(), &list);
    if (call.result != 0 || call.thrown || !list)
        ThrowListFailure(path ? kModelsFromFileFailed : kModelsFailed, call, make.c_str(), path);
    int count = 0, index = -1;
    DRIVER_LIST_ENTRY* entry = nullptr;
    if (!PruneTextList(&list, count, model, index, entry)) throw 0;
    if (entry && entry->pszText && (model.empty() || model != entry->pszText)) model = entry->pszText;
}

// An empty path asks for the installed drivers, as no path does.
KYjlpDlgPC_PgSpcMake::LibraryCall KYjlpDlgPC_PgSpcMake::EnumDrivers(const wchar_t* path, const wchar_t* make,
                                                                    DRIVER_LIST_ENTRY** list) const {
    const auto enumDrivers = BoundEngine().Export<kypm::EnumAvailableDriversFn>(KYjlpPrinterCfg::kEnumAvailableDrivers);
    if (!enumDrivers) ThrowUnbound(__LINE__);
    LibraryCall call;
    ::SetLastError(0);
    try {
        call.result = enumDrivers(path && *path ? path : nullptr, make, list, m_strInstalledLabel.c_str());
    } catch (...) {
        call.thrown = true;
    }
    call.error = ::GetLastError();
    return call;
}

void KYjlpDlgPC_PgSpcMake::ThrowListFailure(int number, const LibraryCall& call, const wchar_t* make,
                                            const wchar_t* path) {
    const DWORD error = call.error ? call.error : ::GetLastError();
    if (IsNormal()) {
        RecordIfNormal(number);
        AddArgument(FormatResult(call.result));
        AddArgument(CodeLink(error));
        if (make) AddArgument(std::wstring(make));
        if (path) AddArgument(Shown(path));
    }
    throw number;
}

// Without manufacturers the user learns, when asked to, which driver file gave none.
void KYjlpDlgPC_PgSpcMake::TellListFailure(int number, const wchar_t* path, bool report) {
    if (SituationId() == kUnbound) AddSourceTail();
    RespondOrForget();
    if (!report || (number != kMakesFailed && number != kMakesFromFileFailed)) return;
    if (KYbpm* monitor = Monitor(); monitor && !monitor->respondToSituation(kNoDriverLists, 0, Shown(path)))
        monitor->forgetSituation();
}

bool KYjlpDlgPC_PgSpcMake::ReleaseModelLists(ModelLists& lists) {
    if (!CurrentPrinterEngine()) return false;
    bool released = true;
    for (DRIVER_LIST_ENTRY*& list : lists) {
        if (list && !ReleaseTextList(&list)) released = false;
        list = nullptr;
    }
    lists.clear();
    return released;
}

// The wanted entry when the list has it, else the first, which the page then takes as its own.
void KYjlpDlgPC_PgSpcMake::SelectExact(HWND list, std::wstring& start, std::wstring& current) {
    LRESULT index =
        ::SendMessageW(list, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(start.c_str()));
    if (index < 0) {
        start = ListItemText(list, 0);
        current = start;
        index = 0;
    }
    ::SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

bool KYjlpDlgPC_PgSpcMake::FillPageControls() {
    HWND makes = MakeList(), models = ModelList();
    if (!IsLiveWindow(makes) || !IsLiveWindow(models)) return false;
    ::SendMessageW(makes, LB_RESETCONTENT, 0, 0);
    ::SendMessageW(models, LB_RESETCONTENT, 0, 0);
    if (!m_pManufacturers) return true;
    AddTexts(makes, m_pManufacturers);
    if (!m_strMake.empty()) SelectExact(makes, m_strMake, m_strCurMake);
    if (OnManufacturerSelChange() && !m_strModel.empty()) SelectExact(models, m_strModel, m_strCurModel);
    return true;
}

bool KYjlpDlgPC_PgSpcMake::OnManufacturerSelChange() {
    HWND makes = MakeList(), models = ModelList();
    const LRESULT count = IsLiveWindow(makes) ? ::SendMessageW(makes, LB_GETCOUNT, 0, 0) : 0;
    const LRESULT selected = count > 0 ? ::SendMessageW(makes, LB_GETCURSEL, 0, 0) : LB_ERR;
    if (selected < 0 || static_cast<size_t>(selected) >= m_aModelLists.size()) return false;
    ::SendMessageW(models, LB_RESETCONTENT, 0, 0);
    bool shown = false;
    DRIVER_LIST_ENTRY* inHand = nullptr;
    try {
        // A manufacturer's models are asked of the library once while the lists stand.
        DRIVER_LIST_ENTRY*& slot = m_aModelLists[static_cast<size_t>(selected)];
        if (!slot && ReadModelsOf(ListItemText(makes, static_cast<int>(selected)), inHand))
            slot = std::exchange(inHand, nullptr);
        if (slot) {
            AddTexts(models, slot);
            ::SendMessageW(models, LB_SETCURSEL, 0, 0);
            shown = true;
        }
    } catch (int number) {
        RecordIfNormal(number);
    } catch (...) {
        TellModelListFailure(__LINE__);
    }
    if (SituationId() == kUnbound) AddSourceTail();
    RespondOrForget();
    OnPageContentChange();
    if (inHand && !ReleaseTextList(&inHand)) TellModelListFailure(__LINE__);
    return shown;
}

// An exception out of the library counts as no list; only the list that came back counts.
bool KYjlpDlgPC_PgSpcMake::ReadModelsOf(const std::wstring& make, DRIVER_LIST_ENTRY*& list) {
    if (make.empty()) return false;
    const LibraryCall call = EnumDrivers(m_strCurInfPath.c_str(), make.c_str(), &list);
    if (call.thrown || !list) return false;
    int count = 0, index = -1;
    DRIVER_LIST_ENTRY* entry = nullptr;
    if (PruneTextList(&list, count, std::wstring(), index, entry)) return true;
    TellModelListFailure(__LINE__);
    return false;
}
