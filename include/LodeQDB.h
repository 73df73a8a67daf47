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
#include "toolkit/rx/PwRxObject.h"

// Service library
#include "platform/LodeExceptions.h"
#include "platform/MessageTexts.h"
#include "platform/ThrowLodeExceptionOnFile.h"
