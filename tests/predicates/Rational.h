#pragma once

#include "Point2.h"
#include "predicates/PredicateTest.h"

#include <gmp.h>

// The answers by rational arithmetic, from other formulas than the library uses: determinants of the coordinates
// themselves, without differences.

namespace oracle
{

using ZELK_QUOR2D::Point2;

class Rational
{
public:
    Rational(double value = 0.0)
    {
        mpq_init(q);
        mpq_set_d(q, value);
    }
    Rational(const Rational& other)
    {
        mpq_init(q);
        mpq_set(q, other.q);
    }
    Rational& operator=(const Rational& other)
    {
        mpq_set(q, other.q);
        return *this;
    }
    ~Rational() { mpq_clear(q); }

    friend Rational operator+(const Rational& a, const Rational& b) { return apply(mpq_add, a, b); }
    friend Rational operator-(const Rational& a, const Rational& b) { return apply(mpq_sub, a, b); }
    friend Rational operator*(const Rational& a, const Rational& b) { return apply(mpq_mul, a, b); }
    friend bool operator==(const Rational& a, const Rational& b) { return mpq_equal(a.q, b.q) != 0; }
    friend bool operator<(const Rational& a, const Rational& b) { return mpq_cmp(a.q, b.q) < 0; }
    friend bool operator<=(const Rational& a, const Rational& b) { return mpq_cmp(a.q, b.q) <= 0; }
    int sign() const { return mpq_sgn(q); }

private:
    template <class Operation>
    static Rational apply(Operation operation, const Rational& a, const Rational& b)
    {
        Rational result;
        operation(result.q, a.q, b.q);
        return result;
    }

    mpq_t q;
};

inline Rational orientationDeterminant(const Point2& a, const Point2& b, const Point2& c)
{
    const Rational ax(a.x()), ay(a.y()), bx(b.x()), by(b.y()), cx(c.x()), cy(c.y());
    return ax * by - ay * bx + bx * cy - by * cx + cx * ay - cy * ax;
}

inline int codeOf(int sign)
{
    return sign > 0 ? ZELK_QUOR2D::ORI2_POSITIVE : sign < 0 ? ZELK_QUOR2D::ORI2_NEGATIVE : ZELK_QUOR2D::ORI2_ZERO;
}

inline int orientation(const Point2& a, const Point2& b, const Point2& c)
{
    return codeOf(orientationDeterminant(a, b, c).sign());
}

inline Rational squaredNorm(const Point2& p)
{
    return Rational(p.x()) * Rational(p.x()) + Rational(p.y()) * Rational(p.y());
}

// The 4x4 determinant with rows (x, y, x^2 + y^2, 1), along the third column.
inline int inCircle(const Point2& a, const Point2& b, const Point2& c, const Point2& d)
{
    const Rational det =
        squaredNorm(a) * orientationDeterminant(b, c, d) - squaredNorm(b) * orientationDeterminant(a, c, d) +
        squaredNorm(c) * orientationDeterminant(a, b, d) - squaredNorm(d) * orientationDeterminant(a, b, c);
    return codeOf(det.sign());
}

inline int opposite(int code)
{
    return code == ZELK_QUOR2D::ORI2_ZERO       ? ZELK_QUOR2D::ORI2_ZERO
           : code == ZELK_QUOR2D::ORI2_POSITIVE ? ZELK_QUOR2D::ORI2_NEGATIVE
                                                : ZELK_QUOR2D::ORI2_POSITIVE;
}

} // namespace oracle
