// LodeQDB: the one header a client includes.
//
//   #include <LodeQDB.h>
//
//   try {
//       LodeQDBUtil::ThrowLodeExceptionOnFile(status, path);
//   } catch (const lode::FileError& error) {
//       std::cerr << LodeUtil::Utf8FromUtf16(error.message()) << '\n';
//   }
//
// It brings in the utility library (LodeUtil), the toolkit's basic types (status values,
// strings, arrays, locale, run-time registry) and the service library's interface.
#pragma once

// Utility library
#include "lodeutil/AbsoluteFilePath.h"
#include "lodeutil/BStr.h"
#include "lodeutil/FileSystem.h"
#include "lodeutil/FileUtil.h"
#include "lodeutil/Format.h"
#include "lodeutil/LocaleId.h"
#include "lodeutil/Module.h"
#include "lodeutil/Path.h"
#include "lodeutil/Resources.h"
#include "lodeutil/Strings.h"
#include "lodeutil/Utf.h"
#include "lodeutil/WideString.h"

// Toolkit
#include "toolkit/core/PwArray.h"
#include "toolkit/core/PwErrorStatus.h"
#include "toolkit/core/PwString.h"
#include "toolkit/core/PwStringBuffer.h"
#include "toolkit/pal/PwHeap.h"
#include "toolkit/pal/PwLocale.h"
#include "toolkit/rx/PwRxClass.h"
#include "toolkit/rx/PwRxDictionary.h"
#include "toolkit/rx/PwRxDynamicLinker.h"
#include "toolkit/rx/PwRxModules.h"
#include "toolkit/rx/PwRxObject.h"
#include "toolkit/ge/PwGeGeometry.h"
#include "toolkit/db/PwDb.h"
#include "toolkit/db/PwDbAuthoring.h"
#include "toolkit/db/PwDbBlockReference.h"
#include "toolkit/db/PwDbBlockTable.h"
#include "toolkit/db/PwDbCurves.h"
#include "toolkit/db/PwDbDatabase.h"
#include "toolkit/db/PwDbDependentFiles.h"
#include "toolkit/db/PwDbDictionary.h"
#include "toolkit/db/PwDbEntity.h"
#include "toolkit/db/PwDbHostApplicationServices.h"
#include "toolkit/db/PwDbLayerTable.h"
#include "toolkit/db/PwDbLayout.h"
#include "toolkit/db/PwDbMemoryFiler.h"
#include "toolkit/db/PwDbObject.h"
#include "toolkit/db/PwDbObjectId.h"
#include "toolkit/db/PwDbObjectPointer.h"
#include "toolkit/db/PwDbObjectRecord.h"
#include "toolkit/db/PwDbPlwFiler.h"
#include "toolkit/db/PwDbPolyline.h"
#include "toolkit/db/PwDbProxyObject.h"
#include "toolkit/db/PwDbSymbolTable.h"
#include "toolkit/db/PwDbSymbolUtilities.h"
#include "toolkit/db/PwDbText.h"
#include "toolkit/db/PwDbTransactionManager.h"
#include "toolkit/file/PwDbDrawingImage.h"
#include "toolkit/file/PwDbPreview.h"
#include "toolkit/image/PwDbImageAuthoring.h"
#include "toolkit/image/PwDbImageFileHeader.h"
#include "toolkit/image/PwDbRasterImage.h"
#include "toolkit/image/PwDbRasterImageDef.h"
#include "toolkit/pal/PwFileIO.h"
#include "toolkit/underlay/PwDbUnderlayAuthoring.h"
#include "toolkit/underlay/PwDbUnderlayDefinition.h"
#include "toolkit/underlay/PwDbUnderlayFileFormats.h"
#include "toolkit/underlay/PwDbUnderlayReference.h"
#include "toolkit/xref/PwDbXrefAuthoring.h"
#include "toolkit/xref/PwDbXrefGraph.h"
#include "toolkit/xref/PwDbXrefs.h"

// Service library
#include "platform/LodeExceptions.h"
#include "platform/MessageTexts.h"
#include "platform/ThrowLodeExceptionOnFile.h"
#include "identification/CreatorKind.h"
#include "identification/FileFormat.h"
#include "platform/FaultGuard.h"
#include "readsave/DgnModule.h"
#include "readsave/ReadIntoDatabase.h"
#include "references/DependentFile.h"
#include "references/PathQuestions.h"
#include "references/XrefOpening.h"
#include "references/XrefPath.h"
#include "service/FileData.h"
