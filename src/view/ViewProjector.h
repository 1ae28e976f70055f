#pragma once
// The forward view transform as a small value: a snapshot of what the projection reads, taken
// once per repaint or per hit test, so that the per-point work is a few multiplications.
// Coordinates: machine units in, view units out (the picture's scale coordinates, y down).
#include <cmath>
#include <cstdint>

#include "core/GeoTypes.h"

namespace zemtra {

struct ViewProjector {
  std::int16_t View = 0;
  std::int16_t TopViewOrientation = 0;
  float CenterX = 0;          // ViewCenterX
  float CenterY = 0;          // ViewCenterY
  double CosV = 1, SinV = 0;  // of ViewAngle
  double SinT = 0, CosT = 1;  // of TipAngle
  double IsoZReference = 0;
  double PartMinY = 0;  // the lathe isometric view stands the part on this Y
  std::uint8_t RotaryPlane = 18;
  float RotaryCenterX = 0, RotaryCenterY = 0, RotaryCenterZ = 0;

  // The point turned by its rotary angle A about the rotary centre, each axis narrowed to a
  // 32-bit float; the point itself when A is exactly 0.
  GeoPoint RotaryCorrected(const GeoPoint& p) const {
    if (p.A == 0) return p;
    const double t = -static_cast<double>(p.A) * 0.0174532925199433;
    const double s = std::sin(t), c = std::cos(t);
    const double x = p.X, y = p.Y, z = p.Z;
    GeoPoint out = p;
    if (RotaryPlane != 19) {
      out.X = static_cast<float>((z - RotaryCenterZ) * s + RotaryCenterX + (x - RotaryCenterX) * c);
      out.Z = static_cast<float>((z - RotaryCenterZ) * c + RotaryCenterZ - (x - RotaryCenterX) * s);
    } else {
      out.Y = static_cast<float>((y - RotaryCenterY) * c + RotaryCenterY - (z - RotaryCenterZ) * s);
      out.Z = static_cast<float>((y - RotaryCenterY) * s + RotaryCenterZ + (z - RotaryCenterZ) * c);
    }
    return out;
  }

  // Projects p into (u, v). An unknown view or top view orientation leaves u and v as they were.
  void Project(const GeoPoint& point, float& u, float& v) const {
    const GeoPoint p = RotaryCorrected(point);
    double du = 0, dv = 0;
    if (ProjectCorrected(p.X, p.Y, p.Z, du, dv)) {
      u = static_cast<float>(du);
      v = static_cast<float>(dv);
    }
  }

  // The view mapping of an already corrected point, in 64 bits; false for an unknown view.
  bool ProjectCorrected(double x, double y, double z, double& u, double& v) const {
    const double cx = CenterX, cy = CenterY;
    const double twoCx = 2.0 * cx;
    const double twoCy = static_cast<float>(2.0 * cy);
    switch (View) {
      case 0:
        return TopView(x, y, twoCx, twoCy, u, v);
      case 1:
        u = twoCx - x, v = twoCy - y;
        return true;
      case 2:
      case 11:
        u = x, v = twoCy - z;
        return true;
      case 3:
      case 10:
        u = twoCx - x, v = twoCy - z;
        return true;
      case 4:
        u = y, v = twoCy - z;
        return true;
      case 5:
        u = twoCx - y, v = twoCy - z;
        return true;
      case 6: {
        const double a = x - cx, b = y - cy;
        u = a * CosV - b * SinV + cx;
        const double w = (a * SinV + b * CosV) * SinT + cy;
        v = twoCy - (w + (z - IsoZReference) * CosT);
        return true;
      }
      case 7: {
        const double a = x - cx, b = -z - cy;
        u = a * CosV - b * SinV + cx;
        const double w = (b * CosV + a * SinV) * SinT + cy;
        v = twoCy - (w + (y - PartMinY) * CosT);
        return true;
      }
      case 8:
        u = z, v = x;
        return true;
      case 9:
        u = z, v = twoCy - x;
        return true;
      default:
        return false;
    }
  }

 private:
  bool TopView(double x, double y, double twoCx, double twoCy, double& u, double& v) const {
    switch (TopViewOrientation) {
      case 0:
        u = x, v = twoCy - y;
        return true;
      case 1:
        u = twoCx - y, v = twoCy - x;
        return true;
      case 2:
        u = twoCx - x, v = y;
        return true;
      case 3:
        u = y, v = x;
        return true;
      default:
        return false;
    }
  }
};

}  // namespace zemtra
