// LodeQDB: the one header a client includes, with the one target it links (LodeQDB::LodeQDB).
//
//   #include <lodeqdb/LodeQDB.h>
//
//   // Everything /srv/site.plw depends on, at any depth: references, images, underlays.
//   LodeQDBService::Request::WalkStop stop;
//   for (const LodeQDBService::FileData& file :
//        LodeQDBService::Request::PlotwrightNestedChildren(u"/srv/site.plw", true, stop)) {
//       const bool found = LodeUtil::File::Exists(file.GetFullname());
//       std::cout << LodeUtil::Utf8FromUtf16(file.GetFullname()) << (found ? "" : " (missing)")
//                 << '\n';
//   }
//   if (stop.stopped) std::cerr << "incomplete: " << LodeUtil::Utf8FromUtf16(stop.message) << '\n';
//
// A file that can't be read throws an exception derived from lode::LodeException, with a code
// and a message in the product's language:
//
//   try {
//       PwDbDatabase drawing(false, true);
//       LodeQDBUtil::ThrowLodeExceptionOnFile(
//           LodeQDBUtil::ReadPLWOrPLXToDb(u"/srv/site.plw", drawing, true), u"/srv/site.plw");
//   } catch (const lode::LodeException& error) {
//       std::cerr << error.code() << ' ' << LodeUtil::Utf8FromUtf16(error.message()) << '\n';
//   }
//
// It brings in the whole public interface but the block table iterators, which stand on Boost:
// a client that wants them includes <lodeqdb/platform/BlockTableIterators.h> and finds Boost.
#pragma once

// Utility library: paths, text, files, message formatting
#include <lodeqdb/lodeutil/AbsoluteFilePath.h>
#include <lodeqdb/lodeutil/BStr.h>
#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/FileUtil.h>
#include <lodeqdb/lodeutil/Format.h>
#include <lodeqdb/lodeutil/LocaleId.h>
#include <lodeqdb/lodeutil/Module.h>
#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/ProfileFile.h>
#include <lodeqdb/lodeutil/Resources.h>
#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/lodeutil/WideString.h>

// The drawing-database toolkit
#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/core/PwStringBuffer.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDatabaseExtension.h>
#include <lodeqdb/toolkit/db/PwDbDependentFiles.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/db/PwDbIdMapping.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbLayout.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include <lodeqdb/toolkit/db/PwDbObject.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbObjectRecord.h>
#include <lodeqdb/toolkit/db/PwDbPlacement.h>
#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>
#include <lodeqdb/toolkit/db/PwDbPolyline.h>
#include <lodeqdb/toolkit/db/PwDbProxyObject.h>
#include <lodeqdb/toolkit/db/PwDbSymbolTable.h>
#include <lodeqdb/toolkit/db/PwDbSymbolUtilities.h>
#include <lodeqdb/toolkit/db/PwDbText.h>
#include <lodeqdb/toolkit/db/PwDbTextStyleTable.h>
#include <lodeqdb/toolkit/db/PwDbTransactionManager.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnConvertOptions.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnConvertReport.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnRefFileData.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnRefFileRepath.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnReferences.h>
#include <lodeqdb/toolkit/file/PwDbPreview.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>
#include <lodeqdb/toolkit/image/PwDbImageAuthoring.h>
#include <lodeqdb/toolkit/image/PwDbImageFileHeader.h>
#include <lodeqdb/toolkit/image/PwDbRasterImage.h>
#include <lodeqdb/toolkit/image/PwDbRasterImageDef.h>
#include <lodeqdb/toolkit/modeldoc/PwModelDocAuthoring.h>
#include <lodeqdb/toolkit/modeldoc/PwModelDocObjUtil.h>
#include <lodeqdb/toolkit/modeldoc/PwModelDocObjects.h>
#include <lodeqdb/toolkit/pal/PwFileIO.h>
#include <lodeqdb/toolkit/pal/PwHeap.h>
#include <lodeqdb/toolkit/pal/PwLocale.h>
#include <lodeqdb/toolkit/rx/PwRxClass.h>
#include <lodeqdb/toolkit/rx/PwRxDictionary.h>
#include <lodeqdb/toolkit/rx/PwRxDynamicLinker.h>
#include <lodeqdb/toolkit/rx/PwRxModules.h>
#include <lodeqdb/toolkit/rx/PwRxObject.h>
#include <lodeqdb/toolkit/table/PwDbFormattedText.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>
#include <lodeqdb/toolkit/table/PwDbTableAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayFileFormats.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayReference.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include <lodeqdb/toolkit/xref/PwDbXrefGraph.h>
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

// Shared vocabulary: file kinds, format generations, creator kinds
#include <lodeqdb/vocabulary/FileKinds.h>
#include <lodeqdb/vocabulary/FormatGeneration.h>

// Drawing platform: exceptions, status translation, object helpers
#include <lodeqdb/platform/AutoObjectUpgrader.h>
#include <lodeqdb/platform/BlockTableRecordAccess.h>
#include <lodeqdb/platform/DictionaryAccess.h>
#include <lodeqdb/platform/FilerItems.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/platform/MessageTexts.h>
#include <lodeqdb/platform/ObjectPointer.h>
#include <lodeqdb/platform/PreviewBitmap.h>
#include <lodeqdb/platform/SetWorkingDBMgr.h>
#include <lodeqdb/platform/ThrowLodeExceptionOnFile.h>

// Reference resolution
#include <lodeqdb/references/DependentFile.h>
#include <lodeqdb/references/PathQuestions.h>
#include <lodeqdb/references/RasterImageAccess.h>
#include <lodeqdb/references/UnderlayAccess.h>
#include <lodeqdb/references/XrefDatabaseLookup.h>
#include <lodeqdb/references/XrefOpening.h>
#include <lodeqdb/references/XrefPath.h>

// File identification
#include <lodeqdb/identification/AppInfo.h>
#include <lodeqdb/identification/CreatorKind.h>
#include <lodeqdb/identification/FileFormat.h>
#include <lodeqdb/identification/Guid.h>
#include <lodeqdb/identification/HeaderVersion.h>
#include <lodeqdb/identification/PropertySet.h>

// Reading and saving
#include <lodeqdb/readsave/DgnModule.h>
#include <lodeqdb/readsave/DgnSetups.h>
#include <lodeqdb/readsave/DgnTranslation.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/readsave/Saving.h>

// Drawing contents
#include <lodeqdb/contents/GearmarkRef.h>
#include <lodeqdb/contents/Layers.h>
#include <lodeqdb/contents/Layouts.h>

// Dependency service
#include <lodeqdb/service/ChildrenQuery.h>
#include <lodeqdb/service/DgnChildren.h>
#include <lodeqdb/service/FileClassification.h>
#include <lodeqdb/service/FileData.h>
#include <lodeqdb/service/TreeWalks.h>

// Revision block
#include <lodeqdb/revisionblock/BlockMgr.h>
#include <lodeqdb/revisionblock/RevisionBlockCodes.h>
#include <lodeqdb/revisionblock/RevisionBlockName.h>
#include <lodeqdb/revisionblock/RowNotFoundException.h>
#include <lodeqdb/revisionblock/UpdateContext.h>
