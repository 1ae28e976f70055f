#pragma once
// Program text from a chained range of the geometry table: a mill path at one depth, a mill path
// stepping down chain by chain, or a lathe path in X and Z.
#include <string>

#include "config/ConvertParams.h"
#include "core/GeometryTable.h"

namespace zemtra {

struct MachineConfig;

// How numbers and lines are written, and what the machine expects of arcs.
struct GCodeOptions {
  bool lathe = false;
  bool diameter = false;         // lathe X words are diameters
  bool absoluteCenters = false;  // I, J, K hold the centre itself, not centre minus start
  double joinDistance = 0.003;   // gaps up to this (X, Y) continue a cut without a retract
  std::string numberFormat = "###0.0###";
  std::string eol = "\r\n";
};

// The options of a machine configuration with the given join distance.
GCodeOptions GCodeOptionsFor(const MachineConfig& config, double joinDistance);

// Chooses the generator: lathe; mill with Z stepping when EnableZIncrement is set; else the
// simple mill one. With `moreFollows` the last retract is left out and every plunge is followed
// by a positioning line.
std::string GeometryToGCode(const GeometryTable& table, const ConvertParams& params,
                            bool moreFollows, const GCodeOptions& options);
// Every cut of FirstEntity..LastEntity at ZDepth.
std::string GeometryToMillGCode(const GeometryTable& table, const ConvertParams& params,
                                bool moreFollows, const GCodeOptions& options);
// Chain by chain (runs of equal chain numbers), each from ZTop down by |ZIncrement| to ZDepth.
std::string GeometryToMillZStepGCode(const GeometryTable& table, const ConvertParams& params,
                                     bool moreFollows, const GCodeOptions& options);
// X and Z moves without retracts or feeds.
std::string GeometryToLatheGCode(const GeometryTable& table, const ConvertParams& params,
                                 const GCodeOptions& options);

}  // namespace zemtra
