// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Hct.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double kPi = 3.141592653589793;
constexpr double kLabE = 216.0 / 24389.0;         // CIE L* threshold epsilon
constexpr double kLabKappa = 24389.0 / 27.0;      // CIE L* slope kappa
constexpr double kChromaSearchEndpoint = 0.4;     // chroma bisection ends when narrower
constexpr double kLightnessSearchEndpoint = 0.01; // J bisection ends when not wider
constexpr double kDeMax = 1.0; // largest accepted hue-drift distance in a candidate
constexpr double kDlMax = 0.2; // a candidate's tone must be nearer than this

constexpr double kHueOffset = 20.14; // where the CAM16 hue circle of eccentricity begins
constexpr double kEccentricityScale = 50000.0 / 13.0;
constexpr double kAdaptationExponent = 0.42;
constexpr double kAdaptationOffset = 27.13;
constexpr double kAdaptationMax = 400.0;

constexpr double kRgbToXyz[3][3] = {{0.41233895, 0.35762064, 0.18051042},
                                    {0.2126, 0.7152, 0.0722},
                                    {0.01932141, 0.11916382, 0.95034478}};
constexpr double kXyzToRgb[3][3] = {
    {3.2413774792388685, -1.5376652402851851, -0.49885366846268053},
    {-0.9691452513005321, 1.8758853451067872, 0.04156585616912061},
    {0.05562093689691305, -0.20395524564742123, 1.0571799111220335}};
constexpr double kXyzToCone[3][3] = {{0.401288, 0.650173, -0.051461},
                                     {-0.250268, 1.204414, 0.045854},
                                     {-0.002079, 0.048952, 0.953127}};
constexpr double kConeToXyz[3][3] = {{1.86206786, -1.01125463, 0.14918677},
                                     {0.38752654, 0.62144744, -0.00897398},
                                     {-0.0158415, -0.03412294, 1.04996444}};

void multiply(const double (&matrix)[3][3], const double (&in)[3], double* out)
{
    for (int row = 0; row < 3; ++row)
        out[row] = matrix[row][0] * in[0] + matrix[row][1] * in[1] + matrix[row][2] * in[2];
}

double radians(double degrees)
{
    return degrees * kPi / 180.0;
}

double eccentricity(double hueRadians)
{
    return 0.25 * (std::cos(hueRadians + 2.0) + 3.8);
}

/// How much colourfulness the background takes from a stimulus.
double backgroundFactor(const Hct::ViewingConditions& vc)
{
    return std::pow(1.64 - std::pow(0.29, vc.n), 0.73);
}

/// The compressed response of a cone to a stimulus already scaled by adaptation.
double adapted(double scaled)
{
    const double factor = std::pow(scaled, kAdaptationExponent);
    return kAdaptationMax * factor / (factor + kAdaptationOffset);
}

/// Undoes `adapted`, with the sign of the response.
double unadapted(double response, double fl)
{
    const double size = std::abs(response);
    const double base = std::max(0.0, kAdaptationOffset * size / (kAdaptationMax - size));
    return Hct::sgn(response) * (100.0 / fl) * std::pow(base, 1.0 / kAdaptationExponent);
}

} // namespace

namespace Hct
{

double sgn(double value)
{
    if (value < 0.0)
        return -1.0;
    return value > 0.0 ? 1.0 : 0.0;
}

double sanitizeDegrees(double degrees)
{
    const double rest = std::fmod(degrees, 360.0);
    return rest < 0.0 ? rest + 360.0 : rest;
}

double linearized(int channel)
{
    const double v = channel / 255.0;
    if (v <= 0.040449936)
        return 100.0 * (v / 12.92);
    return 100.0 * std::pow((v + 0.055) / 1.055, 2.4);
}

int delinearized(double linear)
{
    const double v = linear / 100.0;
    const double encoded = v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1.0 / 2.4) - 0.055;
    // Cut before rounding: the search asks for lights far off the screen's, and lround has
    // no answer for what a long can't hold.
    return static_cast<int>(std::lround(std::clamp(encoded * 255.0, 0.0, 255.0)));
}

double lstarFromY(double y)
{
    const double r = y / 100.0;
    return r <= kLabE ? kLabKappa * r : 116.0 * std::cbrt(r) - 16.0;
}

double yFromLstar(double lstar)
{
    const double ft = (lstar + 16.0) / 116.0;
    const double f3 = ft * ft * ft;
    return f3 > kLabE ? 100.0 * f3 : 100.0 * (116.0 * ft - 16.0) / kLabKappa;
}

int argbFromRgb(int red, int green, int blue)
{
    const auto byte = [](int channel) { return static_cast<unsigned>(channel) & 0xFFU; };
    return static_cast<int>(0xFF000000U | byte(red) << 16 | byte(green) << 8 | byte(blue));
}

int redOf(int argb)
{
    return (argb >> 16) & 0xFF;
}

