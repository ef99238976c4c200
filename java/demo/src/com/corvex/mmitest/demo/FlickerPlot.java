package com.corvex.mmitest.demo;

import com.corvex.mmitest.sim.SimulatedHandset;

import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Locale;

/**
 * The flicker detector's spectrum of a light's 256 raw samples as an SVG picture: the
 * magnitudes of bins 0 to 499, the bins the peak search skips shaded, and the detected peak
 * marked.
 */
final class FlickerPlot {
    static final float SAMPLE_RATE = 1000.0f;
    static final int TRANSFORM_SIZE = 1024;
    static final int FIRST_SEARCHED_BIN = 20;
    static final int LAST_SEARCHED_BIN = 498;

    private static final int WIDTH = 960;
    private static final int HEIGHT = 500;
    private static final double LEFT = 90;
    private static final double RIGHT = 930;
    private static final double TOP = 90;
    private static final double BOTTOM = 430;
    private static final double MAX_HZ = 500;

    private final float[] magnitudes;
    private final int peakBin;
    private final int detected;
    private final String profile;
    private final double lightHz;
    private final Integer measured;

    private FlickerPlot(float[] magnitudes, int peakBin, int detected, String profile, double lightHz, Integer measured) {
        this.magnitudes = magnitudes;
        this.peakBin = peakBin;
        this.detected = detected;
        this.profile = profile;
        this.lightHz = lightHz;
        this.measured = measured;
    }

    /**
     * Runs the detector on the samples. `measured` is what the library's flicker
     * measurement answered on this handset (null when it failed).
     */
    static FlickerPlot of(int[] samples, String profile, double lightHz, Integer measured) {
        float[] magnitudes = SimulatedHandset.flickerSpectrum(samples);
        int detected = SimulatedHandset.detectFlickerFrequency(samples);
        return new FlickerPlot(magnitudes, peakBin(magnitudes), detected, profile, lightHz, measured);
    }

    /** The bin the detector's peak search picks: the first strictly greatest in 20..498; 0 if none is above 0. */
    static int peakBin(float[] magnitudes) {
        float best = 0.0f;
        int bin = 0;
        for (int b = FIRST_SEARCHED_BIN; b <= LAST_SEARCHED_BIN && b < magnitudes.length; b++) {
            if (magnitudes[b] > best) {
                best = magnitudes[b];
                bin = b;
            }
        }
        return bin;
    }

    static double binHz(int bin) {
        return bin * (double) SAMPLE_RATE / TRANSFORM_SIZE;
    }

    int peakBin() {
        return peakBin;
    }

    int detected() {
        return detected;
    }

    String describe() {
        String text = String.format(Locale.ROOT, "light at %s Hz; ", number(lightHz));
        if (peakBin == 0) {
            return text + "no bin in 20..498 is above 0, so the detector reports 0 Hz";
        }
        text += String.format(Locale.ROOT, "peak in bin %d (%.2f Hz), the detector reports %d Hz", peakBin,
                binHz(peakBin), detected);
        if (measured != null) {
            text += "; the library's measurement answered " + measured + " Hz";
        }
        return text;
    }

    void write(String file) throws IOException {
        Files.writeString(Path.of(file), svg(), StandardCharsets.UTF_8);
    }

