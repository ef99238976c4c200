// A light source in front of a light sensor: a sinusoidal flicker on a steady level, with
// noise, as raw sensor counts sampled at a fixed rate.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace mmisim {

struct LightSource {
    double frequencyHz;  // flicker frequency
    double amplitude;    // peak deviation from the offset, in sensor counts
    double offset;       // steady level, in sensor counts
    double noise;        // standard deviation of Gaussian noise, in sensor counts
    uint32_t seed;       // the noise's seed: the same seed gives the same samples
};

// `count` samples taken at `sampleRateHz`, starting at phase 0: each is
// offset + amplitude * sin(2 pi f t) + noise * N(0, 1), rounded to the nearest integer and
// held within the int32 range.
std::vector<int32_t> LightSourceSamples(const LightSource& source, size_t count = 256,
                                        double sampleRateHz = 1000.0);

}  // namespace mmisim
