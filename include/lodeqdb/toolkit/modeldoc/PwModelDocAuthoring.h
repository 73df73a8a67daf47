// Authoring model document references: views of model documents, and a product drawing file
// carried inside the drawing.
//
//   PwDbAuthoring::addModelDocView(drawing, u"Front", PwModelDocKeys::kGearmarkProduct,
//                                  u"parts\\gear.gmd");
//   PwDbAuthoring::embedModelDocFile(drawing, u"gear.gmd", bytes);
#pragma once

#include <string>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

class PwDbDatabase;

namespace PwDbAuthoring {

/// Files a view `name` of the model document `documentPath` made by `product` in the
/// drawing's views dictionary, which is made when missing. StatusDuplicateKey when a view has
/// that name, StatusInvalidKey for an empty name.
Plotwright::ErrorStatus addModelDocView(PwDbDatabase& drawing, const wstring& name,
                                        const wstring& product, const wstring& documentPath,
                                        PwDbObjectId* id = nullptr);

/// Makes `bytes` the drawing file that the drawing carries, under the plain file name
/// `fileName`, replacing one carried before. StatusInvalidInput for a name with a folder part
/// (see PwDbModelDocPackage::isPlainFileName) or bytes above PwDbModelDocPackage::kMaxBytes.
Plotwright::ErrorStatus embedModelDocFile(PwDbDatabase& drawing, const wstring& fileName,
                                          std::string bytes, PwDbObjectId* id = nullptr);

}  // namespace PwDbAuthoring
