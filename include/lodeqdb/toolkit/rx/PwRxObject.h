// The root of the toolkit's run-time class system: PwRxObject, and the macros that give a
// class its class record.
//
//   class PwMyThing : public PwRxObject {
//       PWRX_DECLARE_MEMBERS(PwMyThing);
//   };
//   PWRX_DEFINE_MEMBERS(PwMyThing, PwRxObject, u"PwMyThing");  // in one source file
//
//   if (PwMyThing* thing = PwMyThing::cast(object)) { ... }
#pragma once

class PwRxClass;

/// Every object with run-time class information. The deleting destructor is the first
/// virtual operation and runtimeClass() the second; nothing may come between them.
class PwRxObject {
  public:
    virtual ~PwRxObject();
    /// The class record of the object's most derived class.
    virtual PwRxClass* runtimeClass() const;

    /// The class record of PwRxObject itself, the root of every class tree.
    static PwRxClass* desc();
    /// `object` when it is non-null and of the root class (always), else null.
    static PwRxObject* cast(const PwRxObject* object) { return const_cast<PwRxObject*>(object); }

    /// True when the object's class is `cls` or derives from it.
    bool isKindOf(const PwRxClass* cls) const;

  protected:
    PwRxObject() = default;
    PwRxObject(const PwRxObject&) = default;
    PwRxObject& operator=(const PwRxObject&) = default;
};

/// Declares desc(), runtimeClass() and cast() inside a class derived from PwRxObject.
#define PWRX_DECLARE_MEMBERS(CLASS)                                       \
  public:                                                                 \
    static PwRxClass* desc();                                             \
    PwRxClass* runtimeClass() const override;                             \
    static CLASS* cast(const PwRxObject* object) {                        \
        return object != nullptr && object->isKindOf(CLASS::desc())       \
                   ? static_cast<CLASS*>(const_cast<PwRxObject*>(object)) \
                   : nullptr;                                             \
    }                                                                     \
                                                                          \
  private:                                                                \
    static_assert(true, "PWRX_DECLARE_MEMBERS is followed by a semicolon")

/// Defines the members of PWRX_DECLARE_MEMBERS: the class record named `NAME` (wide text)
/// with parent class `PARENT`, and `CONSTRUCTOR` (null, or a function making a new object of
/// the class). The record is registered in the class dictionary when the module that
/// defines the class is loaded, so that it can be found by name (a drawing names the
/// classes of its objects) before any object of it exists.
#define PWRX_DEFINE_MEMBERS_WITH_CONSTRUCTOR(CLASS, PARENT, NAME, CONSTRUCTOR)                 \
    PwRxClass* CLASS::desc() {                                                                 \
        static PwRxClass* const record = pwrxRegisterClass(NAME, PARENT::desc(), CONSTRUCTOR); \
        return record;                                                                         \
    }                                                                                          \
    PwRxClass* CLASS::runtimeClass() const {                                                   \
        return CLASS::desc();                                                                  \
    }                                                                                          \
    namespace {                                                                                \
    [[maybe_unused]] PwRxClass* const kRegistered##CLASS = CLASS::desc();                      \
    }                                                                                          \
    static_assert(true, "followed by a semicolon")

/// A class whose objects are made only by code that knows it (abstract classes, singletons).
#define PWRX_DEFINE_MEMBERS(CLASS, PARENT, NAME) \
    PWRX_DEFINE_MEMBERS_WITH_CONSTRUCTOR(CLASS, PARENT, NAME, nullptr)

/// A class whose objects can be made by name (PwRxClass::create), as readers of stored
/// drawings do; it needs a public default constructor.
#define PWRX_DEFINE_DYNAMIC_MEMBERS(CLASS, PARENT, NAME)      \
    PWRX_DEFINE_MEMBERS_WITH_CONSTRUCTOR(CLASS, PARENT, NAME, \
                                         []() -> PwRxObject* { return new CLASS(); })

/// Makes a new object of a class; see PwRxClass::create.
using PwRxConstructor = PwRxObject* (*)();

/// Makes and registers the class record `name` with parent `parent` and `constructor` (may be
/// null), or gives the one already registered under that name. The record lives until the
/// process ends.
PwRxClass* pwrxRegisterClass(const char16_t* name, PwRxClass* parent,
                             PwRxConstructor constructor = nullptr);
