// The item model: a list built from the catalogue, each record turned into a
// checked item, and the file facts the Details view shows.
#include <cstdlib>
#include <cwchar>
#include <initializer_list>
#include <new>

#include "app/KYjlpApp.h"
#include "document/KYjlpDoc.h"
#include "document/SituationReport.h"
#include "registrar/KYjutlRegistrar.h"

namespace {
const wchar_t kSourceName[] = L"KYjlpDoc";

int64_t UnixSeconds(const FILETIME& time) {
    ULARGE_INTEGER value{};
    value.LowPart = time.dwLowDateTime;
    value.HighPart = time.dwHighDateTime;
    constexpr uint64_t kEpochDifference = 116444736000000000ULL;  // 1601 to 1970, in 100 ns
    if (value.QuadPart < kEpochDifference) return 0;
    return static_cast<int64_t>((value.QuadPart - kEpochDifference) / 10000000ULL);
}

bool HasExtension(const wchar_t* path, std::initializer_list<const wchar_t*> extensions) {
    const wchar_t* dot = std::wcsrchr(path, L'.');
    if (!dot || std::wcspbrk(dot, L"\\/")) return false;
    for (const wchar_t* extension : extensions)
        if (_wcsicmp(dot, extension) == 0) return true;
    return false;
}
}  // namespace

void KYjlpDoc::TakeOver(wchar_t*& field, wchar_t*& source) noexcept {
    std::free(field);
    field = source;
    source = nullptr;
}

KYjlpItemList* KYjlpDoc::BuildItemList(ItemListPtr* out) {
    int number = 0;
    DWORD error = 0;
    try {
        if (!out) throw 27217;
        if (*out) FreeItems(out->get());
        else out->reset(new (std::nothrow) KYjlpItemList());
        if (!*out) throw 27216;
        KYjutlRegistrar* registrar = TheApp() ? TheApp()->m_pRegistrar : nullptr;
        if (!registrar) throw 27728;
        if (!registrar->m_pAppList) throw 27270;
        // The same file is checked once in a building; the memo goes when the building does.
        struct MemoScope {
            TargetCheckMemo& memo;
            explicit MemoScope(TargetCheckMemo& m) : memo(m) { memo.Begin(); }
            ~MemoScope() { memo.End(); }
        } scope(m_checks);
        for (KYjutlRegistrar_FILE* record : *registrar->m_pAppList) {
            if (!record) throw 27258;
            LV_TEXTLINE* item = MakeItem(record);
            // Refused and already told: one bad record does not stop the list.
            if (!item && lpreport::IsNormal()) continue;
            if (!item) throw lpreport::Current();
            try {
                (*out)->AddTail(item);
            } catch (...) {
                lpreport::Tell(27215, item->path);
                FreeTextLine(item);
            }
        }
        return out->get();
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27214;
        error = GetLastError();
    }
    lpreport::RecordFirst(number);
    int situation = lpreport::Current();
    if (situation == 27217) lpreport::Arg(static_cast<int32_t>(__LINE__));
    if (situation == 27217 || situation == 27258 || situation == 27728) {
        lpreport::Arg(kSourceName);
        lpreport::Arg(__DATE__);
    }
    if (situation == 27214) lpreport::Arg(lpreport::CodeText(error));
    lpreport::RespondAndForget();
    FreeItemList(out);
    return nullptr;
}

LV_TEXTLINE* KYjlpDoc::MakeItem(KYjutlRegistrar_FILE* record) {
    LV_TEXTLINE* item = nullptr;
    int number = 0;
    DWORD error = 0;
    try {
        if (!record) throw 27258;
        item = new (std::nothrow) LV_TEXTLINE();
        if (!item) throw 27204;
        // The item owns the record's strings from here on.
        TakeOver(item->name, record->pszAppName);
        TakeOver(item->path, record->pszExePath);
        TakeOver(item->type, record->pszFileType);
        TakeOver(item->parameters, record->pszCmdLineOptions);
        TakeOver(item->startDir, record->pszStartDirectory);
        TakeOver(item->iconPath, record->pszIconPath);
        item->iconIndex = record->iIconIndex;
        if (IsBlankText(item->name)) throw 27205;
        if (!item->path) throw 27211;
        SHFILEINFOW scratch{};
        if (!ValidateTarget(item->path, &scratch, &item->startDir, &item->isDocument)) throw 0;
        CheckItemIcon(item);
        switch (record->iStartState) {
        case 0: item->showState = SW_SHOWNORMAL; break;
        case 1: item->showState = SW_SHOWMINIMIZED; break;
        case 2: item->showState = SW_SHOWMAXIMIZED; break;
        default:
            item->showState = SW_SHOWNORMAL;
            lpreport::Tell(27194, item->name, static_cast<int32_t>(record->iStartState));
            break;
        }
        CheckItemParameters(item);
        KYjlpApp* app = TheApp();
        if (app && (app->m_nItemFillMask & kCheckFacts) && !GatherFileFacts(&item)) throw 0;
        return item;
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27192;
        error = GetLastError();
    }
    lpreport::RecordFirst(number);
    int situation = lpreport::Current();
    if (situation == 27192 || situation == 27204 || situation == 27210 || situation == 27211)
        lpreport::Arg(item && item->name ? item->name : L"(NULL)", 0);
    if (situation == 27211) lpreport::Arg(static_cast<int32_t>(__LINE__));
    if (situation == 27207 || situation == 27211 || situation == 27258) {
        lpreport::Arg(kSourceName);
        lpreport::Arg(__DATE__);
    }
    if (situation == 27192) lpreport::Arg(lpreport::CodeText(error));
    // A missing record is the list's failure, not the item's: BuildItemList tells it.
    if (situation != 27258) lpreport::RespondAndForget();
    FreeTextLine(item);
    return nullptr;
}

