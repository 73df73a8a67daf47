// The layers of a drawing as plain records.
//
//   for (const lode::PlwLayerInfo& layer : LodeQDBUtil::Layer::GetPlwLayers(u"/srv/site.plw"))
//       if (layer.isFrozen) show(layer.name);
#pragma once

#include <vector>

#include <lodeqdb/lodeutil/WideString.h>

class PwDbDatabase;

namespace lode {

/// One layer, copied out of the drawing: it holds no id and nothing open.
struct PlwLayerInfo {
    /// Empty when the name can't be read.
    wstring name;
    /// Empty when the layer has none or it can't be read.
    wstring description;
    bool isHidden = false;
    bool isFrozen = false;
    bool isInUse = false;
    bool isLocked = false;
    bool isOff = false;
    bool isReconciled = false;
};

}  // namespace lode

namespace LodeQDBUtil::Layer {

/// The layers of `database` in the order of the layer table's iterator. A layer that can't be
/// opened is left out. Throws lode::PlotwrightException with the status when the layer table
/// can't be opened or walked.
std::vector<lode::PlwLayerInfo> GetPlwLayers(PwDbDatabase& database);

/// The layers of the drawing file `path` (.plw or .plx), read into a database of its own.
/// A file that can't be read throws what ThrowLodeExceptionOnFile makes of the status.
std::vector<lode::PlwLayerInfo> GetPlwLayers(const wstring& path);

}  // namespace LodeQDBUtil::Layer
