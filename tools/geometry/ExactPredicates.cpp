#include "geometry/ExactPredicates.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <gmp.h>
#include <initializer_list>
#include <limits>

namespace quor2d_tool
{
namespace
{

constexpr double kEpsilon = std::numeric_limits<double>::epsilon() / 2;
constexpr double kOrientationBound = (3 + 16 * kEpsilon) * kEpsilon;
constexpr double kInCircleBound = (10 + 96 * kEpsilon) * kEpsilon;

// The bounds hold while no product of up to four factors leaves the normal range.
bool inFilterRange(double difference)
{
    double size = std::abs(difference);
    return size == 0.0 || (size > 1e-70 && size < 1e70);
}

// A whole number of any length.
class Whole
{
public:
    Whole() { mpz_init(z); }
    ~Whole() { mpz_clear(z); }
    Whole(const Whole&) = delete;
    Whole& operator=(const Whole&) = delete;
    mpz_t z;
};

// Doubles as whole multiples of one power of two.
class CommonScale
{
public:
    explicit CommonScale(std::initializer_list<double> values)
    {
        lowest = INT_MAX;
        for (double value : values)
            if (value != 0.0)
                lowest = std::min(lowest, exponentOf(value));
        if (lowest == INT_MAX)
            lowest = 0;
    }

    void set(Whole& result, double value) const
    {
        mpz_set_d(result.z, value == 0.0 ? 0.0 : std::scalbn(value, -exponentOf(value)));
        if (value != 0.0)
            mpz_mul_2exp(result.z, result.z, static_cast<mp_bitcnt_t>(exponentOf(value) - lowest));
    }

    int exponent() const { return lowest; }

private:
    // The value times 2 to minus this is a whole number, also where the value is denormal.
    static int exponentOf(double value) { return std::ilogb(value) - (std::numeric_limits<double>::digits - 1); }

