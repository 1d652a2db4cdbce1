#include "document/KYjlpDoc.h"

#include <commctrl.h>

#include <new>

#include "app/KYjlpApp.h"
#include "dialogs/KYjlpDlgVO.h"
#include "document/SituationReport.h"
#include "window/KYjlpViewList.h"

namespace {
const wchar_t kSourceName[] = L"KYjlpDoc";

// A step that reported by itself failed: the caller adds where it stood.
void ReportStepFailed(int line) {
    lpreport::Record(27014);
    lpreport::Arg(static_cast<int32_t>(line));
    lpreport::Arg(kSourceName);
    lpreport::Arg(__DATE__);
    lpreport::RespondAndForget();
}
}  // namespace

KYjlpDoc::~KYjlpDoc() { ReleaseAll(); }

bool KYjlpDoc::OnNewDocument() {
    lpreport::Forget();
    KYjlpApp* app = TheApp();
    int number = 0;
    DWORD error = 0;
    try {
        if (!fw::Document::OnNewDocument() || !app) throw 27172;
        if (app->m_bShell) {
            // What the list is built for decides how much each item is checked.
            KYjlpViewList* view = ObtainViewList();
            if (!view || !*view)
                app->m_nItemFillMask = kCheckBinary | kCheckStartDir | kCheckFacts;
            else if ((view->Style() & LVS_TYPEMASK) == LVS_REPORT)
                app->m_nItemFillMask = kCheckBinary | kCheckFacts;
            else
                app->m_nItemFillMask = kCheckBinary;
            if (!BuildItemList(&m_pItems) || !BuildImages() || !CreateOptionsDialog()) {
                ReportStepFailed(__LINE__);
                throw 0;
            }
        } else {
            // A start that only launches from the command line: no images, no dialog.
            app->m_nItemFillMask = kCheckBinary | kCheckStartDir;
            if (!BuildItemList(&m_pItems)) {
                ReportStepFailed(__LINE__);
                throw 0;
            }
        }
    } catch (int n) {
        number = n;
        error = GetLastError();
    } catch (...) {
        number = 27171;
        error = GetLastError();
    }
    if (number == 0 && lpreport::IsNormal() && m_pItems) return true;
    if (number != 0) {
        lpreport::RecordFirst(number);
        lpreport::Arg(lpreport::CodeText(error));
    }
    lpreport::RespondAndForget();
    ReleaseAll();
    return false;
}

bool KYjlpDoc::EmptyContents() {
    FreeItems(m_pItems.get());
    return true;
}

void KYjlpDoc::ReleaseAll() {
    FreeItemList(&m_pItems);
    m_imlSmall.reset();
    m_imlLarge.reset();
}

KYjlpViewList* KYjlpDoc::ObtainViewList() const {
    for (fw::View* view : Views())
        if (auto* list = dynamic_cast<KYjlpViewList*>(view)) return list;
    return nullptr;
}

POSITION KYjlpDoc::FindItemByName(const wchar_t* name, int* index) const {
    if (index) *index = -1;
    if (IsBlankText(name) || !m_pItems || m_pItems->IsEmpty()) return nullptr;
    int place = 0;
    for (POSITION pos = m_pItems->GetHeadPosition(); pos; ++place) {
        POSITION here = pos;
        const LV_TEXTLINE* item = m_pItems->GetNext(pos);
        if (item && item->name && _wcsicmp(item->name, name) == 0) {
            if (index) *index = place;
            return here;
        }
    }
    return nullptr;
}

void KYjlpDoc::FreeItem(LV_TEXTLINE** item) noexcept {
    if (item) FreeTextLine(*item);
}

void KYjlpDoc::FreeItems(KYjlpItemList* list) noexcept {
    if (list) list->FreeAll();
}

void KYjlpDoc::FreeItemList(ItemListPtr* list) noexcept {
    if (!list || !*list) return;
    FreeItems(list->get());
    list->reset();
}

bool KYjlpDoc::CloneItem(LV_TEXTLINE** out, const LV_TEXTLINE* source) {
    if (!out || *out || !source) return false;
    LV_TEXTLINE* copy = new (std::nothrow) LV_TEXTLINE(*source);
    if (!copy) return false;
    bool complete = true;
    for (wchar_t** field : {&copy->path, &copy->fileName, &copy->name, &copy->baseName, &copy->type,
                            &copy->parameters, &copy->startDir, &copy->iconPath}) {
        // Until its own copy is made, a field must not point at the source's string.
        const wchar_t* text = *field;
        *field = nullptr;
        if (complete && text && !(*field = DuplicateText(text))) complete = false;
    }
    if (!complete) {
        FreeTextLine(copy);
        return false;
    }
    *out = copy;
    return true;
}

bool KYjlpDoc::CloneItemList(ItemListPtr* out, const KYjlpItemList* source) {
    if (!out || *out || !source) return false;
    try {
        auto copy = std::make_unique<KYjlpItemList>();
        for (POSITION pos = source->GetHeadPosition(); pos;) {
            const LV_TEXTLINE* item = source->GetNext(pos);
            LV_TEXTLINE* clone = nullptr;
            if (item && !CloneItem(&clone, item)) return false;  // the partial copy dies with copy
            try {
                copy->AddTail(clone);
            } catch (...) {
                FreeTextLine(clone);
                throw;
            }
        }
        *out = std::move(copy);
        return true;
    } catch (...) {
        return false;
    }
}

KYjlpItemList* KYjlpDoc::MoveItemsToEnd(KYjlpItemList* source, bool emptySource) {
    if (!m_pItems) {
        ReportStepFailed(__LINE__);
        return nullptr;
    }
    try {
        if (source) {
            for (POSITION pos = source->GetHeadPosition(); pos;) m_pItems->AddTail(source->GetNext(pos));
            if (emptySource) source->RemoveAll();
        }
    } catch (...) {
        return nullptr;
    }
    return m_pItems.get();
}
