// PwDbDgnConvertOptions: how the DGN module's DGNConvertItemEx translates a model into a drawing.
// The service library hands this record to the module by address, so its layout is fixed: 88
// bytes with the offsets asserted below.
//
//   PwDbDgnConvertOptions options;               // 1, 2, 1, "", 0, "": what the library passes
//   options.unitsMode = PwDbDgnConvertOptions::kUnitsOfResolution;
//   convert(item, &options, &drawing);
//
// Values other than those listed with each field make DGNConvertItemEx answer
// StatusInvalidInput and change nothing in the drawing.
#pragma once

#include <cstddef>
#include <cstdint>

#include <lodeqdb/lodeutil/WideString.h>

struct PwDbDgnConvertOptions {
    /// Where coordinates land: kUnitsOfResolution keeps the file's integer design units,
    /// kMasterUnits divides them by the units of resolution per master unit, kUnitsFromSettings
    /// asks the host's "DgnSetups.ini" (see docs/dgn.md).
    enum UnitsMode : int32_t {
        kUnitsOfResolution = 0,
        kMasterUnits = 1,
        kUnitsFromSettings = 2,
    };

    /// 1: each cell becomes a block definition placed by a block reference; 0: the cell's
    /// components are drawn where the cell stands, without a block.
    int32_t cellsAsBlocks = 1;
    /// One of UnitsMode.
    int32_t unitsMode = kUnitsFromSettings;
    /// 1: the file's reference attachments become DGN underlays of the drawing; 0: they are left
    /// out (and counted as skipped).
    int32_t attachmentsAsUnderlays = 1;
    /// What the name of a level's layer starts with; empty means "Level " (level 12 lands on
    /// layer "Level 12"). Must make valid layer names.
    wstring layerPrefix;
    /// The handle of the block that receives the model's elements; 0 means the model space.
    int64_t targetBlockHandle = 0;
    /// What the name of a cell's block starts with; empty means the cell's own name alone.
    wstring cellBlockPrefix;
};

static_assert(sizeof(wstring) == 32, "the record assumes libstdc++'s std::u16string");
static_assert(offsetof(PwDbDgnConvertOptions, cellsAsBlocks) == 0);
static_assert(offsetof(PwDbDgnConvertOptions, unitsMode) == 4);
static_assert(offsetof(PwDbDgnConvertOptions, attachmentsAsUnderlays) == 8);
static_assert(offsetof(PwDbDgnConvertOptions, layerPrefix) == 16);
static_assert(offsetof(PwDbDgnConvertOptions, targetBlockHandle) == 48);
static_assert(offsetof(PwDbDgnConvertOptions, cellBlockPrefix) == 56);
static_assert(sizeof(PwDbDgnConvertOptions) == 88);
