// Which kind of application made a drawing: told by the owner GUID in the file's header, by
// signs inside the drawing, or by both in turn; and the creator's name.
//
//   lode::PlwFileType type = LodeQDBUtil::GetPlwFileType(u"/srv/a.plw");
#pragma once

#include <lodeqdb/identification/Guid.h>
#include <lodeqdb/vocabulary/FileKinds.h>
#include <lodeqdb/lodeutil/WideString.h>

class PwDbDatabase;


namespace LodeQDBUtil {

/// The owner GUID of each kind of application, in the order of the kinds 1 to 6.
struct OwnerGuidRow {
    Guid owner;
    lode::PlwFileType type;
};
extern const OwnerGuidRow kOwnerGuidTable[6];

/// {F29F85E0-4FF9-1068-AB91-08002B27B3D9}: the format id of the property set holding the
/// creator's name, and its entry's key.
extern const Guid kSummaryFormatId;
/// The creator name's property in that set.
inline constexpr uint32_t kCreatorNamePropertyId = 258;

/// By the owner GUID in the header: lode::NoAppInfo without application information,
/// lode::NoOwnerInfo without a readable owner entry; PlwTypeUnknown for an owner of no kind.
lode::PlwFileType GetPlwFileTypeByHeader(const wstring& path);
/// By the signs inside the drawing, tested in a fixed order: the block "zk_m"; the root
/// dictionary's "GMD_DICT_ROOT"; "ZEMA_SCOPE_NAME" (with "ZASGREF_MASTER" or without); a
/// "Root" entry that is a proxy of "ZephDbTreeNode"; otherwise plain. A null database or a
/// block table that can't be opened throws as ThrowLodeExceptionOnFile says, with no name.
lode::PlwFileType GetPlwFileTypeByDatabase(PwDbDatabase* database);
lode::PlwFileType GetPlwFileTypeByDatabase(PwDbDatabase& database);
/// By the header; when that throws, by the database read from the file (holding nothing).
lode::PlwFileType GetPlwFileType(const wstring& path);

/// The creator's name from the header's property set; lode::NoAppInfo, or
/// lode::NoPlwCreatorName when the set or its property is missing.
wstring GetPlwCreatorName(const wstring& path);

bool IsGearmarkPlwByDatabase(PwDbDatabase& database);
/// False also when the header can't tell.
bool IsGearmarkPlwByHeader(const wstring& path);
/// True when the library runs under the toolkit alone (host kind 4).
bool IsInkstoneHostApp();

}  // namespace LodeQDBUtil
