// Test-only control over the toolkit's heap: makes one chosen allocation fail.
//
// Defines pwHeapFailAfter, pwHeapFailReset and pwHeapFailPending.
//
//   pwHeapFailAfter(1);                    // the next allocation succeeds, the one after fails
//   EXPECT_EQ(text.assign(longText, 40), Plotwright::StatusOutOfMemory);
//   pwHeapFailReset();
//
// Production code never calls these. While no failure is armed, pwHeapAlloc pays one relaxed
// atomic load for them.
#pragma once

/// Arms one failure: the next `allocations` calls of pwHeapAlloc succeed as usual (as far as
/// the system allows) and the one after returns null; later calls succeed again. Replaces
/// any failure armed before. A negative count disarms, like pwHeapFailReset.
/// Counts calls from every thread.
void pwHeapFailAfter(long allocations);

/// Disarms a failure armed by pwHeapFailAfter that has not happened yet.
void pwHeapFailReset();

/// True while a failure is armed and has not happened yet. A test that armed one can tell
/// from this whether the operation under test reached the heap often enough.
bool pwHeapFailPending();
