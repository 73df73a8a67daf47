// Run-time classes, the system registry and the dynamic linker.
#include <gtest/gtest.h>

#include <lodeqdb/toolkit/rx/PwRxClass.h>
#include <lodeqdb/toolkit/rx/PwRxDictionary.h>
#include <lodeqdb/toolkit/rx/PwRxDynamicLinker.h>
#include <lodeqdb/toolkit/rx/PwRxObject.h>

namespace {

class PwTestShape : public PwRxObject {
    PWRX_DECLARE_MEMBERS(PwTestShape);
};
class PwTestCircle : public PwTestShape {
    PWRX_DECLARE_MEMBERS(PwTestCircle);
};

}  // namespace

PWRX_DEFINE_MEMBERS(PwTestShape, PwRxObject, u"PwTestShape");
PWRX_DEFINE_MEMBERS(PwTestCircle, PwTestShape, u"PwTestCircle");

namespace {

TEST(PwRxClass, DerivationIncludesTheClassItself) {
    EXPECT_TRUE(PwRxClass::isDerivedFrom(PwTestCircle::desc(), PwTestCircle::desc()));
    EXPECT_TRUE(PwRxClass::isDerivedFrom(PwTestCircle::desc(), PwTestShape::desc()));
    EXPECT_TRUE(PwRxClass::isDerivedFrom(PwTestCircle::desc(), PwRxObject::desc()));
    EXPECT_FALSE(PwRxClass::isDerivedFrom(PwTestShape::desc(), PwTestCircle::desc()));
    EXPECT_FALSE(PwRxClass::isDerivedFrom(PwTestShape::desc(), PwRxDictionary::desc()));
    EXPECT_FALSE(PwRxClass::isDerivedFrom(nullptr, PwRxObject::desc()));
    EXPECT_FALSE(PwRxClass::isDerivedFrom(PwTestShape::desc(), nullptr));
    EXPECT_TRUE(PwTestCircle::desc()->isDerivedFrom(PwTestShape::desc()));
}

TEST(PwRxClass, RecordsCarryNameAndParent) {
    EXPECT_EQ(wstring(PwTestCircle::desc()->name()), u"PwTestCircle");
    EXPECT_EQ(PwTestCircle::desc()->myParent(), PwTestShape::desc());
    EXPECT_EQ(PwRxObject::desc()->myParent(), nullptr);
    EXPECT_EQ(PwTestCircle::desc(), PwTestCircle::desc());
}

TEST(PwRxClass, RegisteredClassesAreFoundByName) {
    EXPECT_EQ(pwrxFindClass(u"PwTestCircle"), PwTestCircle::desc());
    EXPECT_EQ(pwrxFindClass(u"PwRxDynamicLinker"), PwRxDynamicLinker::desc());
    EXPECT_EQ(pwrxFindClass(u"PwNoSuchClass"), nullptr);
    EXPECT_EQ(pwrxRegisterClass(u"PwTestCircle", PwRxObject::desc()), PwTestCircle::desc());
}

TEST(PwRxObject, RuntimeClassIsTheMostDerived) {
    PwTestCircle circle;
    const PwRxObject& object = circle;
    EXPECT_EQ(object.runtimeClass(), PwTestCircle::desc());
    EXPECT_TRUE(object.isKindOf(PwTestShape::desc()));
    EXPECT_EQ(PwTestShape::cast(&object), &circle);
    EXPECT_EQ(PwRxDictionary::cast(&object), nullptr);
    EXPECT_EQ(PwTestShape::cast(nullptr), nullptr);
}

TEST(PwRxDictionary, PutGetReplaceRemove) {
    PwRxDictionary dictionary;
    PwTestShape first;
    PwTestShape second;
    EXPECT_EQ(dictionary.atPut(u"a", &first), nullptr);
    EXPECT_EQ(dictionary.at(u"a"), &first);
    EXPECT_EQ(dictionary.atPut(u"a", &second), &first);
    EXPECT_EQ(dictionary.putIfAbsent(u"a", &first), &second);
    EXPECT_EQ(dictionary.numEntries(), 1u);
    EXPECT_EQ(dictionary.remove(u"a"), &second);
    EXPECT_FALSE(dictionary.has(u"a"));
    EXPECT_EQ(dictionary.at(nullptr), nullptr);
    EXPECT_EQ(dictionary.atPut(nullptr, &first), nullptr);
    EXPECT_EQ(dictionary.remove(u"missing"), nullptr);
}

TEST(PwRxDictionary, KeysAreCaseSensitive) {
    PwRxDictionary dictionary;
    PwTestShape shape;
    dictionary.atPut(u"Key", &shape);
    EXPECT_EQ(dictionary.at(u"key"), nullptr);
}

TEST(SystemRegistry, HoldsTheDynamicLinkerAndClassDictionary) {
    PwRxObject* entry = pwrxSysRegistry()->at(u"DynamicLinker");
    ASSERT_NE(entry, nullptr);
    EXPECT_TRUE(PwRxClass::isDerivedFrom(entry->runtimeClass(), PwRxDynamicLinker::desc()));
    EXPECT_EQ(pwrxSysRegistry()->at(u"ClassDictionary"), pwrxClassDictionary());
    EXPECT_EQ(pwrxSysRegistry(), pwrxSysRegistry());
}

TEST(PwRxDynamicLinker, HostSetsTheProductLocale) {
    auto* linker = PwRxDynamicLinker::cast(pwrxSysRegistry()->at(u"DynamicLinker"));
    ASSERT_NE(linker, nullptr);
    const PwLocale before = linker->productLocale();
    linker->setProductLocale(PwLocale::fromTag(u"de-DE"));
    EXPECT_EQ(static_cast<int>(linker->productLocale()), 1031);
    linker->setProductLocale(before);
    EXPECT_EQ(linker->productLocale(), before);
}

TEST(PwRxDynamicLinker, DefaultsToTheProcessLocale) {
    PwRxDynamicLinker fresh;
    EXPECT_EQ(fresh.productLocale(), PwLocale());
}

}  // namespace

// Defined in this file but never used by name anywhere: registration must not wait for a
// first use.
class PwTestUntouched : public PwRxObject {
    PWRX_DECLARE_MEMBERS(PwTestUntouched);
};

PWRX_DEFINE_MEMBERS(PwTestUntouched, PwRxObject, u"PwTestUntouched");

namespace {

TEST(PwRxClass, ClassesAreRegisteredWhenTheirModuleLoads) {
    PwRxClass* found = pwrxFindClass(u"PwTestUntouched");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->myParent(), PwRxObject::desc());
}

}  // namespace
