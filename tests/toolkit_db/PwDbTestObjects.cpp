// Class records of the tests' own object classes.
#include "PwDbTestObjects.h"

PWRX_DEFINE_DYNAMIC_MEMBERS(PwTestNote, PwDbObject, u"PwTestNote");
PWRX_DEFINE_DYNAMIC_MEMBERS(PwTestLinkedNote, PwTestNote, u"PwTestLinkedNote");
