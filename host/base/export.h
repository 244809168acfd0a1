#pragma once

/// Marks what libtorva.so offers to the project's own programs and to libtorva-gui.so. Modules see none of it: they have
/// include/kdrx/ alone.
#define TORVA_API __attribute__((visibility("default")))

/// On the hidden part of a class that is exported: keeps it out of what the library offers.
#define TORVA_INTERNAL __attribute__((visibility("hidden")))
