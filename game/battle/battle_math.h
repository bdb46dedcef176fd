#pragma once
// Directions and distances on the sea, computed with the basic operations and the square root alone, so that
// every machine gets the same.

#include "battle/battle_unit.h"

inline constexpr double FULL_TURN = 360;

/// The direction of a heading in degrees as a step of 1 metre.
SeaPoint DirectionOf(double heading);
/// Heading from one place to another, degrees from 0 to below 360; 0 for the same place.
double BearingOf(SeaPoint from, SeaPoint to);
double DistanceOf(SeaPoint a, SeaPoint b);
double SquareOf(SeaPoint a, SeaPoint b); ///< of the distance
/// The same heading from 0 to below 360.
double NormalHeading(double heading);
/// From one heading to the other the shorter way: above -180 to 180 degrees, to the right is positive.
double TurnBetween(double from, double to);
SeaPoint Ahead(SeaPoint place, double heading, double metres);
