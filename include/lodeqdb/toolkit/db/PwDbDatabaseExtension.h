// PwDbDatabaseExtension: state that a layer above the database keeps per drawing (the file a
// drawing was read from, the drawings loaded for its references), held by the database
// without the database knowing its type.
//
//   struct MyLayerState : PwDbDatabaseExtension {
//       static const PwDbExtensionSlot slot;      // its address names the slot
//       int counter = 0;
//   };
//   MyLayerState& state = pwdbExtension<MyLayerState>(database);   // made on first use
//
// Each layer defines its state types in its own files; the database only owns them and ends
// them with itself.
#pragma once

#include <memory>
#include <utility>

class PwDbDatabase;

/// The identity of one kind of extension: the address of a constant of this type that the
/// extension's layer defines once.
struct PwDbExtensionSlot {
    /// Whether the state belongs to the drawing's contents, and so is dropped with them when a
    /// file is read into the database again; otherwise it stays with the database object.
    bool followsContents = false;
};

class PwDbDatabaseExtension {
  public:
    virtual ~PwDbDatabaseExtension() = default;
};

/// The state of type `State` that `database` keeps, made empty on first use. `State` derives
/// from PwDbDatabaseExtension and has a static member `slot` of type PwDbExtensionSlot.
template <class State>
State& pwdbExtension(PwDbDatabase& database);
/// The state of type `State` of `database`; null when none was made.
template <class State>
State* pwdbFindExtension(const PwDbDatabase& database);
