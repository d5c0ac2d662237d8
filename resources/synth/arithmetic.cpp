#include "synth/arithmetic.h"

#include <cmath>

namespace chimewerk::synth {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kLn2 = 0.69314718055994530942;

}  // namespace

double sine(double turns) {
    double folded = turns - std::floor(turns + 0.5);
    if (folded > 0.25) {
        folded = 0.5 - folded;
    } else if (folded < -0.25) {
        folded = -0.5 - folded;
    }
    const double x = 2.0 * kPi * folded;
    double sum = 1.0;
    for (int n = 16; n >= 2; n -= 2) {
        sum = 1.0 - sum * x * x / (n * (n + 1));
    }
    return sum * x;
}

double cosine(double turns) {
    return sine(turns + 0.25);
}

double powerOfTwo(double exponent) {
    const double whole = std::floor(exponent + 0.5);
    const double x = (exponent - whole) * kLn2;
    double sum = 1.0;
    for (int n = 12; n >= 1; --n) {
        sum = 1.0 + sum * x / n;
    }
    return std::ldexp(sum, static_cast<int>(whole));
}

double decibels(double level) {
    return powerOfTwo(level / 6.0205999132796239);
}

double semitones(double count) {
    return powerOfTwo(count / 12.0);
}

}  // namespace chimewerk::synth
