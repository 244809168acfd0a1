#pragma once

#include <string>

#include "base/result.h"
#include "draw/display_list.h"
#include "view/view.h"

namespace torva::command {

enum class PlotFormat { svg, png, pdf };

/// Paints display lists as pictures. Implemented by libtorva-gui.so, which is loaded when something is first plotted, so
/// that the host's core needs no Qt.
class Plotter {
 public:
  virtual ~Plotter() = default;
  /// The bytes of a picture file of what the view shows, as large as its viewport, on white paper.
  /// @return invalidValue when a picture of this size cannot be painted
  virtual Result<std::string> plot(const draw::DisplayList& list, const view::View& view, PlotFormat format) = 0;
};

/// The function that libtorva-gui.so exports under the name "torvaCreatePlotter"; the caller owns the result.
using CreatePlotter = Plotter* (*)();

}  // namespace torva::command
