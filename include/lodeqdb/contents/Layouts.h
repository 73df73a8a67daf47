// The layouts and the named plot settings of an open drawing as plain records, chosen by
// model or paper.
//
//   using namespace LodeQDBUtil::Layout;
//   for (const lode::PlwLayoutInfo& sheet :
//        GetPlwLayoutInfoList(drawing, true, true, lode::PaperLayouts))
//       print(sheet.name, sheet.tabOrder);
#pragma once

#include <cstdint>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

class PwDbDatabase;

namespace lode {

/// What a list asks for, and what kind an entry is. As a selector every value other than 0
/// and 1 asks for both kinds; an entry is always labelled 0 or 1.
enum PlwLayoutsCollection : int32_t {
    ModelLayouts = 0,
    PaperLayouts = 1,
    AllLayouts = 2,
};

struct PlwLayoutInfo {
    /// The PwDbLayout; it means something only while its database lives.
    PwDbObjectId objectId;
    wstring name;
    /// True when both the paper's width and its height are above 0.
    bool hasPaperSize = false;
    /// ModelLayouts when the layout shows the model space, PaperLayouts otherwise.
    PlwLayoutsCollection collection = ModelLayouts;
    int32_t tabOrder = 0;
};

struct PlwPlotSettingInfo {
    /// The PwDbPlotSettings; it means something only while its database lives.
    PwDbObjectId objectId;
    /// Empty when the toolkit gives no text.
    wstring name;
    /// ModelLayouts for settings of the model space, PaperLayouts otherwise.
    PlwLayoutsCollection collection = ModelLayouts;
};

}  // namespace lode

namespace LodeQDBUtil::Layout {

/// The layouts of `database`, in the layout dictionary's order or, with `sortByTabOrder`, by
/// ascending tab order (equal tab orders in no defined order). `onlyWithPaper` leaves out the
/// layouts without a paper size; `collection` chooses model, paper or both. Entries that
/// can't be opened or aren't layouts are left out; nothing is thrown for a toolkit status.
std::vector<lode::PlwLayoutInfo> GetPlwLayoutInfoList(PwDbDatabase& database, bool sortByTabOrder,
                                                      bool onlyWithPaper,
                                                      lode::PlwLayoutsCollection collection);

/// The named plot settings of `database` (its "PLOTWRIGHT_PLOTSETTINGS" dictionary) in the
/// dictionary's order, chosen by `collection`. Empty when the dictionary is missing or can't
/// be opened; entries that can't be opened or aren't plot settings are left out.
std::vector<lode::PlwPlotSettingInfo> GetPlotSettingsInfoList(
    PwDbDatabase& database, lode::PlwLayoutsCollection collection);

/// Orders `layouts` by ascending tab order as signed numbers, with the standard library's
/// unstable sort on the tab order alone: what GetPlwLayoutInfoList does with
/// `sortByTabOrder`.
void SortByTabOrder(std::vector<lode::PlwLayoutInfo>& layouts);

}  // namespace LodeQDBUtil::Layout
