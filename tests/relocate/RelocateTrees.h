// Trees of drawings for the repath and pack tests, written with the toolkit's authoring
// interface, and the nested walk's answer about them by relative names.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDb.h>

namespace lodeqdbtest {

/// What one drawing stores: (key or block name, stored path) for each kind.
struct DrawingDesign {
    std::vector<std::pair<wstring, wstring>> references;
    std::vector<std::pair<wstring, wstring>> images;
    std::vector<std::pair<wstring, wstring>> pdfs;
    std::vector<std::pair<wstring, wstring>> dgns;
};

/// Writes the drawing `design` at `path` (folders made), natively in `version`, or as an
/// exchange file when `path` ends in .plx. Every image and underlay is placed.
void WriteDrawing(const std::string& path, const DrawingDesign& design,
                  PwDb::PwDbPlwVersion version = PwDb::PwDbPlwVersionCurrent);

/// Writes below `base`:
///   proj/root.plw       refers to proj/sub/a.plw, to itself, and to proj/gone/nothere.plw
///                       (not there); places img/pic.png, docs/plan.pdf, survey/site.dgn
///   proj/sub/a.plw      refers to proj/sub/b.plw and lib/shared.plw
///   proj/sub/b.plw      refers to proj/sub/a.plw (a cycle)
///   lib/shared.plw      refers to nothing
///   proj/survey/site.dgn attaches terrain.dgn beside it
/// Stored paths are absolute with `absolute`, else relative to each drawing's folder.
/// Gives the drawings' paths, the root first.
std::vector<std::string> WriteProjectTree(const std::string& base, bool absolute);

/// The nested walk of `root` (design files entered): each file by its path relative to
/// `base` ('/' between names), with its reference status; a file outside `base` by its full
/// path. With `whole`, a walk that stopped early is a test failure.
std::map<std::string, int> TreeByRelativeName(const std::string& root, const std::string& base,
                                              bool whole = true);

}  // namespace lodeqdbtest
