// SPDX-License-Identifier: MIT
// lpsdk show: everything a loudspeaker or a rigging item knows.
#include "Arguments.h"
#include "CommandContext.h"
#include "Descriptors.h"

#include <QJsonArray>

#include <cmath>

namespace {

QString defaultName()
{
    return QStringLiteral("default");
}

// Text shows the chosen mounting; JSON gives every mounting, so a host needs one call.
QList<Tolvane::Mounting> mountings(const CommandContext &context)
{
    if (context.output.mode() != Output::Json)
        return {Arguments::mounting(context.parser)};
    QList<Tolvane::Mounting> all;
    for (int m = Tolvane::Flown; m <= Tolvane::FlownPullback; ++m)
        all.append(static_cast<Tolvane::Mounting>(m));
    return all;
}

void showSetups(Output &out, DspChannelDescriptor *channel, Tolvane::Mounting mounting)
{
    const int defaultKey = channel->GetDefaultLoudspeakerSetupKey(mounting);
    const QMap<int, LoudspeakerSetup *> setups = channel->GetLoudspeakerSetups();
    out.beginList(QStringLiteral("setups"), QString());
    for (auto it = setups.cbegin(); it != setups.cend(); ++it) {
        LoudspeakerSetup *setup = it.value();
        out.beginObject(QString(), QStringLiteral("setup %1%2: %3").arg(it.key()).arg(it.key() == defaultKey ? QStringLiteral(" (default)") : QString(), setup->GetFullName()));
        out.field(QStringLiteral("key"), QStringLiteral("key"), it.key());
        out.field(QStringLiteral("name"), QStringLiteral("name"), setup->GetFullName());
        out.field(QStringLiteral("file"), QStringLiteral("file"), setup->GetFilename());
        out.field(QStringLiteral("gain_dB"), QStringLiteral("gain"), Output::number(20.0 * std::log10(setup->GetGain())), QStringLiteral("dB"), QStringLiteral("zero gain"));
        out.field(QStringLiteral("delay_ms"), QStringLiteral("delay"), setup->GetDelay() * 1000.0, QStringLiteral("ms"));
        out.beginList(QStringLiteral("switches"), QString());
        for (int s = 1; s <= 5; ++s) {
            const QMap<int, QString> values = setup->GetSwitchValues(s);
            if (values.isEmpty())
                continue;
            QStringList labels;
            for (auto v = values.cbegin(); v != values.cend(); ++v)
                labels.append(QStringLiteral("%1=%2").arg(v.key()).arg(v.value().trimmed()));
            const QString description = setup->GetSwitchDescription(s);
            out.beginObject(QString());
            out.field(QStringLiteral("number"), QString(), s);
            out.field(QStringLiteral("description"), QString(), description);
            out.field(QStringLiteral("values"), QStringLiteral("switch %1%2").arg(s).arg(description.isEmpty() ? QString() : QStringLiteral(" \"%1\"").arg(description)),
                labels.join(QLatin1Char(' ')));
            out.endObject();
        }
        out.endList();
        out.endObject();
    }
    out.endList();
}

void showLoudspeaker(const CommandContext &context, LoudspeakerDescriptor *loudspeaker)
{
    Output &out = context.output;
    out.line(QStringLiteral("%1 (%2), part number %3").arg(loudspeaker->GetName(), loudspeaker->GetDisplayName(), loudspeaker->GetPartNumber(true)));
    out.field(QStringLiteral("kind"), QString(), QStringLiteral("loudspeaker"));
    out.field(QStringLiteral("name"), QString(), loudspeaker->GetName());
    out.field(QStringLiteral("display_name"), QString(), loudspeaker->GetDisplayName());
    out.field(QStringLiteral("part_number"), QString(), loudspeaker->GetPartNumber(true));
    out.field(QStringLiteral("type"), QStringLiteral("type"), Descriptors::typeText(loudspeaker->GetType()));
    out.field(QStringLiteral("shape"), QStringLiteral("cabinet"), loudspeaker->GetCabinetShape());
    Descriptors::sizeField(out, loudspeaker->GetSize());
    out.field(QStringLiteral("weight_kg"), QStringLiteral("weight"), loudspeaker->GetWeight(), QStringLiteral("kg"));
    out.field(QStringLiteral("nominal_dispersion_deg"), QStringLiteral("nominal dispersion (h, v)"),
        QJsonArray{loudspeaker->GetNominalDispersionHor(), loudspeaker->GetNominalDispersionVer()}, QStringLiteral("deg"));
    Descriptors::outlineField(out, QStringLiteral("top_view"), QStringLiteral("top outline"), loudspeaker->GetTopView());
    out.beginObject(QStringLiteral("mountings"));
    for (Tolvane::Mounting mounting : mountings(context)) {
        const QString name = Arguments::mountingText(mounting);
        out.beginObject(name, QStringLiteral("mounting %1:").arg(name));
        Descriptors::outlineField(out, QStringLiteral("view_3d"), QStringLiteral("3D outline"), loudspeaker->Get3dView(mounting));
        Descriptors::outlineField(out, QStringLiteral("side_view"), QStringLiteral("side outline"), loudspeaker->GetSideView(mounting));
        Descriptors::pointField(out, QStringLiteral("mounting_point"), QStringLiteral("mounting point"), loudspeaker->GetMountingPoint(mounting, defaultName()));
        Descriptors::pointField(out, QStringLiteral("connection_point"), QStringLiteral("connection point"), loudspeaker->GetConnectionPoint(mounting, defaultName()));
        Descriptors::pointField(out, QStringLiteral("center_of_gravity"), QStringLiteral("centre of gravity"), loudspeaker->GetCenterOfGravity(mounting));
        out.field(QStringLiteral("contour_coupling"), QStringLiteral("contour coupling"), loudspeaker->SupportsContourCpl(mounting));
        out.beginList(QStringLiteral("source_points"), QString());
        for (SourcePointDescriptor *sourcePoint : loudspeaker->GetSourcePointDescriptors()) {
            out.beginObject(QString());
            out.field(QStringLiteral("name"), QStringLiteral("source point"), sourcePoint->GetName());
            Descriptors::pointField(out, QStringLiteral("origin"), QStringLiteral("origin"), sourcePoint->GetOrigin(mounting));
            out.endObject();
        }
        out.endList();
        out.endObject();
    }
    out.endObject();

    const Tolvane::Mounting chosen = Arguments::mounting(context.parser);
    out.beginList(QStringLiteral("source_points"), QStringLiteral("source points:"));
    for (SourcePointDescriptor *sourcePoint : loudspeaker->GetSourcePointDescriptors()) {
        out.beginObject(QString(), QStringLiteral("\"%1\"").arg(sourcePoint->GetName()));
        out.field(QStringLiteral("name"), QString(), sourcePoint->GetName());
        sourcePoint->ReadBalloonData(SourcePointDescriptor_Interface::Synchronous);
        out.field(QStringLiteral("balloon_loaded"), QStringLiteral("balloon"), sourcePoint->IsBalloonDataLoaded());
        if (sourcePoint->IsBalloonDataLoaded()) {
            const QList<double> frequencies = sourcePoint->GetFrequencyVector();
            out.beginObject(QStringLiteral("balloon_grid"), QStringLiteral("balloon grid:"));
            out.field(QStringLiteral("theta_rows"), QStringLiteral("theta rows"), sourcePoint->GetNH());
            out.field(QStringLiteral("phi_columns"), QStringLiteral("phi columns"), sourcePoint->GetNV());
            out.field(QStringLiteral("theta_step_deg"), QStringLiteral("theta step"), sourcePoint->GetThetaStepWidth(), QStringLiteral("deg"));
            out.field(QStringLiteral("phi_step_deg"), QStringLiteral("phi step"), sourcePoint->GetPhiStepWidth(), QStringLiteral("deg"));
            out.field(QStringLiteral("symmetry"), QStringLiteral("symmetry code"), int(sourcePoint->GetSymmetry()));
            out.field(QStringLiteral("frequencies"), QStringLiteral("frequencies"), int(frequencies.size()));
            out.field(QStringLiteral("lowest_frequency_Hz"), QStringLiteral("lowest frequency"), frequencies.value(0), QStringLiteral("Hz"));
            out.field(QStringLiteral("highest_frequency_Hz"), QStringLiteral("highest frequency"), frequencies.value(frequencies.size() - 1), QStringLiteral("Hz"));
            out.endObject();
        }
        if (DspChannelDescriptor *channel = sourcePoint->GetDspChannelDescriptor(sourcePoint->GetDefaultAmplifier()))
            showSetups(out, channel, chosen);
        out.endObject();
    }
    out.endList();
}

void showRigging(const CommandContext &context, RiggingHardwareDescriptor *item)
{
    Output &out = context.output;
    out.line(QStringLiteral("%1 (%2), part number %3").arg(item->GetName(), item->GetDisplayName(), item->GetPartNumber(true)));
    out.field(QStringLiteral("kind"), QString(), QStringLiteral("rigging"));
    out.field(QStringLiteral("name"), QString(), item->GetName());
    out.field(QStringLiteral("display_name"), QString(), item->GetDisplayName());
    out.field(QStringLiteral("part_number"), QString(), item->GetPartNumber(true));
    Descriptors::sizeField(out, item->GetSize());
    out.field(QStringLiteral("weight_kg"), QStringLiteral("weight"), item->GetWeight(), QStringLiteral("kg"));
    out.field(QStringLiteral("maximum_load"), QStringLiteral("maximum load"), item->GetMaximumLoad());
    out.field(QStringLiteral("tilt_deg"), QStringLiteral("tilt min, max, step"),
        QJsonArray{item->GetMinimumTiltAngle(), item->GetMaximumTiltAngle(), item->GetTiltAngleStepWidth()}, QStringLiteral("deg"));
    Descriptors::pointField(out, QStringLiteral("center_of_gravity"), QStringLiteral("centre of gravity"), item->GetCenterOfGravity());
    out.beginObject(QStringLiteral("views"));
    const QMap<QString, QList<Point>> views = Descriptors::riggingViews(item);
    for (auto it = views.cbegin(); it != views.cend(); ++it)
        Descriptors::outlineField(out, it.key(), QStringLiteral("view ") + it.key(), it.value());
    out.endObject();
    out.beginObject(QStringLiteral("mountings"));
    for (Tolvane::Mounting mounting : mountings(context)) {
        const QString name = Arguments::mountingText(mounting);
        out.beginObject(name, QStringLiteral("mounting %1:").arg(name));
        Descriptors::pointField(out, QStringLiteral("mounting_point"), QStringLiteral("mounting point"), item->GetMountingPoint(mounting, defaultName()));
        Descriptors::pointField(out, QStringLiteral("connection_point"), QStringLiteral("connection point"), item->GetConnectionPoint(mounting, defaultName()));
        out.endObject();
    }
    out.endObject();
}

} // namespace

int runShow(const CommandContext &context)
{
    const QString name = context.name();
    context.plugins();
    if (LoudspeakerDescriptor *loudspeaker = Descriptors::findLoudspeaker(name))
        showLoudspeaker(context, loudspeaker);
    else if (RiggingHardwareDescriptor *item = Descriptors::findRigging(name))
        showRigging(context, item);
    else
        dataError(QStringLiteral("no loudspeaker or rigging item named \"%1\" (see lpsdk list)").arg(name));
    return 0;
}
