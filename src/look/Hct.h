// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

/// The HCT colour space: CAM16 hue and chroma under fixed viewing conditions, CIE L* as tone.
///
/// Every colour is one `int` called argb: alpha in bits 24 to 31, then red, green and blue.
/// Colours made here have alpha 255. All functions are pure, never fail and may run on any
/// thread; the one shared table is built once, thread-safely, on first use.
namespace Hct
{

/// A colour in HCT coordinates, together with the colour it was taken from.
struct Color
{
    double hue = 0.0;    ///< CAM16 hue in degrees, 0 to below 360
    double chroma = 0.0; ///< CAM16 chroma, 0 for black and small but rarely 0 for greys
    double tone = 0.0;   ///< CIE L*, 0 to 100
    int argb = 0;        ///< the colour it came from, unchanged
};

/// One CAM16 appearance.
struct Cam
{
    double hue = 0.0;    ///< hue angle in degrees
    double chroma = 0.0; ///< chroma C
    double j = 0.0;      ///< lightness J
    double m = 0.0;      ///< colourfulness M
    double s = 0.0;      ///< saturation s

    /// The appearance of a screen colour; its alpha is ignored.
    static Cam fromArgb(int argb);
    /// The screen colour of an appearance. A colour outside sRGB is clipped channel by channel,
    /// so the result may differ from what was asked for in hue, chroma and lightness alike.
    /// \param hue any number of degrees.
    static int toArgb(double j, double chroma, double hue);

    /// Coordinates of the uniform space that `distance` measures in.
    double jstar() const;
    double mstar() const;
    double astar() const;
    double bstar() const;
    /// Perceived difference to another appearance, 0 for the same one.
    double distance(const Cam& other) const;
};

/// The derived constants of the one viewing environment that all conversions share.
struct ViewingConditions
{
    double aw = 0.0;
    double nbb = 0.0;
    double ncb = 0.0;
    double c = 0.0;
    double nc = 0.0;
    double n = 0.0;
    double fl = 0.0;
    double fLRoot = 0.0;
    double z = 0.0;
    double rgbD[3] = {0.0, 0.0, 0.0};

    /// Computes the constants: daylight white point, grey background of L* 50, average surround.
    static ViewingConditions make();
    /// The one instance, made on first use.
    static const ViewingConditions& standard();
};

namespace detail
{

/// Looks for the lightness J at which a hue and chroma show the wanted tone on screen.
/// \returns false, with `outCam` untouched, if no screen colour comes near enough to that tone
/// without clipping having moved its hue.
bool findCamByJ(double hue, double chroma, double tone, Cam* outCam);

} // namespace detail

/// The HCT coordinates of a screen colour; `argb` is kept as given.
Color fromArgb(int argb);
/// The displayable colour nearest to the triple: tone is kept, hue as far as clipping allows,
/// and chroma is lowered until the screen can show it. A triple without any displayable chroma,
/// a chroma below 1, and a tone that rounds to 0 or 100 give the grey of that tone.
/// \param hue any number of degrees.
/// \param tone 0 to 100.
int solve(double hue, double chroma, double tone);

/// sRGB decoding of a channel of 0 to 255 to linear light of 0 to 100.
double linearized(int channel);
/// sRGB encoding of linear light; whatever lies outside 0 to 100 is clamped to 0 or 255.
int delinearized(double linear);
/// CIE Y of 0 to 100 to L*, and back.
double lstarFromY(double y);
double yFromLstar(double lstar);
/// L* of a screen colour.
double lstarFromArgb(int argb);
/// The grey of that L*.
int argbFromLstar(double lstar);

/// Packs three channels, of which only the low 8 bits count, with alpha 255.
int argbFromRgb(int red, int green, int blue);
/// One channel of a packed colour, 0 to 255.
int redOf(int argb);
int greenOf(int argb);
int blueOf(int argb);

/// CIE XYZ, Y of 0 to 100, to the screen colour, clipped channel by channel.
int argbFromXyz(double x, double y, double z);
/// \param xyz receives three values, Y of 0 to 100.
void xyzFromArgb(int argb, double* xyz);

/// An angle of any size as 0 to below 360 degrees.
double sanitizeDegrees(double degrees);
/// -1, 0 or 1.
double sgn(double value);

} // namespace Hct