int greenOf(int argb)
{
    return (argb >> 8) & 0xFF;
}

int blueOf(int argb)
{
    return argb & 0xFF;
}

int argbFromXyz(double x, double y, double z)
{
    double rgb[3];
    multiply(kXyzToRgb, {x, y, z}, rgb);
    return argbFromRgb(delinearized(rgb[0]), delinearized(rgb[1]), delinearized(rgb[2]));
}

void xyzFromArgb(int argb, double* xyz)
{
    multiply(kRgbToXyz,
             {linearized(redOf(argb)), linearized(greenOf(argb)), linearized(blueOf(argb))}, xyz);
}

double lstarFromArgb(int argb)
{
    double xyz[3];
    xyzFromArgb(argb, xyz);
    return lstarFromY(xyz[1]);
}

int argbFromLstar(double lstar)
{
    const int channel = delinearized(yFromLstar(lstar));
    return argbFromRgb(channel, channel, channel);
}

ViewingConditions ViewingConditions::make()
{
    constexpr double kCones[3] = {97.555292473, 101.64689848600003, 108.47692442799999};
    constexpr double kWhitePerCone[3] = {1.0250597119338924, 0.9837978481337839,
                                         0.9218550445387449};
    constexpr double kAverageSurround = 0.69;
    const double backgroundY = yFromLstar(50.0);
    const double la = backgroundY * 63.66197723675813 / 100.0; // adapting luminance

    ViewingConditions vc;
    vc.nc = 1.0;
    vc.c = kAverageSurround;
    const double d = std::clamp(1.0 - (1.0 / 3.6) * std::exp((-la - 42.0) / 92.0), 0.0, 1.0);
    const double k = 1.0 / (5.0 * la + 1.0);
    const double k4 = k * k * k * k;
    const double k4F = 1.0 - k4;
    vc.fl = k4 * la + 0.1 * k4F * k4F * std::cbrt(5.0 * la);
    vc.fLRoot = std::pow(vc.fl, 0.25);
    vc.n = backgroundY / 100.0;
    vc.z = 1.48 + std::sqrt(vc.n);
    vc.nbb = 0.725 / std::pow(vc.n, 0.2);
    vc.ncb = vc.nbb;
    double rgbA[3];
    for (int i = 0; i < 3; ++i) {
        vc.rgbD[i] = d * kWhitePerCone[i] + 1.0 - d;
        rgbA[i] = adapted(vc.rgbD[i] * vc.fl * kCones[i] / 100.0);
    }
    vc.aw = (40.0 * rgbA[0] + 20.0 * rgbA[1] + rgbA[2]) / 20.0 * vc.nbb;
    return vc;
}

const ViewingConditions& ViewingConditions::standard()
{
    static const ViewingConditions vc = make();
    return vc;
}

Cam Cam::fromArgb(int argb)
{
    const ViewingConditions& vc = ViewingConditions::standard();
    double xyz[3];
    xyzFromArgb(argb, xyz);
    double cone[3];
    multiply(kXyzToCone, {xyz[0], xyz[1], xyz[2]}, cone);
    double response[3];
    for (int i = 0; i < 3; ++i) {
        const double discounted = vc.rgbD[i] * cone[i];
        response[i] = sgn(discounted) * adapted(vc.fl * std::abs(discounted) / 100.0);
    }
    const auto [rA, gA, bA] = response;

    const double a = (11.0 * rA - 12.0 * gA + bA) / 11.0;
    const double b = (rA + gA - 2.0 * bA) / 9.0;
    const double u = (20.0 * rA + 20.0 * gA + 21.0 * bA) / 20.0;
    const double p2 = (40.0 * rA + 20.0 * gA + bA) / 20.0;

    Cam cam;
    cam.hue = std::atan2(b, a) * 180.0 / kPi;
    if (cam.hue < 0.0)
        cam.hue += 360.0;
    else if (cam.hue >= 360.0)
        cam.hue -= 360.0;

    const double ac = p2 * vc.nbb;
    cam.j = 100.0 * std::pow(ac / vc.aw, vc.c * vc.z);

    const double huePrime = cam.hue < kHueOffset ? cam.hue + 360.0 : cam.hue;
    const double p1 = kEccentricityScale * eccentricity(radians(huePrime)) * vc.nc * vc.ncb;
    const double t = p1 * std::sqrt(a * a + b * b) / (u + 0.305);
    const double alpha = std::pow(t, 0.9) * backgroundFactor(vc);
    cam.chroma = alpha * std::sqrt(cam.j / 100.0);
    cam.m = cam.chroma * vc.fLRoot;
    cam.s = 50.0 * std::sqrt(alpha * vc.c / (vc.aw + 4.0));
    return cam;
}

