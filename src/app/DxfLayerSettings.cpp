#include "app/DxfLayerSettings.h"

#include <array>

#include "core/NumberText.h"
#include "core/SettingsStore.h"
#include "dxf/DxfLayers.h"

namespace zemtra {

namespace {

constexpr const char* kSection = "DXF Layers";

struct NumberField {
  const char* key;
  double ConvertParams::*field;
};

// The keys follow the names of the machine configuration's [DXF OPTIONS].
constexpr std::array kNumberFields = {
    NumberField{"Z Retract", &ConvertParams::ZRetract},
    NumberField{"Z Approach", &ConvertParams::ZApproach},
    NumberField{"Z Depth", &ConvertParams::ZDepth},
    NumberField{"Plunge Feedrate", &ConvertParams::PlungeRate},
    NumberField{"Feedrate", &ConvertParams::FeedRate},
    NumberField{"Material Top", &ConvertParams::ZTop},
    NumberField{"Z Increment", &ConvertParams::ZIncrement},
};

std::string GroupKey(std::size_t index, const char* key) {
  return "Layer " + std::to_string(index + 1) + "/" + key;
}

}  // namespace

std::vector<ConvertParams> LoadSavedLayers(const SettingsStore& store,
                                           const ConvertParams& defaults) {
  std::vector<ConvertParams> layers;
  for (std::size_t k = 0;; ++k) {
    const std::string name = store.GetSetting(kSection, GroupKey(k, "Name"));
    if (name.empty()) break;
    ConvertParams layer = defaults;
    layer.LayerName = name;
    layer.Visible = -1;
    for (const NumberField& f : kNumberFields) {
      const std::string text = store.GetSetting(kSection, GroupKey(k, f.key));
      if (!text.empty()) layer.*f.field = NumericTextValue(text);
    }
    const std::string steps = store.GetSetting(kSection, GroupKey(k, "Enable Z Increment"));
    if (!steps.empty()) layer.EnableZIncrement = steps == "True" ? -1 : 0;
    layer.Header = store.GetSetting(kSection, GroupKey(k, "Layer Header"), layer.Header);
    layer.Footer = store.GetSetting(kSection, GroupKey(k, "Layer Footer"), layer.Footer);
    layers.push_back(std::move(layer));
  }
  return layers;
}

void SaveSavedLayers(SettingsStore& store, const std::vector<ConvertParams>& layers) {
  store.DeleteSetting(kSection);
  for (std::size_t k = 0; k < layers.size(); ++k) {
    const ConvertParams& layer = layers[k];
    store.SaveSetting(kSection, GroupKey(k, "Name"), layer.LayerName);
    for (const NumberField& f : kNumberFields) {
      store.SaveSetting(kSection, GroupKey(k, f.key), FormatNumberText(layer.*f.field, ""));
    }
    store.SaveSetting(kSection, GroupKey(k, "Enable Z Increment"),
                      layer.EnableZIncrement != 0 ? "True" : "False");
    store.SaveSetting(kSection, GroupKey(k, "Layer Header"), layer.Header);
    store.SaveSetting(kSection, GroupKey(k, "Layer Footer"), layer.Footer);
  }
}

void CopyLayerValues(const ConvertParams& from, ConvertParams& to) {
  ConvertParams copy = from;
  copy.LayerName = to.LayerName;
  copy.Visible = to.Visible;
  copy.FirstEntity = to.FirstEntity;
  copy.LastEntity = to.LastEntity;
  to = std::move(copy);
}

void ApplySavedLayers(const std::vector<ConvertParams>& saved, DxfLayerTable& layers) {
  for (std::int32_t i = 1; i <= layers.Count(); ++i) {
    const int k = SavedLayerIndex(saved, layers[i].LayerName);
    if (k >= 0) CopyLayerValues(saved[std::size_t(k)], layers[i]);
  }
}

int SavedLayerIndex(const std::vector<ConvertParams>& saved, const std::string& name) {
  for (std::size_t k = 0; k < saved.size(); ++k) {
    if (saved[k].LayerName == name) return static_cast<int>(k);
  }
  return -1;
}

std::string ProgramLinesFromEditor(const std::string& text) {
  std::string lines;
  for (char c : text) {
    if (c == '\r') continue;
    if (c == '\n') {
      lines += "\r\n";
    } else {
      lines += c;
    }
  }
  if (!lines.empty() && !lines.ends_with("\r\n")) lines += "\r\n";
  return lines;
}

std::string EditorTextFromProgramLines(const std::string& lines) {
  std::string text;
  for (char c : lines) {
    if (c != '\r') text += c;
  }
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

}  // namespace zemtra
