#!/usr/bin/env python3
"""Writes the flicker fuzz target's seed inputs (tests/fuzz/seeds/flicker/): 256 int32 samples,
a uint16 picking the window length (pick % 305 - 4) and the sample rate's float bits."""
import math
import os
import struct

INT_MAX = 2**31 - 1
INT_MIN = -(2**31)
HERE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "seeds", "flicker")


def write(name, samples, window_length, rate=1000.0):
    assert len(samples) == 256 and -4 <= window_length <= 300
    with open(os.path.join(HERE, name), "wb") as out:
        out.write(struct.pack("<256iHf", *samples, window_length + 4, rate))


os.makedirs(HERE, exist_ok=True)
# A 100 Hz flicker on a DC level with a harmonic, as a light sensor sees a mains lamp.
write("tone_100hz", [round(20000 + 8000 * math.sin(2 * math.pi * 100 * n / 1000)
                           + 1500 * math.sin(4 * math.pi * 100 * n / 1000 + 0.3)) for n in range(256)], 256)
# Alternating int limits: every filter step overflows 32 bits.
write("alternating_limits", [INT_MAX if n % 2 else INT_MIN for n in range(256)], 257)
# Window of 3: its middle coefficient is exactly 1.0, and the second filtered sample is the
# raw INT_MAX, so the windowed value is 2^31 and must saturate.
write("saturating_window", [INT_MAX if n == 1 else 0 for n in range(256)], 3)
write("silence_nan_rate", [0] * 256, 256, float("nan"))  # silence at a NaN sample rate
