// The request record of an update: its special members work field by field, and a moved-from
// record is empty.
#include <lodeqdb/revisionblock/UpdateContext.h>

#include <gtest/gtest.h>

#include <utility>

namespace {

using RevisionBlock::UpdateContext;

UpdateContext Sample() {
    UpdateContext context;
    context.rows = {{{u"REV", u"A"}}, {{u"REV", u"B"}, {u"BY", u"JM"}}};
    context.keyColumns = {u"REV"};
    context.columns = {u"REV", u"BY"};
    return context;
}

bool Same(const UpdateContext& a, const UpdateContext& b) {
    return a.rows == b.rows && a.keyColumns == b.keyColumns && a.columns == b.columns;
}

bool Empty(const UpdateContext& context) {
    return context.rows.empty() && context.keyColumns.empty() && context.columns.empty();
}

TEST(UpdateContext, ANewRecordIsEmpty) {
    EXPECT_TRUE(Empty(UpdateContext()));
}

TEST(UpdateContext, CopiesAreEqualAndIndependent) {
    const UpdateContext original = Sample();
    UpdateContext copy(original);
    EXPECT_TRUE(Same(copy, original));
    copy.rows.pop_back();
    copy.columns.clear();
    EXPECT_TRUE(Same(original, Sample()));
    UpdateContext assigned;
    assigned = original;
    EXPECT_TRUE(Same(assigned, original));
}

TEST(UpdateContext, AMovedFromRecordHasThreeEmptyVectors) {
    UpdateContext source = Sample();
    UpdateContext moved(std::move(source));
    EXPECT_TRUE(Same(moved, Sample()));
    EXPECT_TRUE(Empty(source));
    UpdateContext other = Sample();
    UpdateContext target;
    target = std::move(other);
    EXPECT_TRUE(Same(target, Sample()));
    EXPECT_TRUE(Empty(other));
}

TEST(UpdateContext, AssigningARecordToItselfChangesNothing) {
    UpdateContext context = Sample();
    UpdateContext& same = context;
    context = same;
    EXPECT_TRUE(Same(context, Sample()));
    context = std::move(same);
    EXPECT_TRUE(Same(context, Sample()));
}

}  // namespace