    int lowest;
};

// The numbers that the exact computations are made of: one set per thread spares their allocation.
struct Workspace {
    Whole aDifferences[8];
    Whole product;
    Whole minor;
    Whole lift;
    Whole sum;
};

Workspace& workspace()
{
    thread_local Workspace space;
    return space;
}

// result = p * q - r * s
void cross(Whole& result, const Whole& p, const Whole& q, const Whole& r, const Whole& s)
{
    mpz_mul(result.z, p.z, q.z);
    mpz_submul(result.z, r.z, s.z);
}

// Sets the differences a - d, b - d, ... as x, y, x, y, ...
void setDifferences(Workspace& space, const CommonScale& scale, std::initializer_list<Coord> points, const Coord& d)
{
    Whole& dx = space.product;
    Whole& dy = space.sum;
    scale.set(dx, d.x);
    scale.set(dy, d.y);
    Whole* pNext = space.aDifferences;
    for (const Coord& p : points) {
        scale.set(*pNext, p.x);
        mpz_sub(pNext->z, pNext->z, dx.z);
        ++pNext;
        scale.set(*pNext, p.y);
        mpz_sub(pNext->z, pNext->z, dy.z);
        ++pNext;
    }
}

int exactOrientation(const Coord& a, const Coord& b, const Coord& c)
{
    Workspace& space = workspace();
    CommonScale scale({a.x, a.y, b.x, b.y, c.x, c.y});
    setDifferences(space, scale, {a, b}, c);
    const Whole* v = space.aDifferences;
    cross(space.minor, v[0], v[3], v[1], v[2]);
    return mpz_sgn(space.minor.z);
}

int exactInCircle(const Coord& a, const Coord& b, const Coord& c, const Coord& d)
{
    Workspace& space = workspace();
    CommonScale scale({a.x, a.y, b.x, b.y, c.x, c.y, d.x, d.y});
    setDifferences(space, scale, {a, b, c}, d);
    const Whole* v = space.aDifferences;
    mpz_set_ui(space.sum.z, 0);
    for (int i = 0; i < 3; ++i) { // lift of a point times the minor of the two others
        const Whole* p = v + 2 * i;
        const Whole* q = v + 2 * ((i + 1) % 3);
        const Whole* r = v + 2 * ((i + 2) % 3);
        mpz_mul(space.lift.z, p[0].z, p[0].z);
        mpz_addmul(space.lift.z, p[1].z, p[1].z);
        cross(space.minor, q[0], r[1], q[1], r[0]);
        mpz_addmul(space.sum.z, space.lift.z, space.minor.z);
    }
    return mpz_sgn(space.sum.z);
}

// Rounds to the nearest double; mpq_get_d cuts towards zero.
double nearestDouble(const mpq_t q)
{
    double inner = mpq_get_d(q);
    double outer = std::nextafter(inner, mpq_sgn(q) < 0 ? -HUGE_VAL : HUGE_VAL);
    if (!std::isfinite(outer))
        return inner;
    mpq_t aParts[2]; // q - inner, outer - q
    mpq_init(aParts[0]);
    mpq_init(aParts[1]);
    mpq_set_d(aParts[0], inner);
    mpq_sub(aParts[0], q, aParts[0]);
    mpq_set_d(aParts[1], outer);
    mpq_sub(aParts[1], aParts[1], q);
    mpq_abs(aParts[0], aParts[0]);
    mpq_abs(aParts[1], aParts[1]);
    bool bInner = mpq_cmp(aParts[0], aParts[1]) <= 0;
    mpq_clear(aParts[0]);
    mpq_clear(aParts[1]);
    return bInner ? inner : outer;
}

int signOf(double value)
{
    return value > 0 ? 1 : value < 0 ? -1 : 0;
}

} // namespace

int orientation(const Coord& a, const Coord& b, const Coord& c)
{
    double acx = a.x - c.x, acy = a.y - c.y;
    double bcx = b.x - c.x, bcy = b.y - c.y;
    if (inFilterRange(acx) && inFilterRange(acy) && inFilterRange(bcx) && inFilterRange(bcy)) {
        double left = acx * bcy;
        double right = acy * bcx;
        double determinant = left - right;
        if (std::abs(determinant) > kOrientationBound * (std::abs(left) + std::abs(right)))
            return signOf(determinant);
    }
    return exactOrientation(a, b, c);
}

int inCircle(const Coord& a, const Coord& b, const Coord& c, const Coord& d)
{
    double adx = a.x - d.x, ady = a.y - d.y;
    double bdx = b.x - d.x, bdy = b.y - d.y;
    double cdx = c.x - d.x, cdy = c.y - d.y;
    bool bInRange = true;
    for (double difference : {adx, ady, bdx, bdy, cdx, cdy})
        bInRange &= inFilterRange(difference);
    if (bInRange) {
        double aLift = adx * adx + ady * ady;
        double bLift = bdx * bdx + bdy * bdy;
        double cLift = cdx * cdx + cdy * cdy;
        double determinant =
            aLift * (bdx * cdy - cdx * bdy) + bLift * (cdx * ady - adx * cdy) + cLift * (adx * bdy - bdx * ady);
        double size = aLift * (std::abs(bdx * cdy) + std::abs(cdx * bdy)) +
                      bLift * (std::abs(cdx * ady) + std::abs(adx * cdy)) +
                      cLift * (std::abs(adx * bdy) + std::abs(bdx * ady));
        if (std::abs(determinant) > kInCircleBound * size)
            return signOf(determinant);
    }
    return exactInCircle(a, b, c, d);
}

Coord lineCrossing(const Coord& a, const Coord& b, const Coord& c, const Coord& d)
{
    // a + t * (b - a) with t = ((c - a) x (d - c)) / ((b - a) x (d - c)); all differences are taken from a.
    Workspace& space = workspace();
    CommonScale scale({a.x, a.y, b.x, b.y, c.x, c.y, d.x, d.y});
    setDifferences(space, scale, {b, c, d}, a);
    const Whole* v = space.aDifferences; // b, c, d relative to a
    Whole& dcx = space.aDifferences[6];
    Whole& dcy = space.aDifferences[7];
    mpz_sub(dcx.z, v[4].z, v[2].z);
    mpz_sub(dcy.z, v[5].z, v[3].z);
    cross(space.lift, v[2], dcy, v[3], dcx);  // numerator of t
    cross(space.minor, v[0], dcy, v[1], dcx); // denominator of t

    double aResult[2];
    mpq_t q;
    mpq_init(q);
    for (int axis = 0; axis < 2; ++axis) {
        scale.set(space.product, axis == 0 ? a.x : a.y);
        mpz_mul(mpq_numref(q), space.product.z, space.minor.z);
        mpz_addmul(mpq_numref(q), space.lift.z, v[axis].z);
        mpz_set(mpq_denref(q), space.minor.z);
        mpq_canonicalize(q);
        if (scale.exponent() >= 0)
            mpq_mul_2exp(q, q, static_cast<mp_bitcnt_t>(scale.exponent()));
        else
            mpq_div_2exp(q, q, static_cast<mp_bitcnt_t>(-scale.exponent()));
        aResult[axis] = nearestDouble(q);
    }
    mpq_clear(q);
    return {aResult[0], aResult[1]};
}

} // namespace quor2d_tool
