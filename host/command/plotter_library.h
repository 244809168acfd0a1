#pragma once

#include <memory>

#include "base/result.h"
#include "command/plotter.h"

namespace torva::command {

/// Loads libtorva-gui.so from the folder of the library (or program) that this code is part of, and makes its plotter. The
/// library stays loaded until the program ends.
/// @return libraryNotLoadable
Result<std::unique_ptr<Plotter>> loadPlotter();

}  // namespace torva::command