int Cam::toArgb(double j, double chroma, double hue)
{
    const ViewingConditions& vc = ViewingConditions::standard();
    const bool isGrey = chroma == 0.0 || j == 0.0;
    const double alpha = isGrey ? 0.0 : chroma / std::sqrt(j / 100.0);
    const double t = std::pow(alpha / backgroundFactor(vc), 1.0 / 0.9);
    const double hRad = radians(sanitizeDegrees(hue));
    const double hCos = std::cos(hRad);
    const double hSin = std::sin(hRad);

    const double ac = vc.aw * std::pow(j / 100.0, 1.0 / vc.c / vc.z);
    const double p1 = eccentricity(hRad) * kEccentricityScale * vc.nc * vc.ncb;
    const double p2 = ac / vc.nbb;
    const double gamma = 23.0 * (p2 + 0.305) * t / (23.0 * p1 + 11.0 * t * hCos + 108.0 * t * hSin);
    const double a = gamma * hCos;
    const double b = gamma * hSin;

    const double response[3] = {(460.0 * p2 + 451.0 * a + 288.0 * b) / 1403.0,
                                (460.0 * p2 - 891.0 * a - 261.0 * b) / 1403.0,
                                (460.0 * p2 - 220.0 * a - 6300.0 * b) / 1403.0};
    double cone[3];
    for (int i = 0; i < 3; ++i)
        cone[i] = unadapted(response[i], vc.fl) / vc.rgbD[i];
    double xyz[3];
    multiply(kConeToXyz, cone, xyz);
    return argbFromXyz(xyz[0], xyz[1], xyz[2]);
}

double Cam::jstar() const
{
    return (1.0 + 100.0 * 0.007) * j / (1.0 + 0.007 * j);
}

double Cam::mstar() const
{
    return 1.0 / 0.0228 * std::log(1.0 + 0.0228 * m);
}

double Cam::astar() const
{
    return mstar() * std::cos(radians(hue));
}

double Cam::bstar() const
{
    return mstar() * std::sin(radians(hue));
}

double Cam::distance(const Cam& other) const
{
    const double dJ = jstar() - other.jstar();
    const double dA = astar() - other.astar();
    const double dB = bstar() - other.bstar();
    return 1.41 * std::pow(std::sqrt(dJ * dJ + dA * dA + dB * dB), 0.63);
}

bool detail::findCamByJ(double hue, double chroma, double tone, Cam* outCam)
{
    const double fLRoot = ViewingConditions::standard().fLRoot;
    double low = 0.0;
    double high = 100.0;
    double bestdL = 1000.0;
    double bestdE = 1000.0;
    bool found = false;
    Cam best;
    while (std::abs(low - high) > kLightnessSearchEndpoint) {
        const double mid = low + (high - low) / 2.0;
        const int clipped = Cam::toArgb(mid, chroma, hue);
        const double clippedLstar = lstarFromArgb(clipped);
        const double dL = std::abs(tone - clippedLstar);
        if (dL < kDlMax) {
            const Cam camClipped = Cam::fromArgb(clipped);
            // The target differs in nothing but the hue, so the distance is how far clipping has
            // turned it, and lightness or chroma lost to clipping don't count against a candidate.
            const Cam target{hue, camClipped.chroma, camClipped.j, fLRoot * camClipped.chroma, 0.0};
            const double dE = camClipped.distance(target);
            if (dE <= kDeMax && dE <= bestdE) {
                best = camClipped;
                bestdL = dL;
                bestdE = dE;
                found = true;
            }
        }
        if (found && bestdL == 0.0 && bestdE == 0.0)
            break;
        if (tone > clippedLstar)
            low = mid;
        else
            high = mid;
    }
    if (found)
        *outCam = best;
    return found;
}

Color fromArgb(int argb)
{
    const Cam cam = Cam::fromArgb(argb);
    return {cam.hue, cam.chroma, lstarFromArgb(argb), argb};
}

int solve(double hue, double chroma, double tone)
{
    const long roundedTone = std::lround(tone);
    if (chroma < 1.0 || roundedTone <= 0 || roundedTone >= 100)
        return argbFromLstar(tone);

    hue = sanitizeDegrees(hue);
    double low = 0.0;
    double mid = chroma;
    double high = chroma;
    bool isFirstLoop = true;
    bool haveAnswer = false;
    Cam answer;
    while (std::abs(low - high) >= kChromaSearchEndpoint) {
        Cam possible;
        const bool ok = detail::findCamByJ(hue, mid, tone, &possible);
        if (isFirstLoop) {
            if (ok)
                return Cam::toArgb(possible.j, possible.chroma, possible.hue);
            isFirstLoop = false;
        } else if (ok) {
            answer = possible;
            haveAnswer = true;
            low = mid;
        } else {
            high = mid;
        }
        mid = low + (high - low) / 2.0;
    }
    // Converted once more from the coordinates, as in the first round, instead of taking the colour
    // the candidate was found by, so that both roads round alike.
    return haveAnswer ? Cam::toArgb(answer.j, answer.chroma, answer.hue) : argbFromLstar(tone);
}

} // namespace Hct
