// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

class DirectivityAnalysis;
class PlotCanvas;

/// The pictures of `lpsdk directivity --plot`: each kind as measurement packages draw it.
namespace DirectivityPlots {
/// spinorama, isobar, di, beamwidth, offaxis.
QStringList kinds();
/// Draws `kind` into `file` (PNG or SVG); `vertical` and `normalize` apply to offaxis.
void draw(const QString &file, const QString &kind, const QString &title, const DirectivityAnalysis &analysis, bool vertical, bool normalize);
/// Both planes' isobar maps side by side, with labelled contours and a colour bar (IsobarPlot.cpp).
void drawIsobars(PlotCanvas &canvas, const DirectivityAnalysis &analysis);
} // namespace DirectivityPlots
