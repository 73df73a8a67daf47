// The object pointers the library's interface uses, made once here.
#include <lodeqdb/platform/ObjectPointer.h>

#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbLayout.h>
#include <lodeqdb/toolkit/image/PwDbRasterImageDef.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>

template class LodeQDBUtil::ObjectPointer<PwDbRasterImageDef>;
template class LodeQDBUtil::ObjectPointer<PwDbUnderlayDefinition>;
template class LodeQDBUtil::ObjectPointer<PwDbDictionary>;
template class LodeQDBUtil::ObjectPointer<PwDbLayout>;
template class LodeQDBUtil::ObjectPointer<PwDbPlotSettings>;
