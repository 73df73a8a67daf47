// PwDbSymbolUtilities: services around symbol names and the standard blocks of a drawing.
//
// Defines PwDbSymbolUtilities::Services, PwDbSymbolUtilities::servicesPtr106() and
// PwDbSymbolUtilities::isValidSymbolName().
//
//   PwDbObjectId modelSpace;
//   const PwDbSymbolUtilities::Services* services = PwDbSymbolUtilities::servicesPtr106();
//   if (services->modelSpaceBlockId(modelSpace, &drawing) == Plotwright::StatusOk) { ... }
//
// Symbol names (of layers, blocks and other table records) are compared without regard to
// case. A name is not empty and holds none of  < > / \ " : ; ? * | , = `  and no control
// character (U+0000 to U+001F, U+007F to U+009F). Block names alone may start with one '*',
// the mark of the drawing's own blocks ("*Model_Space").
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

class PwDbDatabase;

namespace PwDbSymbolUtilities {

/// The services, reached through servicesPtr106(). The destructor is the first virtual
/// operation and modelSpaceBlockId the second; later ones follow in declaration order.
class Services {
  public:
    Services() = default;
    virtual ~Services();

    /// The model space block of `database`. StatusNullDatabase for a null database (the id is
    /// then null).
    virtual Plotwright::ErrorStatus modelSpaceBlockId(PwDbObjectId& id,
                                                      const PwDbDatabase* database) const;
    /// The paper space block of `database`, as modelSpaceBlockId.
    virtual Plotwright::ErrorStatus paperSpaceBlockId(PwDbObjectId& id,
                                                      const PwDbDatabase* database) const;
    /// StatusOk when `name` may name a symbol table record, StatusInvalidKey otherwise (null
    /// included). `allowLeadingAsterisk` admits one '*' in front, as block names have.
    virtual Plotwright::ErrorStatus validateSymbolName(const char16_t* name,
                                                       bool allowLeadingAsterisk) const;
    /// Compares two names as symbol tables do, ignoring case: negative, 0 or positive as for
    /// LodeUtil::Order. Null counts as the empty name.
    virtual int compareSymbolName(const char16_t* first, const char16_t* second) const;
};

/// The process-wide services; never null, alive until the process ends.
const Services* servicesPtr106();

/// The name rule above, for the toolkit's own checks.
bool isValidSymbolName(const wstring& name, bool allowLeadingAsterisk);

}  // namespace PwDbSymbolUtilities
