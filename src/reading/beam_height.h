// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// How high the middle of a radar beam is above the antenna, in metres, at a distance from it in
/// metres: h = ka (cos e / cos(e + s/ka) - 1), where e is the angle at which the beam leaves, s the
/// distance over the ground, a the earth's radius and k = 4/3 for the usual bending of the beam by
/// the air (Doviak and Zrnic, "Doppler Radar and Weather Observations").
[[nodiscard]] double beamHeight(double distanceMetres, double elevationDegrees);

/// The nominal angle of the lowest beam.
inline constexpr double kLowestBeamElevation = 0.5;

} // namespace raincast
