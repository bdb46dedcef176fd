#include "battle/battle_math.h"

#include <cmath>

namespace
{

constexpr double HALF_TURN = 180;
constexpr double RIGHT_ANGLE = 90;
constexpr double RADIANS = 3.14159265358979323846 / HALF_TURN;

// For 0 to 90 degrees.
double SineOf(double degrees)
{
    const double x = degrees * RADIANS;
    const double q = x * x;
    return x * (1 - q / 6 * (1 - q / 20 * (1 - q / 42 * (1 - q / 72 * (1 - q / 110)))));
}

// Degrees for 0 to 1; off by less than a thousandth of a degree.
double ArcTangentOf(double t)
{
    const double q = t * t;
    return t * (0.9998660 + q * (-0.3302995 + q * (0.1801410 + q * (-0.0851330 + q * 0.0208351)))) / RADIANS;
}

} // namespace

SeaPoint DirectionOf(double heading)
{
    const double turned = NormalHeading(heading);
    const int quadrant = static_cast<int>(turned / RIGHT_ANGLE);
    const double rest = turned - quadrant * RIGHT_ANGLE;
    const double sine = SineOf(rest);
    const double cosine = SineOf(RIGHT_ANGLE - rest);
    switch (quadrant) {
    case 0:
        return {sine, cosine};
    case 1:
        return {cosine, -sine};
    case 2:
        return {-sine, -cosine};
    default:
        return {-cosine, sine};
    }
}

double BearingOf(SeaPoint from, SeaPoint to)
{
    const double x = to.x - from.x;
    const double y = to.y - from.y;
    const double east = std::fabs(x);
    const double north = std::fabs(y);
    if (east == 0 && north == 0)
        return 0;
    const double angle =
        east <= north ? ArcTangentOf(east / north) : RIGHT_ANGLE - ArcTangentOf(north / east);
    const double half = y >= 0 ? angle : HALF_TURN - angle;
    return NormalHeading(x >= 0 ? half : -half);
}

double SquareOf(SeaPoint a, SeaPoint b)
{
    return (a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y);
}

double DistanceOf(SeaPoint a, SeaPoint b)
{
    return std::sqrt(SquareOf(a, b));
}

double NormalHeading(double heading)
{
    const double turned = heading - std::floor(heading / FULL_TURN) * FULL_TURN;
    return turned >= FULL_TURN || turned < 0 ? 0 : turned;
}

double TurnBetween(double from, double to)
{
    const double turn = NormalHeading(to - from);
    return turn > HALF_TURN ? turn - FULL_TURN : turn;
}

SeaPoint Ahead(SeaPoint place, double heading, double metres)
{
    const SeaPoint direction = DirectionOf(heading);
    return {place.x + direction.x * metres, place.y + direction.y * metres};
}
