.pragma library

// How the numbers at an axis are written, what a zoom rounds its ends to, and the smallest range of a zoom.

function format(labelFormat, precisionIntValue, minAxisRange) {
    return {
        "labelFormat": labelFormat,
        "precisionIntValue": precisionIntValue,
        "minAxisRange": minAxisRange
    };
}

// `delta` is the range of the axis.
function horizontal(delta) {
    if (delta <= 0.1)
        return format("%.4f", 1e4, 0.001);
    if (delta <= 1.0)
        return format("%.3f", 1e3, 0.01);
    if (delta <= 10.0)
        return format("%.2f", 1e2, 0.01);
    if (delta <= 100.0)
        return format("%.1f", 1e1, 0.1);
    return format("%.0f", 1, 0.1);
}

// `maxVal` is the larger magnitude of the axis' ends.
function vertical(delta, maxVal) {
    if (maxVal > 1000) {
        if (delta < 0.01)
            return format("%.7E", 1e7, 1e-6);
        if (delta < 1.0)
            return format("%.6E", 1e6, 1e-5);
        if (delta < 10.0)
            return format("%.5E", 1e5, 1e-4);
        if (delta < 100.0)
            return format("%.4E", 1e4, 1e-3);
        return format("%.3E", 1e3, 1e-2);
    }
    if (delta < 0.0001)
        return format("%.7f", 1e7, 1e-6);
    if (delta < 0.001)
        return format("%.6f", 1e6, 1e-5);
    if (delta < 0.01)
        return format("%.5f", 1e5, 1e-4);
    if (delta < 1.0)
        return format("%.4f", 1e4, 1e-3);
    if (delta < 10.0)
        return format("%.3f", 1e3, 1e-2);
    if (delta < 100.0)
        return format("%.2f", 1e2, 1e-2);
    return format("%.1f", 1e1, 1e-1);
}

// `delta` is the range of the axis in hertz.
function spectrum(delta) {
    if (delta <= 1.0)
        return "%.3f";
    if (delta <= 10.0)
        return "%.2f";
    return "%.1f";
}
