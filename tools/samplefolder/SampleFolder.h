// Large folders of drawings in the shape of a real store, for the folder index's tests and
// benchmarks and for `lodeqdb sample DIR --drawings N`.
//
//   lodeqdb::samples::SampleFolderCounts counts = lodeqdb::samples::WriteSampleFolder("/tmp/store", 10000);
//
// The shape: shared/titles/ holds three title blocks and shared/lib/ five library drawings
// (each library drawing uses a title block); then projects of up to 50 drawings each,
// proj-NNNN/, with a base plan (base.plw, using a library drawing) and sheets
// (sheets/sheet-NNN.plw), each sheet using the project's base plan, a title block and a library
// drawing. Every 10th sheet places the project's photo (images/photo.png), every 15th a PDF
// underlay (docs/notes.pdf), every 20th a DGN underlay (survey/site.dgn, which attaches
// survey/terrain.dgn); every 25th refers to a drawing that isn't there, and every 40th and the
// sheet after it refer to each other (a cycle).
#pragma once

#include <cstddef>
#include <string>

namespace lodeqdb::samples {

/// What a sample folder holds.
struct SampleFolderCounts {
    size_t drawings = 0;
    size_t images = 0;
    size_t pdfs = 0;
    size_t designFiles = 0;
    /// References to drawings that aren't there.
    size_t missingReferences = 0;
    /// Pairs of sheets that refer to each other.
    size_t cycles = 0;
};

/// Writes `drawings` drawings (at least 1) and their images, PDFs and design files into
/// `folder` (made when missing). Drawings are made with the toolkit's authoring interface.
/// Throws std::runtime_error when a file can't be written.
SampleFolderCounts WriteSampleFolder(const std::string& folder, size_t drawings);

}  // namespace lodeqdb::samples
