#include <sim/light_source.h>

#include <cmath>
#include <limits>
#include <random>

namespace mmisim {
namespace {

constexpr double kPi = 3.14159265358979323846;

// Standard normal values by the Box-Muller transform over mt19937, whose output the C++
// standard fixes: the same seed gives the same samples with every standard library.
class Gaussian {
public:
    explicit Gaussian(uint32_t seed) : mEngine(seed) {}

    double next() {
        if (mHasSpare) {
            mHasSpare = false;
            return mSpare;
        }
        double u1 = 0.0;
        do {
            u1 = Uniform();
        } while (u1 <= 0.0);
        const double u2 = Uniform();
        const double radius = std::sqrt(-2.0 * std::log(u1));
        mSpare = radius * std::sin(2.0 * kPi * u2);
        mHasSpare = true;
        return radius * std::cos(2.0 * kPi * u2);
    }

private:
    double Uniform() { return static_cast<double>(mEngine()) / 4294967296.0; }  // [0, 1)

    std::mt19937 mEngine;
    bool mHasSpare = false;
    double mSpare = 0.0;
};

int32_t ToSample(double value) {
    if (std::isnan(value)) return 0;
    const double rounded = std::round(value);
    if (rounded >= static_cast<double>(std::numeric_limits<int32_t>::max())) {
        return std::numeric_limits<int32_t>::max();
    }
    if (rounded <= static_cast<double>(std::numeric_limits<int32_t>::min())) {
        return std::numeric_limits<int32_t>::min();
    }
    return static_cast<int32_t>(rounded);
}

}  // namespace

std::vector<int32_t> LightSourceSamples(const LightSource& source, size_t count, double sampleRateHz) {
    std::vector<int32_t> samples;
    samples.reserve(count);
    Gaussian gaussian(source.seed);
    for (size_t i = 0; i < count; ++i) {
        const double t = sampleRateHz > 0.0 ? static_cast<double>(i) / sampleRateHz : 0.0;
        double value = source.offset + source.amplitude * std::sin(2.0 * kPi * source.frequencyHz * t);
        if (source.noise != 0.0) value += source.noise * gaussian.next();
        samples.push_back(ToSample(value));
    }
    return samples;
}

}  // namespace mmisim
