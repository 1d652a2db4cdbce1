// The document of Launch Panel: the list of published applications the user may
// start, built from the catalogue, each item checked so that it can run, and the
// checks a launch makes on its target.
#pragma once
#include <windows.h>
#include <shellapi.h>
#include <vector>
#include <memory>
#include <string>

#include "document/KYjlpItemList.h"
#include "document/LV_TEXTLINE.h"
#include "document/IconCache.h"
#include "document/TargetCheckMemo.h"
#include "foundation/UniqueHandle.h"
#include "framework/Document.h"

class KYjlpDlgVO;
class KYjlpViewList;
struct KYjutlRegistrar_FILE;

class KYjlpDoc : public fw::Document {
public:
    using ItemListPtr = std::unique_ptr<KYjlpItemList>;

    KYjlpDoc();
    ~KYjlpDoc() override;
    KYjlpDoc(const KYjlpDoc&) = delete;
    KYjlpDoc& operator=(const KYjlpDoc&) = delete;

    bool OnNewDocument() override;
    // Frees the live list and its records.
    virtual bool EmptyContents();
    virtual void ReleaseAll();

    // The settings commands: the stored settings again (32778) and the view options (32846).
    bool OnCmdMsg(UINT id, fw::CmdUI* ui) override;
    void OnFileSettingsRestore(UINT id);
    void OnViewOptions(UINT id);
    // The one view options dialog of the run, made with the stored options.
    bool CreateOptionsDialog();
    // The stored options into the dialog: what its Defaults and Cancel go back to.
    bool OptionsFromPreferences();
    // After OK: what the dialog keeps is brought to the view, the frame and the
    // preferences, each item only where it differs.
    bool ApplyOptions(COLORREF oldBackground, COLORREF oldText, KYjlpViewList* view);
    KYjlpDlgVO* OptionsDialog() const { return m_pDlgViewOptions.get(); }

    KYjlpViewList* ObtainViewList() const;
    // The node of the item called name (without regard to case) and its place from 0; null and -1 if none.
    POSITION FindItemByName(const wchar_t* name, int* index) const;
    KYjlpItemList* Items() const { return m_pItems.get(); }

    // The item model: building a list from the catalogue, records, copies.
    KYjlpItemList* BuildItemList(ItemListPtr* out);
    // Takes the record's strings over (nulling them there) and checks the item; null when refused.
    LV_TEXTLINE* MakeItem(KYjutlRegistrar_FILE* record);
    static void FreeItem(LV_TEXTLINE** item) noexcept;
    static void FreeItems(KYjlpItemList* list) noexcept;
    static void FreeItemList(ItemListPtr* list) noexcept;
    static bool CloneItem(LV_TEXTLINE** out, const LV_TEXTLINE* source);
    static bool CloneItemList(ItemListPtr* out, const KYjlpItemList* source);
    // Appends the records of source to the live list; null (and 27014) without a live list.
    KYjlpItemList* MoveItemsToEnd(KYjlpItemList* source, bool emptySource);
    bool GatherFileFacts(LV_TEXTLINE** item);
    bool GatherListFacts(KYjlpItemList* list);
    // Name and extension of path into out (size at least MAX_PATH); out is returned.
    static wchar_t* SplitFileName(const wchar_t* path, wchar_t* out, size_t size);

    // The checks of a target: what the shell would do, answered before it is asked.
    bool ValidateTarget(const wchar_t* path, SHFILEINFOW* scratch, wchar_t** startDir, bool* isDocument);
    bool ValidateTargetQuiet(const wchar_t* path, wchar_t** startDir);
    bool CheckTargetFile(const wchar_t* path, DWORD* error, SHFILEINFOW* scratch, bool* isDocument);
    bool CheckTargetQuiet(const wchar_t* path, DWORD* error);
    virtual bool CheckStartDirectory(const wchar_t* dir, DWORD* error);

    // The icons: two image lists, image i belonging to item i of the list.
    HIMAGELIST LargeImages() const { return m_imlLarge.get(); }
    HIMAGELIST SmallImages() const { return m_imlSmall.get(); }
    // Makes (or empties) the two image lists and loads the icons of the live list; told on failure.
    bool BuildImages();
    // Appends the images of these items, in their order, to the two lists.
    bool LoadItemImages(const std::vector<const LV_TEXTLINE*>& items, HIMAGELIST large, HIMAGELIST small);
    // What an item's icons are found from: equal keys give equal icons.
    static std::wstring IconKeyOf(const LV_TEXTLINE& item);
    // The item's icons by its icon file, else its target's shell icon, else the product's own.
    bool ObtainItemIcons(HICON* large, HICON* small, const LV_TEXTLINE& item);
    // The item's icons at those sizes, found once per source in a session; null when none can be.
    const IconCache::Icons* CachedItemIcons(const LV_TEXTLINE& item, const std::wstring& source, int largeSize,
                                            int smallSize);
    // Icon sizes for the monitor the list is on.
    void ObtainIconSizes(int& large, int& small) const;

    // The resolved handler of the last document checked, which the failure reports quote.
    const wchar_t* HandlerPath() const { return m_wszHandler; }

private:
    bool CheckTargetFileNow(const wchar_t* path, DWORD* error, SHFILEINFOW* scratch, bool* isDocument);
    // GetBinaryTypeW, or what it answered for that file earlier in this building.
    bool BinaryTypeOf(const wchar_t* file, DWORD* type);
    bool PassAccessDenied(const wchar_t* path, bool* isDocument, DWORD* error);
    void CheckItemStartDirectory(const wchar_t* path, wchar_t** startDir);
    DWORD FindHandler(const wchar_t* path, const wchar_t* startDir);
    void CheckItemIcon(LV_TEXTLINE* item);
    void CheckItemParameters(LV_TEXTLINE* item);
    static void TakeOver(wchar_t*& field, wchar_t*& source) noexcept;

    bool MakeImageLists();
    void ApplyBars(const KYjlpDlgVO& dialog);
    void ApplyListStyles(const KYjlpDlgVO& dialog, KYjlpViewList& view);
    void KeepOptionsInPreferences(const KYjlpDlgVO& dialog, const KYjlpViewList& view);

    ItemListPtr m_pItems;
    ky::UniqueHImageList m_imlLarge;
    ky::UniqueHImageList m_imlSmall;
    wchar_t m_wszHandler[MAX_PATH] = {};
    std::unique_ptr<KYjlpDlgVO> m_pDlgViewOptions;
    TargetCheckMemo m_checks;
    IconCache m_icons;
};
