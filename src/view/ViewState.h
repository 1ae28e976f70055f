#pragma once
// The view state of the viewport and its arithmetic: which view is shown, the isometric angles,
// the picture's logical scale (view units of its top-left corner and its extent), the forward
// projection and its partial inverse, and the zoom, pan and rotate steps. Nothing here draws;
// the Viewport repaints after the steps that need it.
//
// Units: machine units for points; "view units" for the scale and for raw picture coordinates
// (y grows downward); pixels only where a name says so. Angles in degrees.
#include <cstdint>
#include <string>
#include <string_view>

#include "core/GeoTypes.h"
#include "view/Surface.h"
#include "view/ViewProjector.h"
#include "view/Views.h"

namespace zemtra {

class ViewState {
 public:
  ViewState();

  // --- The view ---
  std::int16_t CurrentView = kViewTop;
  double ViewAngle = 30;  // about the vertical of the isometric view
  double TipAngle = 30;   // tilt of the isometric view
  double ViewCosV = 0, ViewSinV = 0, ViewSinT = 0, ViewCosT = 0;
  bool LockVertRotate = false;
  std::int16_t TopViewOrientation = 0;  // quarter turns of the top view, 0 to 3
  float ZoomFactor = 1.2f;

  // --- What the projection reads of the part and the machine ---
  GeoPoint PartMin, PartMax;  // extents of the geometry
  double IsoZReference = 0;   // Z that stays put when the isometric view tilts
  std::uint8_t RotaryPlane = 18;
  float RotaryCenterX = 0, RotaryCenterY = 0, RotaryCenterZ = 0;

  // --- The picture's scale and its consequences ---
  float ScaleLeft = -10, ScaleTop = -10, ScaleWidth = 20, ScaleHeight = 20;
  int PixelWidth = 400, PixelHeight = 400;  // physical size of the picture, at least 1
  double UnitsPerPixel = 0.05;
  float ViewCenterX = 0, ViewCenterY = 0;

  // Sets ViewAngle / TipAngle and their cosine and sine.
  void SetViewAngle(double degrees);
  void SetTipAngle(double degrees);

  bool IsIso() const { return IsIsoView(CurrentView); }
  std::string_view PlaneName() const { return ViewInfoOf(CurrentView).PlaneName; }
  std::string_view Title() const { return ViewInfoOf(CurrentView).Title; }

  // --- Projection ---
  // A snapshot of what ProjectPoint reads; projecting through it gives the same results.
  ViewProjector Projector() const;
  // Machine point to view units. An unknown view leaves u and v as they were.
  void ProjectPoint(const GeoPoint& point, float& u, float& v) const;
  // The plane inverse of the isometric views: view units to X and Y at IsoZReference.
  void UnprojectIso(double u, double v, float& x, float& y) const;
  // A raw picture coordinate to the display frame (the status bar's and panning's pair):
  // undoes the reflections of the flat views, or UnprojectIso in the isometric views.
  void MouseToDisplay(double mx, double my, float& fx, float& fy) const;
  // View units to pixels of the picture and back.
  PixelPoint ToPixel(double u, double v) const;
  void PixelToView(double px, double py, double& u, double& v) const;

  // --- Scale ---
  // New physical size; keeps the middle of the picture and the units per pixel.
  void Resize(int pixelWidth, int pixelHeight);
  // Fits the rectangle (x, y, w, h) of view units into the picture, keeping pixels square.
  // Nothing happens when w and h are both 0; one zero side counts as 0.001.
  void SetViewport(double x, double y, double w, double h);
  // Scrolls so that view point (x, y) is the middle, keeping the scale. False, with nothing
  // changed, when the new left or top would leave -65535 <= value < 65535.
  bool CenterView(double x, double y);
  // Recomputes ViewCenterX, ViewCenterY and UnitsPerPixel from the scale.
  void UpdateViewMetrics();
  // Factor above 1 enlarges the picture, about its middle, within the limits that follow from
  // the part's size (at most 20 times its diagonal, at most 16383; at least a fiftieth of it,
  // at least 0.02). False, with the scale unchanged, when the arithmetic fails.
  bool ZoomBy(double factor);
  // Two opposite corners in raw picture coordinates become the picture. Nothing happens when
  // the corners coincide.
  void ZoomWindow(double x1, double y1, double x2, double y2);
  // Extents zeroed and the default window: 20 by 20 units from (-10, -10).
  void ZoomDefault();

  // --- Dragging ---
  // Rotating the isometric view: remembers the pointer (raw picture coordinates) and angles.
  void BeginRotate(double mouseX, double mouseY);
  // One step of the rotate drag. The tilt follows only when the lock is off or Shift is held.
  void RotateTo(double mouseX, double mouseY, bool shiftHeld);
  // Panning: remembers the display-frame pair under the pointer as the anchor.
  void BeginPan(double mouseX, double mouseY);
  // One step of the pan drag; false when the pan would leave the allowed range.
  bool PanTo(double mouseX, double mouseY);

  // The status bar's position text under the pointer, such as "X1.5, Y-2.25", numbers in
  // `numberFormat`; with `diameter` the second coordinate of the lathe views is doubled.
  std::string PositionText(double mouseX, double mouseY, std::string_view numberFormat,
                           bool diameter) const;

 private:
  // Stores the four scale values (already narrowed) and updates the metrics.
  void SetScale(float left, float top, float width, float height);

  double rotateStartX_ = 0, rotateStartY_ = 0;
  double rotateStartView_ = 0, rotateStartTip_ = 0;
  float panAnchorX_ = 0, panAnchorY_ = 0;
};

// An angle in degrees brought into [0, 360) by the truncated quotient.
double ReduceDegrees(double degrees);

}  // namespace zemtra
