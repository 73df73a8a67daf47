// Plot settings and layouts: how a sheet is plotted, and the sheets (tabs) of a drawing.
//
// Defines PwDbPlotSettings and PwDbLayout.
//
//   PwDbLayout* layout = nullptr;
//   if (pwdbOpenObject(layout, layoutId, PwDb::OpenForRead) == Plotwright::StatusOk) {
//       double width = 0.0, height = 0.0;
//       layout->getPlotPaperSize(width, height);          // millimetres
//       PwDbObjectId block = layout->getBlockTableRecordId();
//       layout->close();
//   }
//
// The plot settings dictionary holds named PwDbPlotSettings; the layout dictionary holds the
// layouts, each tied to the block (model space or a paper space) whose entities it shows.
#pragma once

#include <cstdint>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDbObject.h>

/// A named set of plot settings: the paper and whether it plots the model space.
class PwDbPlotSettings : public PwDbObject {
    PWRX_DECLARE_MEMBERS(PwDbPlotSettings);

  public:
    PwDbPlotSettings();
    ~PwDbPlotSettings() override;

    /// The name (empty at first); owned by the object, valid while it stays open and
    /// unchanged. Never null.
    Plotwright::ErrorStatus getPlotSettingsName(const char16_t*& name) const;
    /// StatusInvalidInput for null (the empty name is allowed), StatusNotOpenForWrite.
    Plotwright::ErrorStatus setPlotSettingsName(const char16_t* name);

    /// The paper's width and height in millimetres, as the paper lies for plotting; 0 x 0 at
    /// first.
    Plotwright::ErrorStatus getPlotPaperSize(double& width, double& height) const;
    /// StatusInvalidInput for a negative or non-finite size (0 is allowed),
    /// StatusNotOpenForWrite.
    Plotwright::ErrorStatus setPlotPaperSize(double width, double height);

    /// True when the settings plot the model space; false at first.
    bool modelType() const { return m_modelType; }
    Plotwright::ErrorStatus setModelType(bool modelType);

    /// Name, paper width and height, model flag (after the owner).
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    wstring m_name;
    double m_paperWidth = 0.0;
    double m_paperHeight = 0.0;
    bool m_modelType = false;
};

/// A sheet of the drawing: its name, its place among the tabs and the block it shows.
class PwDbLayout : public PwDbPlotSettings {
    PWRX_DECLARE_MEMBERS(PwDbLayout);

  public:
    PwDbLayout();
    ~PwDbLayout() override;

    /// The layout's name (empty at first); owned by the layout, valid while it stays open and
    /// unchanged. Never null.
    Plotwright::ErrorStatus getLayoutName(const char16_t*& name) const;
    /// StatusInvalidKey for a name a symbol table would refuse (see PwDbSymbolUtilities.h),
    /// StatusNotOpenForWrite. The layout's key in the layout dictionary is not changed.
    Plotwright::ErrorStatus setLayoutName(const char16_t* name);

    /// The block whose entities the layout shows; null until set.
    PwDbObjectId getBlockTableRecordId() const { return m_block; }
    /// StatusNotOpenForWrite, StatusWrongDatabase for an id of another database.
    Plotwright::ErrorStatus setBlockTableRecordId(PwDbObjectId block);

    /// The layout's place among the tabs, 0 for the model layout; 0 at first. Any number: a
    /// negative one puts the tab before the model's, as some applications file their sheets.
    int getTabOrder() const { return m_tabOrder; }
    /// StatusNotOpenForWrite.
    Plotwright::ErrorStatus setTabOrder(int order);

    /// The plot settings (in the base), then layout name, block id, tab order.
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    wstring m_layoutName;
    PwDbObjectId m_block;
    int32_t m_tabOrder = 0;
};
