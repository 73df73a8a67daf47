// PwDbText: one line of text placed in a drawing.
//
//   auto* title = new PwDbText;
//   title->setPosition(PwGePoint3d(300, 20, 0));
//   title->setHeight(5.0);                       // drawing units, above 0
//   title->setRotation(0.0);                     // radians
//   if (title->setTextString(u"Ground floor plan") != Plotwright::StatusOk) { ... }
//
//   PwString copy;
//   title->textString(copy);                     // a copy that outlives the open
#pragma once

#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

class PwDbText : public PwDbEntity {
    PWRX_DECLARE_MEMBERS(PwDbText);

  public:
    /// Empty text of height 1 at the origin, unrotated.
    PwDbText();
    ~PwDbText() override;

    /// The insertion point of the text's baseline.
    PwGePoint3d position() const { return m_position; }
    /// StatusInvalidInput for a point with a non-finite coordinate.
    Plotwright::ErrorStatus setPosition(const PwGePoint3d& point);
    /// The height of capitals in drawing units; always above 0.
    double height() const { return m_height; }
    /// StatusInvalidInput unless `height` is finite and above 0.
    Plotwright::ErrorStatus setHeight(double height);
    /// The baseline's angle from the X axis, in radians, exactly as set.
    double rotation() const { return m_rotation; }
    /// StatusInvalidInput for a non-finite angle.
    Plotwright::ErrorStatus setRotation(double radians);

    /// The text, owned by the entity: never null, valid until the text changes or the entity
    /// is closed.
    const char16_t* textString() const { return m_text.kwszPtr(); }
    /// Copies the text into `text`; on failure (StatusOutOfMemory) `text` keeps its value.
    Plotwright::ErrorStatus textString(PwString& text) const;
    /// Copies the zero-terminated `text`; StatusInvalidInput for null (the empty text u"" is
    /// allowed), StatusOutOfMemory when the copy can't be made. On failure the text stays.
    Plotwright::ErrorStatus setTextString(const char16_t* text);

    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    PwGePoint3d m_position;
    double m_height = 1.0;
    double m_rotation = 0.0;
    PwString m_text;
};
