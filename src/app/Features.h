#pragma once
// The window's feature command sets (filters, DXF, communication, scripts, ...). Each set is a
// QObject child of the window that adds its actions to the menus and connects them.
#include <vector>

class QObject;

namespace zemtra {

class Plot;

// Creates every feature command set on `window`, then hides the menus left empty. Returns the
// sets in the order made; the window deletes them, last first, while its engine still lives.
std::vector<QObject*> InstallFeatures(Plot& window);

}  // namespace zemtra
