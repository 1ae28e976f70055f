#pragma once
// The user's settings that change a plot, read from the settings store.
#include "interp/Interpreter.h"
#include "interp/PlotDriver.h"

namespace zemtra {

class SettingsStore;

// Reads "Stop On M00", "Warning Reset", the three warning switches and "Display Precision"
// (the number format of messages) of section "Preferences", and "Ignore M98" / "Ignore G65" of
// section "Subprograms". A value that cannot be read leaves the field as it was.
void LoadPlotPreferences(const SettingsStore& settings, InterpreterOptions& options,
                         PlotWarnings& warnings);

}  // namespace zemtra
