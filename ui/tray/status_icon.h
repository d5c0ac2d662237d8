#pragma once

#include <QIcon>

namespace chimewerk {

/// The program's icon for a tray: a speaker, drawn anew for each size and scale, that stands out from light
/// and dark panels.
QIcon makeStatusIcon();

}  // namespace chimewerk
