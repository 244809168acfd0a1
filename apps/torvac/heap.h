#pragma once

/// Has the heap begin with a large step, of which what a mere start does not reach lies in huge pages: a drawing's records
/// and boxes are some megabytes, and asking the system for them page by page would take a twentieth of the time of an edit.
/// What is freed stays with the program up to two such steps. Where the system has no huge pages, or little room for the
/// process, the heap grows as ever. Call it at the beginning.
void useHugePages();
