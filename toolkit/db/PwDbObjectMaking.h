// Making the object a stored record asks for: of its own class when this process has one that
// makes objects, else a proxy of the right kind. Internal to the toolkit; the readers of both
// file layouts use it, so that unknown classes become proxies in one place.
#pragma once

#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

class PwDbDatabase;
class PwDbObject;
struct PwDbObjectRecord;
class PwRxClass;

/// The class this process has for a record whose class chain is `chain` (its first, most
/// derived name); null when there is none. Ask once per chain: it looks the name up under the
/// class registry's lock.
PwRxClass* pwdbClassForChain(const std::vector<wstring>& chain);

/// A new object, in no database, for a record whose class chain is `chain`; `cls` is
/// pwdbClassForChain(chain). A proxy (entity or object, as the chain says) stands for a class
/// that is missing or doesn't make database objects; the proxy knows the chain.
PwDbObject* pwdbMakeObjectForChain(const std::vector<wstring>& chain, PwRxClass* cls);

/// The class chain a record of `object` names: its class and bases, most derived first,
/// ending with "PwDbObject"; for a proxy, the chain of the class it stands for.
std::vector<wstring> pwdbClassChainOf(const PwDbObject& object);

/// What a reader of a file learns of one class chain the file's records name: the class this
/// process has for it, and whether its records become proxies. Nothing is known until the
/// first record of the chain is made.
struct PwDbChainClass {
    PwRxClass* cls = nullptr;
    bool known = false;
    bool proxies = false;
};

/// A new object, in no database, for a record whose class chain is `chain`, as
/// pwdbMakeObjectForChain makes it; the first call for a chain looks its class up (under the
/// class registry's lock) and fills `learnt`, later ones make the object without a look-up.
PwDbObject* pwdbMakeObjectLearning(const std::vector<wstring>& chain, PwDbChainClass& learnt);

/// pwdbObjectFromRecord, the class of the record's chain learnt in `learnt` as
/// pwdbMakeObjectLearning learns it: for a reader of many records of few classes.
Plotwright::ErrorStatus pwdbObjectFromRecordLearning(const PwDbObjectRecord& record,
                                                     PwDbDatabase* database, PwDbChainClass& learnt,
                                                     PwDbObject*& object);
