// The object pointers the library's interface uses, made once here.
#include "platform/ObjectPointer.h"

#include "toolkit/db/PwDbDictionary.h"
#include "toolkit/db/PwDbLayout.h"
#include "toolkit/image/PwDbRasterImageDef.h"
#include "toolkit/underlay/PwDbUnderlayDefinition.h"

template class LodeQDBUtil::ObjectPointer<PwDbRasterImageDef>;
template class LodeQDBUtil::ObjectPointer<PwDbUnderlayDefinition>;
template class LodeQDBUtil::ObjectPointer<PwDbDictionary>;
template class LodeQDBUtil::ObjectPointer<PwDbLayout>;
template class LodeQDBUtil::ObjectPointer<PwDbPlotSettings>;