void KYjlpDoc::CheckItemIcon(LV_TEXTLINE* item) {
    if (IsBlankText(item->iconPath)) return;
    int situation = 0;
    DWORD error = 0;
    if (_wcsicmp(item->iconPath, item->path) != 0 && !CheckTargetQuiet(item->iconPath, &error))
        situation = 27203;
    else if (!HasExtension(item->iconPath, {L".dll", L".exe", L".ico"}))
        situation = 27202;
    if (situation == 0) return;
    // The item stays and gets the default icon.
    lpreport::Tell(situation, item->name, item->iconPath, lpreport::CodeText(error));
    std::free(item->iconPath);
    item->iconPath = nullptr;
}

void KYjlpDoc::CheckItemParameters(LV_TEXTLINE* item) {
    if (!item->isDocument || !item->parameters) return;
    // A document takes no parameters: the shell would hand them to its handler.
    if (!IsBlankText(item->parameters)) lpreport::Tell(27195, item->path, item->parameters);
    std::free(item->parameters);
    item->parameters = nullptr;
}

wchar_t* KYjlpDoc::SplitFileName(const wchar_t* path, wchar_t* out, size_t size) {
    if (!out || size < MAX_PATH) return out;
    wmemset(out, 0, size);
    if (IsBlankText(path)) return out;
    wchar_t name[_MAX_FNAME] = {}, extension[_MAX_EXT] = {};
    if (_wsplitpath_s(path, nullptr, 0, nullptr, 0, name, _MAX_FNAME, extension, _MAX_EXT) == 0)
        _snwprintf(out, size - 1, L"%s%s", name, extension);
    return out;
}

bool KYjlpDoc::GatherFileFacts(LV_TEXTLINE** item) {
    if (!lpreport::IsNormal()) return false;
    LV_TEXTLINE* it = item ? *item : nullptr;
    DWORD error = 0;
    try {
        if (!it) throw 27207;
        if (!it->path) throw 27211;
        TargetCheckMemo::FileFacts known{};
        if (const TargetCheckMemo::FileFacts* kept = m_checks.FindFacts(it->path)) {
            known = *kept;
        } else {
            known.known = GetFileAttributesExW(it->path, GetFileExInfoStandard, &known.data) != FALSE;
            m_checks.KeepFacts(it->path, known);
        }
        const WIN32_FILE_ATTRIBUTE_DATA& facts = known.data;
        if (known.known) {
            if (facts.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) throw 27210;
            it->attributes = static_cast<uint8_t>(facts.dwFileAttributes & 0xFF);
            it->accessed = UnixSeconds(facts.ftLastAccessTime);
            it->created = UnixSeconds(facts.ftCreationTime);
            it->modified = UnixSeconds(facts.ftLastWriteTime);
            it->size = (static_cast<uint64_t>(facts.nFileSizeHigh) << 32) | facts.nFileSizeLow;
        }
        wchar_t fileName[MAX_PATH];
        SplitFileName(it->path, fileName, MAX_PATH);
        std::free(it->fileName);
        if (!(it->fileName = DuplicateText(fileName))) lpreport::Tell(27206, it->name, fileName);
        wchar_t baseName[256] = {};
        wcsncpy(baseName, fileName, 255);
        if (wchar_t* dot = std::wcschr(baseName, L'.')) *dot = L'\0';
        std::free(it->baseName);
        if (!(it->baseName = DuplicateText(baseName))) lpreport::Tell(27213, it->name, baseName);
    } catch (int n) {
        // Left standing: the caller drops the item and tells it with the item's name.
        lpreport::RecordFirst(n);
        if (n == 27207 || n == 27211) lpreport::Arg(static_cast<int32_t>(__LINE__));
        if (n == 27210) lpreport::Arg(it->path, 1);
    } catch (...) {
        error = GetLastError();
        lpreport::RecordFirst(27200);
        lpreport::Arg(it && it->path ? it->path : L"(NULL)");
        lpreport::Arg(lpreport::CodeText(error));
    }
    return lpreport::IsNormal();
}

bool KYjlpDoc::GatherListFacts(KYjlpItemList* list) {
    KYjlpApp* app = TheApp();
    if (!app || !(app->m_nItemFillMask & kCheckFacts) || !list || list->IsEmpty()) return false;
    // Within one gathering a file's facts are asked once; a building already keeps them.
    const bool ownScope = !m_checks.Active();
    if (ownScope) m_checks.Begin();
    struct EndScope {
        TargetCheckMemo& memo;
        bool own;
        ~EndScope() {
            if (own) memo.End();
        }
    } scope{m_checks, ownScope};
    for (POSITION pos = list->GetHeadPosition(); pos;) {
        LV_TEXTLINE*& item = list->GetNext(pos);
        if (!item || !item->name) continue;
        if (!GatherFileFacts(&item)) lpreport::Forget();
    }
    return true;
}
