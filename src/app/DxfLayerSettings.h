#pragma once
// Saved layer settings of the layer manager: section "DXF Layers" of the user's settings, one
// group "Layer N" per saved layer (N from 1, in list order) holding the layer's name and its
// conversion values. A layer of a loaded drawing with the same name takes these values.
#include <string>
#include <vector>

#include "config/ConvertParams.h"

namespace zemtra {

class SettingsStore;
class DxfLayerTable;

// The saved layers in list order; values that cannot be read keep those of `defaults`.
std::vector<ConvertParams> LoadSavedLayers(const SettingsStore& store,
                                           const ConvertParams& defaults);
// Replaces the whole section by `layers`.
void SaveSavedLayers(SettingsStore& store, const std::vector<ConvertParams>& layers);

// Copies the conversion values (heights, feeds, depth steps, header, footer) of `from` into
// `to`; the name, visibility and entity range of `to` stay.
void CopyLayerValues(const ConvertParams& from, ConvertParams& to);
// Gives each layer of `layers` the values of the saved layer of the same name.
void ApplySavedLayers(const std::vector<ConvertParams>& saved, DxfLayerTable& layers);
// Index in `saved` of the layer named `name`, or -1.
int SavedLayerIndex(const std::vector<ConvertParams>& saved, const std::string& name);

// Header and footer texts: CR LF terminated lines in the layer record, "\n" between lines in
// an edit box.
std::string ProgramLinesFromEditor(const std::string& text);
std::string EditorTextFromProgramLines(const std::string& lines);

}  // namespace zemtra
