// The archive's layout: below the deepest folder near the root, others below `_outside/`.
#include "relocate/ArchiveLayout.h"

#include <gtest/gtest.h>

namespace {

using LodeQDBRelocate::detail::LayOutArchive;
using LodeQDBRelocate::detail::PlaceBelowBase;

TEST(ArchiveLayout, FilesKeepTheirPlaceBelowTheDeepestCommonFolder) {
    const auto layout = LayOutArchive(
        {u"/home/u/proj/site.plw", u"/home/u/proj/floors/a.plw", u"/home/u/lib/title.plw"});
    EXPECT_EQ(layout.base, u"/home/u");
    EXPECT_EQ(layout.paths,
              (std::vector<wstring>{u"proj/site.plw", u"proj/floors/a.plw", u"lib/title.plw"}));
    EXPECT_EQ(PlaceBelowBase(layout, u"/home/u/proj/gone.plw"), u"proj/gone.plw");
    EXPECT_EQ(PlaceBelowBase(layout, u"/srv/gone.plw"), u"");
}

TEST(ArchiveLayout, FilesFarFromTheRootGoBelowAFolderOfTheirOwn) {
    const auto layout = LayOutArchive(
        {u"/home/u/proj/site.plw", u"/srv/share/logo.png", u"/home/u/proj/a.plw"});
    EXPECT_EQ(layout.base, u"/home/u/proj");
    EXPECT_EQ(layout.paths, (std::vector<wstring>{u"site.plw", u"_outside/srv/share/logo.png",
                                                  u"a.plw"}));
}

TEST(ArchiveLayout, NamesThatWouldClashAreRefused) {
    EXPECT_THROW(LayOutArchive({u"/p/site.plw", u"/p/manifest.json"}), std::runtime_error);
    EXPECT_THROW(LayOutArchive({u"/p/site.plw", u"/p/_outside/q/x.png", u"/q/x.png"}),
                 std::runtime_error);
}

}  // namespace
