#include "predicates/Expansion.h"

#include "tests/predicates/Inputs.h"
#include "tests/predicates/Rational.h"

#include <gtest/gtest.h>

using namespace ZELK_QUOR2D;

namespace
{

template <unsigned int N>
oracle::Rational exactValue(const Expansion<N>& e)
{
    oracle::Rational sum;
    for (int i = 0; i < e.size(); ++i)
        sum = sum + oracle::Rational(e[i]);
    return sum;
}

// Components below the lowest bit of the next one: otherwise the last need not carry the sign.
template <unsigned int N>
void expectOrdered(const Expansion<N>& e)
{
    for (int i = 0; i < e.size(); ++i)
        EXPECT_NE(e[i], 0.0);
    for (int i = 1; i < e.size(); ++i) {
        int exponent = 0;
        std::frexp(e[i - 1], &exponent);
        EXPECT_EQ(std::fmod(e[i], std::ldexp(1.0, exponent)), 0.0) << "components overlap";
    }
}

double randomValue(inputs::Random& random)
{
    const int bits = 1 + inputs::below(random, 53);
    const double value = std::floor(std::ldexp(inputs::unit(random), bits));
    return std::ldexp(inputs::below(random, 2) ? value : -value, inputs::below(random, 80) - 40);
}

TEST(Expansion, SumsAndProductsAreExact)
{
    inputs::Random random(29);
    for (int i = 0; i < 3000; ++i) {
        const double a = randomValue(random), b = randomValue(random), c = randomValue(random), d = randomValue(random);
        const TwoDoubles difference = twoDiff(a, b), product = twoProduct(c, d);
        ASSERT_TRUE(oracle::Rational(difference.high) + oracle::Rational(difference.low) ==
                    oracle::Rational(a) - oracle::Rational(b));
        ASSERT_TRUE(oracle::Rational(product.high) + oracle::Rational(product.low) ==
                    oracle::Rational(c) * oracle::Rational(d));
        const Expansion<2> e(difference), f(product);
        const auto sum = e + f;
        const auto square = sum * sum;
        const auto mixed = square - e * f;
        const oracle::Rational eValue = exactValue(e), fValue = exactValue(f), sumValue = eValue + fValue;
        ASSERT_TRUE(exactValue(sum) == sumValue);
        ASSERT_TRUE(exactValue(square) == sumValue * sumValue);
        ASSERT_TRUE(exactValue(mixed) == sumValue * sumValue - eValue * fValue);
        expectOrdered(square);
        expectOrdered(mixed);
        ASSERT_EQ(mixed.sign(), exactValue(mixed).sign());
        ASSERT_EQ((sum - sum).size(), 0);
        ASSERT_EQ((sum - sum).sign(), 0);
    }
}

TEST(Expansion, DoubleDoubleStaysWithinItsBounds)
{
    inputs::Random random(31);
    const oracle::Rational uu(0x1p-106);
    const auto valueOf = [](const TwoDoubles& a) { return oracle::Rational(a.high) + oracle::Rational(a.low); };
    const auto magnitude = [](const oracle::Rational& a) { return a.sign() < 0 ? oracle::Rational() - a : a; };
    for (int i = 0; i < 3000; ++i) {
        const TwoDoubles a = twoDiff(randomValue(random), randomValue(random));
        const TwoDoubles b = i % 3 ? twoProduct(randomValue(random), randomValue(random))
                                   : twoSum(-a.high, inputs::moveByUlps(a.low, i % 5)); // nearly cancels
        const oracle::Rational aValue = valueOf(a), bValue = valueOf(b);
        ASSERT_TRUE(magnitude(valueOf(add(a, b)) - (aValue + bValue)) <=
                    oracle::Rational(5.0) * uu * (magnitude(aValue) + magnitude(bValue)));
        ASSERT_TRUE(magnitude(valueOf(multiply(a, b)) - aValue * bValue) <=
                    oracle::Rational(7.0) * uu * magnitude(aValue * bValue));
    }
}

} // namespace
