#pragma once

#include "Quor2DAssert.h"

#include <cfloat>
#include <cmath>

// Exact arithmetic on doubles (Dekker 1971, Knuth 1969, Shewchuk 1997).
//
// Everything here needs round to nearest with gradual underflow, and operands for which no product overflows and no
// product of lowest bits falls below the smallest denormal.

namespace ZELK_QUOR2D
{

static_assert(FLT_EVAL_METHOD == 0, "error-free transformations need arithmetic without excess precision");

/// An exact value `high + low` where `high` is the value rounded to a double.
struct TwoDoubles {
    double high;
    double low;
};

/// a + b for |a| >= |b|, or a = 0.
inline TwoDoubles fastTwoSum(double a, double b)
{
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

inline TwoDoubles twoSum(double a, double b)
{
    const double sum = a + b;
    const double bPart = sum - a;
    const double aPart = sum - bPart;
    return {sum, (a - aPart) + (b - bPart)};
}

inline TwoDoubles twoDiff(double a, double b)
{
    return twoSum(a, -b);
}

/// Cuts the significand into two halves whose products are exact.
inline TwoDoubles split(double a)
{
    constexpr double kSplitter = 134217729.0; // 2^27 + 1
    const double shifted = kSplitter * a;
    const double high = shifted - (shifted - a);
    return {high, a - high};
}

inline TwoDoubles twoProduct(double a, double b)
{
    const double product = a * b;
#ifdef FP_FAST_FMA
    return {product, std::fma(a, b, -product)};
#else
    const TwoDoubles aHalf = split(a), bHalf = split(b);
    const double rest = ((aHalf.high * bHalf.high - product) + aHalf.high * bHalf.low) + aHalf.low * bHalf.high;
    return {product, rest + aHalf.low * bHalf.low};
#endif
}

// Double-double arithmetic: for u = 2^-53, add() is off by at most 5u^2 (|a| + |b|) and multiply() by 7u^2 |ab|.

inline TwoDoubles add(const TwoDoubles& a, const TwoDoubles& b)
{
    const TwoDoubles sum = twoSum(a.high, b.high);
    return twoSum(sum.high, sum.low + (a.low + b.low));
}

inline TwoDoubles subtract(const TwoDoubles& a, const TwoDoubles& b)
{
    return add(a, {-b.high, -b.low});
}

inline TwoDoubles multiply(const TwoDoubles& a, const TwoDoubles& b)
{
    const TwoDoubles product = twoProduct(a.high, b.high);
    return fastTwoSum(product.high, product.low + (a.high * b.low + a.low * b.high));
}

/// A sum of at most `Capacity` doubles that stands for its exact value.
///
/// The components grow in magnitude, none is zero, and each is smaller than the lowest set bit of the next (they do
/// not overlap), so the last one carries the sign. Zero has no components.
template <unsigned int Capacity>
class Expansion
{
public:
    Expansion() = default;
    explicit Expansion(const TwoDoubles& value)
    {
        append(value.low);
        append(value.high);
    }

    int size() const { return numComponents; }
    void clear() { numComponents = 0; }
    double operator[](int i) const { return aComponents[i]; }
    void append(double component)
    {
        aComponents[numComponents] = component;
        numComponents += component != 0.0 ? 1 : 0;
    }

    int sign() const
    {
        if (numComponents == 0)
            return 0;
        return aComponents[numComponents - 1] > 0.0 ? 1 : -1;
    }

    Expansion operator-() const
    {
        Expansion negative;
        for (int i = 0; i < numComponents; ++i)
            negative.append(-aComponents[i]);
        return negative;
    }

private:
    // One more, since append() writes a component before it knows that it counts.
    double aComponents[Capacity + 1];
    int numComponents = 0;
};

/// e + f: merges the components by magnitude and adds them up (FAST-EXPANSION-SUM, Shewchuk 1997).
template <unsigned int Result, unsigned int M, unsigned int N>
void add(const Expansion<M>& e, const Expansion<N>& f, Expansion<Result>& sum)
{
    sum.clear();
    int i = 0, j = 0;
    const auto takeSmaller = [&] {
        if (j == f.size() || (i != e.size() && std::fabs(e[i]) < std::fabs(f[j])))
            return e[i++];
        return f[j++];
    };
    const int total = e.size() + f.size();
    QUOR2D_ASSERT(total <= static_cast<int>(Result), "total <= Result"); // every component may survive
    if (total == 0)
        return;
    double running = takeSmaller();
    for (int k = 1; k < total; ++k) {
        const TwoDoubles step = twoSum(running, takeSmaller());
        sum.append(step.low);
        running = step.high;
    }
    sum.append(running);
}

template <unsigned int M, unsigned int N>
Expansion<M + N> operator+(const Expansion<M>& e, const Expansion<N>& f)
{
    Expansion<M + N> sum;
    add(e, f, sum);
    return sum;
}

template <unsigned int M, unsigned int N>
Expansion<M + N> operator-(const Expansion<M>& e, const Expansion<N>& f)
{
    return e + -f;
}

/// e * b (SCALE-EXPANSION, Shewchuk 1997).
template <unsigned int M>
Expansion<2 * M> operator*(const Expansion<M>& e, double b)
{
    Expansion<2 * M> product;
    if (e.size() == 0)
        return product;
    TwoDoubles running = twoProduct(e[0], b);
    product.append(running.low);
    for (int i = 1; i < e.size(); ++i) {
        const TwoDoubles next = twoProduct(e[i], b);
        const TwoDoubles sum = twoSum(running.high, next.low);
        product.append(sum.low);
        running = fastTwoSum(next.high, sum.high);
        product.append(running.low);
    }
    product.append(running.high);
    return product;
}

/// e * f, by adding up the multiples of e.
template <unsigned int M, unsigned int N>
Expansion<2 * M * N> operator*(const Expansion<M>& e, const Expansion<N>& f)
{
    Expansion<2 * M * N> aSums[2];
    int current = 0;
    for (int j = 0; j < f.size(); ++j) {
        add(aSums[current], e * f[j], aSums[1 - current]);
        current = 1 - current;
    }
    return aSums[current];
}

} // namespace ZELK_QUOR2D
