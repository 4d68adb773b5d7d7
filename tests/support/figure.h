// SPDX-License-Identifier: MIT
#pragma once

#include "support/ratio.h"

#include <string>

namespace raincast {

/// What a figure is held against its aim by.
enum class AimOf {
    nothing,    ///< there is no aim
    ratio,      ///< own / peer
    own,        ///< what we take ourselves
    difference, ///< what we take more than the peer
};

enum class Better { lower, higher };

/// What was measured, beside a peer in the same run: a row of docs/performance.md.
struct Figure {
    std::string what; ///< names the row: no other figure has the same, and it stays from run to run
    std::string unit; ///< of `own` and `peer`: "ms", "µs", "%", "MiB", "a second"
    double own = 0;
    std::string peerName{}; ///< empty: nothing stands beside it
    double peer = 0;
    double ratio = 0; ///< own / peer, pair by pair where they were measured in pairs
    AimOf aimOf = AimOf::nothing;
    double aim = 0; ///< the most, or with Better::higher the least
    Better better = Better::lower;

    /// Of pairs, in milliseconds. Without an aim unless one is given.
    [[nodiscard]] static Figure
    of(const Ratio& ratio, const std::string& what, const std::string& peerName);
    /// Of single measurements.
    [[nodiscard]] static Figure
    of(double own, double peer, const std::string& unit, const std::string& what,
       const std::string& peerName);

    [[nodiscard]] Figure withAim(AimOf of, double value) const;
};

/// A place on a growth curve.
struct CurvePoint {
    std::string curve; ///< names the picture
    std::string axis;  ///< what grows, such as "marks in view"
    double x = 0;
    std::string unit; ///< of `own` and `peer`
    double own = 0;
    std::string peerName{}; ///< empty: nothing stands beside it
    double peer = 0;
};

/// Prints a line for people. Where the environment has RAINCAST_FIGURES, it also appends a line to
/// the file of that name, of words with tabs between them (scripts/performance.py reads it):
///
///     figure what unit own peerName peer ratio aimOf aim better
///     point curve axis x unit own peerName peer
void print(const Figure& figure);
void print(const CurvePoint& point);

} // namespace raincast
