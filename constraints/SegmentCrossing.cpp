#include "constraints/SegmentCrossing.h"

#include <gmp.h>

#include <cmath>
#include <limits>

namespace ZELK_QUOR2D
{

namespace
{

class Rational
{
public:
    explicit Rational(double number = 0.0)
    {
        mpq_init(value);
        mpq_set_d(value, number);
    }
    ~Rational() { mpq_clear(value); }
    Rational(const Rational& other)
    {
        mpq_init(value);
        mpq_set(value, other.value);
    }
    Rational& operator=(const Rational&) = delete;

    friend Rational operator+(const Rational& a, const Rational& b) { return Rational(mpq_add, a, b); }
    friend Rational operator-(const Rational& a, const Rational& b) { return Rational(mpq_sub, a, b); }
    friend Rational operator*(const Rational& a, const Rational& b) { return Rational(mpq_mul, a, b); }
    friend Rational operator/(const Rational& a, const Rational& b) { return Rational(mpq_div, a, b); }

    Rational magnitude() const
    {
        Rational result(*this);
        mpq_abs(result.value, value);
        return result;
    }
    int sign() const { return mpq_sgn(value); }
    bool operator<(const Rational& other) const { return mpq_cmp(value, other.value) < 0; }
    double truncated() const { return mpq_get_d(value); }

private:
    template <class Operation>
    Rational(Operation operation, const Rational& a, const Rational& b)
    {
        mpq_init(value);
        operation(value, a.value, b.value);
    }

    mpq_t value;
};

// Ends: the conversion cuts off less than one unit in the last place, so few steps away from zero come nearer.
double nearestDouble(const Rational& number)
{
    const double away = number.sign() < 0 ? -std::numeric_limits<double>::max() : std::numeric_limits<double>::max();
    double nearest = number.truncated();
    for (;;) {
        const double candidate = std::nextafter(nearest, away);
        if (candidate == nearest ||
            !((number - Rational(candidate)).magnitude() < (number - Rational(nearest)).magnitude()))
            return nearest;
        nearest = candidate;
    }
}

} // namespace

Point2 crossingPoint(const Point2& a, const Point2& b, const Point2& c, const Point2& d)
{
    const Rational ax(a.x()), ay(a.y()), cx(c.x()), cy(c.y());
    const Rational abx = Rational(b.x()) - ax, aby = Rational(b.y()) - ay;
    const Rational cdx = Rational(d.x()) - cx, cdy = Rational(d.y()) - cy;
    const Rational t = ((cx - ax) * cdy - (cy - ay) * cdx) / (abx * cdy - aby * cdx);
    return Point2(nearestDouble(ax + t * abx), nearestDouble(ay + t * aby));
}

} // namespace ZELK_QUOR2D
