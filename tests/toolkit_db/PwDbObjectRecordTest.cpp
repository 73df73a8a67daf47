// Objects to records and back, and proxies for classes the process lacks.
#include <lodeqdb/toolkit/db/PwDbObjectRecord.h>

#include <gtest/gtest.h>

#include "PwDbTestObjects.h"
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbProxyObject.h>

namespace {

using Plotwright::StatusOk;

// Records an object of `database` after building it with `fill`.
template <class T, class Fill>
PwDbObjectRecord RecordNew(PwDbDatabase& database, Fill fill) {
    auto* object = new T;
    fill(*object);
    EXPECT_EQ(database.addPwDbObject(object), StatusOk);
    PwDbObjectRecord record;
    EXPECT_EQ(pwdbRecordObject(*object, record), StatusOk);
    object->close();
    return record;
}

// The class chain of a record as another process, which lacks the most derived class, sees it.
void RenameMostDerived(PwDbObjectRecord& record, const char16_t* name) {
    record.classChain.front() = name;
}

TEST(PwDbObjectRecord, RecordsClassChainHandleAndData) {
    PwDbDatabase database;
    const PwDbObjectRecord record = RecordNew<PwTestLinkedNote>(database, [&](PwTestLinkedNote& n) {
        n.text = u"A";
        n.link = database.modelSpaceId();
    });
    ASSERT_EQ(record.classChain.size(), 3u);
    EXPECT_EQ(record.classChain[0], u"PwTestLinkedNote");
    EXPECT_EQ(record.classChain[1], u"PwTestNote");
    EXPECT_EQ(record.classChain[2], u"PwDbObject");
    EXPECT_NE(record.handle, 0u);
    EXPECT_FALSE(record.data.empty());
}

TEST(PwDbObjectRecord, KnownClassComesBackAsItself) {
    PwDbDatabase source;
    const PwDbObjectRecord record = RecordNew<PwTestNote>(source, [](PwTestNote& n) {
        n.text = u"Rev C";
        n.number = 3;
    });
    PwDbDatabase target;
    PwDbObject* read = nullptr;
    ASSERT_EQ(pwdbObjectFromRecord(record, &target, read), StatusOk);
    auto* note = PwTestNote::cast(read);
    ASSERT_NE(note, nullptr);
    EXPECT_EQ(note->text, u"Rev C");
    EXPECT_EQ(note->number, 3);
    EXPECT_EQ(note->handle(), record.handle);
    EXPECT_TRUE(note->isWriteEnabled());
    EXPECT_FALSE(note->isModified());
    note->close();
}

TEST(PwDbObjectRecord, UnknownObjectClassBecomesAProxyThatKeepsItsData) {
    PwDbDatabase source;
    PwDbObjectRecord record = RecordNew<PwTestLinkedNote>(source, [&](PwTestLinkedNote& n) {
        n.text = u"kept";
        n.number = 42;
        n.link = source.layerZeroId();
    });
    RenameMostDerived(record, u"PwSomeoneElsesNote");
    record.classChain[1] = u"PwSomeoneElsesBase";

    PwDbDatabase target;
    PwDbObject* read = nullptr;
    ASSERT_EQ(pwdbObjectFromRecord(record, &target, read), StatusOk);
    auto* proxy = PwDbProxyObject::cast(read);
    ASSERT_NE(proxy, nullptr);
    EXPECT_EQ(wstring(proxy->proxiedClassName()), u"PwSomeoneElsesNote");
    EXPECT_FALSE(proxy->proxiedData().items().empty());
    PwDbObjectRecord written;
    ASSERT_EQ(pwdbRecordObject(*proxy, written), StatusOk);
    proxy->close();
    EXPECT_EQ(written.classChain, record.classChain);
    EXPECT_EQ(written.handle, record.handle);
    EXPECT_EQ(written.data, record.data) << "the proxy writes back exactly what it read";
}

TEST(PwDbObjectRecord, CloneOfAProxyStandsForTheSameClass) {
    PwDbDatabase source;
    PwDbObjectRecord record = RecordNew<PwTestNote>(source, [](PwTestNote& n) { n.number = 5; });
    RenameMostDerived(record, u"PwMissingNote");
    PwDbDatabase target;
    PwDbObject* read = nullptr;
    ASSERT_EQ(pwdbObjectFromRecord(record, &target, read), StatusOk);
    PwDbObject* copy = read->clone();
    read->close();
    ASSERT_NE(copy, nullptr);
    auto* proxy = PwDbProxyObject::cast(copy);
    ASSERT_NE(proxy, nullptr);
    EXPECT_EQ(wstring(proxy->proxiedClassName()), u"PwMissingNote");
    EXPECT_EQ(proxy->proxiedData().items().size(), 2u);
    pwdbReleaseObject(copy);
}

TEST(PwDbObjectRecord, UnknownEntityClassBecomesAProxyEntity) {
    PwDbDatabase source;
    PwDbObjectRecord record = RecordNew<PwDbBlockReference>(source, [&](PwDbBlockReference& r) {
        r.setLayer(source.layerZeroId());
        r.setReferencedBlock(source.paperSpaceId());
        r.setInsertionPoint(PwGePoint3d(5, 6, 7));
    });
    RenameMostDerived(record, u"PwDbSomeFutureEntity");
    PwDbDatabase target;
    PwDbObject* read = nullptr;
    ASSERT_EQ(pwdbObjectFromRecord(record, &target, read), StatusOk);
    auto* proxy = PwDbProxyEntity::cast(read);
    ASSERT_NE(proxy, nullptr);
    EXPECT_EQ(wstring(proxy->proxiedClassName()), u"PwDbSomeFutureEntity");
    EXPECT_EQ(proxy->layerId().handle(), source.layerZeroId().handle())
        << "the entity part is understood";
    PwDbObjectRecord written;
    ASSERT_EQ(pwdbRecordObject(*proxy, written), StatusOk);
    proxy->close();
    EXPECT_EQ(written.data, record.data);
}

TEST(PwDbObjectRecord, ProxyOpensAsAProxyByClassTest) {
    PwDbDatabase source;
    PwDbObjectRecord record = RecordNew<PwTestNote>(source, [](PwTestNote&) {});
    RenameMostDerived(record, u"PwMissing");
    PwDbDatabase target;
    PwDbObject* read = nullptr;
    ASSERT_EQ(pwdbObjectFromRecord(record, &target, read), StatusOk);
    const PwDbObjectId id = read->objectId();
    read->close();
    PwDbObject* opened = nullptr;
    ASSERT_EQ(pwdbOpenObject(opened, id, PwDb::OpenForRead), StatusOk);
    EXPECT_TRUE(PwRxClass::isDerivedFrom(opened->runtimeClass(), PwDbProxyObject::desc()));
    opened->close();
}

TEST(PwDbObjectRecord, BrokenRecordsAddNothing) {
    PwDbDatabase source;
    PwDbObjectRecord record = RecordNew<PwTestNote>(source, [](PwTestNote& n) { n.text = u"x"; });
    PwDbDatabase target;
    const size_t before = target.numObjects();
    PwDbObject* read = nullptr;

    PwDbObjectRecord truncated = record;
    truncated.data.pop_back();
    EXPECT_EQ(pwdbObjectFromRecord(truncated, &target, read), Plotwright::StatusFilerError);
    EXPECT_EQ(read, nullptr);

    PwDbObjectRecord extra = record;
    extra.data.push_back(int32_t{9});
    EXPECT_EQ(pwdbObjectFromRecord(extra, &target, read), Plotwright::StatusFilerError);

    PwDbObjectRecord noChain = record;
    noChain.classChain.clear();
    EXPECT_EQ(pwdbObjectFromRecord(noChain, &target, read), Plotwright::StatusFilerError);

    PwDbObjectRecord foreign = record;
    foreign.classChain = {u"Whatever"};
    EXPECT_EQ(pwdbObjectFromRecord(foreign, &target, read), Plotwright::StatusFilerError);

    EXPECT_EQ(pwdbObjectFromRecord(record, nullptr, read), Plotwright::StatusNullDatabase);
    EXPECT_EQ(target.numObjects(), before);
}

TEST(PwDbObjectRecord, TakenHandleIsRefused) {
    PwDbDatabase database;
    PwDbObjectRecord record = RecordNew<PwTestNote>(database, [](PwTestNote&) {});
    PwDbObject* read = nullptr;
    EXPECT_EQ(pwdbObjectFromRecord(record, &database, read), Plotwright::StatusDuplicateKey);
    EXPECT_EQ(read, nullptr);
}

}  // namespace