    String svg() {
        // Scaled to the searched bins: the steady light level puts far more into bins 0..19,
        // which go off the top.
        float max = 0.0f;
        float all = 0.0f;
        for (int bin = 0; bin < magnitudes.length; bin++) {
            all = Math.max(all, magnitudes[bin]);
            if (bin >= FIRST_SEARCHED_BIN && bin <= LAST_SEARCHED_BIN) {
                max = Math.max(max, magnitudes[bin]);
            }
        }
        double top = niceCeiling(max > 0 ? max * 1.25 : (all > 0 ? all : 1.0));
        StringBuilder svg = new StringBuilder();
        svg.append(String.format(Locale.ROOT,
                "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" viewBox=\"0 0 %d %d\" "
                        + "font-family=\"sans-serif\" font-size=\"13\">%n",
                WIDTH, HEIGHT, WIDTH, HEIGHT));
        svg.append(String.format(Locale.ROOT, "<rect width=\"%d\" height=\"%d\" fill=\"white\"/>%n", WIDTH, HEIGHT));
        svg.append(String.format(Locale.ROOT,
                "<text x=\"%.0f\" y=\"32\" font-size=\"18\" font-weight=\"bold\">%s</text>%n", LEFT,
                escape("Flicker detector spectrum: profile " + profile + ", light at " + number(lightHz) + " Hz")));
        svg.append(String.format(Locale.ROOT, "<text x=\"%.0f\" y=\"56\">%s</text>%n", LEFT, escape(describe())));

        // Bins the peak search never picks.
        shade(svg, 0, binHz(FIRST_SEARCHED_BIN) - binHz(1) / 2, "bins 0-19 not searched");
        shade(svg, binHz(LAST_SEARCHED_BIN) + binHz(1) / 2, binHz(LAST_SEARCHED_BIN + 1) + binHz(1) / 2, null);

        // Grid and ticks.
        for (int hz = 0; hz <= MAX_HZ; hz += 50) {
            double x = x(hz);
            svg.append(String.format(Locale.ROOT,
                    "<line x1=\"%.1f\" y1=\"%.1f\" x2=\"%.1f\" y2=\"%.1f\" stroke=\"#dddddd\"/>%n", x, TOP, x, BOTTOM));
            svg.append(String.format(Locale.ROOT, "<text x=\"%.1f\" y=\"%.1f\" text-anchor=\"middle\">%d</text>%n", x,
                    BOTTOM + 18, hz));
        }
        for (int i = 0; i <= 5; i++) {
            double value = top * i / 5;
            double y = y(value, top);
            svg.append(String.format(Locale.ROOT,
                    "<line x1=\"%.1f\" y1=\"%.1f\" x2=\"%.1f\" y2=\"%.1f\" stroke=\"#dddddd\"/>%n", LEFT, y, RIGHT, y));
            svg.append(String.format(Locale.ROOT, "<text x=\"%.1f\" y=\"%.1f\" text-anchor=\"end\">%s</text>%n",
                    LEFT - 6, y + 4, number(value)));
        }
        svg.append(String.format(Locale.ROOT,
                "<rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"%.1f\" fill=\"none\" stroke=\"black\"/>%n", LEFT,
                TOP, RIGHT - LEFT, BOTTOM - TOP));
        svg.append(String.format(Locale.ROOT,
                "<text x=\"%.1f\" y=\"%.1f\" text-anchor=\"middle\">frequency (Hz), bin k at k &#215; 1000 / 1024 Hz</text>%n",
                (LEFT + RIGHT) / 2, BOTTOM + 44));
        svg.append(String.format(Locale.ROOT,
                "<text x=\"24\" y=\"%.1f\" text-anchor=\"middle\" transform=\"rotate(-90 24 %.1f)\">magnitude</text>%n",
                (TOP + BOTTOM) / 2, (TOP + BOTTOM) / 2));

        // The spectrum, clipped to the plot area.
        svg.append(String.format(Locale.ROOT,
                "<clipPath id=\"area\"><rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"%.1f\"/></clipPath>%n",
                LEFT, TOP, RIGHT - LEFT, BOTTOM - TOP));
        if (all > top) {
            svg.append(String.format(Locale.ROOT,
                    "<text x=\"%.1f\" y=\"%.1f\" font-size=\"11\" fill=\"#777777\">%s</text>%n", x(binHz(FIRST_SEARCHED_BIN)) + 6,
                    TOP + 14, escape("steady level off the scale (bin 0: " + number(Math.round(magnitudes[0])) + ")")));
        }
        StringBuilder points = new StringBuilder();
        for (int bin = 0; bin < magnitudes.length; bin++) {
            points.append(String.format(Locale.ROOT, "%.2f,%.2f ", x(binHz(bin)), y(magnitudes[bin], top)));
        }
        svg.append("<polyline id=\"spectrum\" clip-path=\"url(#area)\" fill=\"none\" stroke=\"#1f5fbf\" stroke-width=\"1.5\" points=\"")
                .append(points.toString().trim()).append("\"/>\n");

        // The detected peak.
        if (peakBin > 0) {
            double px = x(binHz(peakBin));
            double py = y(magnitudes[peakBin], top);
            svg.append(String.format(Locale.ROOT,
                    "<line x1=\"%.2f\" y1=\"%.1f\" x2=\"%.2f\" y2=\"%.1f\" stroke=\"#cc2200\" stroke-dasharray=\"5,4\"/>%n",
                    px, TOP, px, BOTTOM));
            svg.append(String.format(Locale.ROOT,
                    "<circle id=\"peak\" cx=\"%.2f\" cy=\"%.2f\" r=\"6\" fill=\"none\" stroke=\"#cc2200\" stroke-width=\"2\"/>%n",
                    px, py));
            boolean leftSide = px > (LEFT + RIGHT) / 2;
            svg.append(String.format(Locale.ROOT,
                    "<text x=\"%.2f\" y=\"%.2f\" fill=\"#cc2200\" text-anchor=\"%s\">%s</text>%n",
                    leftSide ? px - 10 : px + 10, Math.max(TOP + 16, py - 8), leftSide ? "end" : "start",
                    escape(String.format(Locale.ROOT, "peak: bin %d, %d Hz detected", peakBin, detected))));
        }
        svg.append("</svg>\n");
        return svg.toString();
    }

    private void shade(StringBuilder svg, double fromHz, double toHz, String label) {
        svg.append(String.format(Locale.ROOT,
                "<rect x=\"%.2f\" y=\"%.1f\" width=\"%.2f\" height=\"%.1f\" fill=\"#eeeeee\"/>%n", x(fromHz), TOP,
                Math.max(1.0, x(toHz) - x(fromHz)), BOTTOM - TOP));
        if (label != null) {
            svg.append(String.format(Locale.ROOT,
                    "<text x=\"%.2f\" y=\"%.1f\" font-size=\"11\" fill=\"#777777\" transform=\"rotate(-90 %.2f %.1f)\">%s</text>%n",
                    x(fromHz) + 12, BOTTOM - 6, x(fromHz) + 12, BOTTOM - 6, escape(label)));
        }
    }

    private static double x(double hz) {
        return LEFT + (RIGHT - LEFT) * hz / MAX_HZ;
    }

    private static double y(double value, double top) {
        return BOTTOM - (BOTTOM - TOP) * value / top;
    }

    /** The smallest 1, 2 or 5 times a power of ten that is at least the value. */
    static double niceCeiling(double value) {
        double power = Math.pow(10, Math.floor(Math.log10(value)));
        for (double step : new double[] {1, 2, 5, 10}) {
            if (step * power >= value) {
                return step * power;
            }
        }
        return 10 * power;
    }

    private static String number(double value) {
        if (value == Math.rint(value) && Math.abs(value) < 1e15) {
            return Long.toString((long) value);
        }
        return String.format(Locale.ROOT, "%.1f", value);
    }

    private static String escape(String text) {
        return text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;").replace("\"", "&quot;");
    }
}
