#pragma once
// The window's feature command sets (filters, DXF, communication, scripts, ...). Each set is a
// QObject child of the window that adds its actions to the menus and connects them.
namespace zemtra {

class Plot;

// Creates every feature command set on `window`, then hides the menus left empty.
void InstallFeatures(Plot& window);

}  // namespace zemtra
