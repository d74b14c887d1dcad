// SPDX-License-Identifier: MIT
#pragma once

#include "LoudspeakerDescriptor_Interface.h"
#include "Tolvane.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QObject>
#include <QString>

/**
 * One loudspeaker model, read from the JSON descriptor file a plugin ships. A plugin
 * creates it with its root object as parent and registers it with the
 * LoudspeakerDescriptorProvider. Read once in the constructor, read-only afterwards.
 */
class NVLPS_EXPORT LoudspeakerDescriptor : public QObject, public LoudspeakerDescriptor_Interface
{
    Q_OBJECT
    Q_INTERFACES(LoudspeakerDescriptor_Interface)
public:
    /// Reads `filePath` unless it is empty (which leaves a blank descriptor).
    explicit LoudspeakerDescriptor(const QString &filePath, QObject *parent = nullptr);
    ~LoudspeakerDescriptor() override;

    QString GetName() override;
    LoudspeakerSeries_Interface *GetLoudspeakerSeries() const override;

    /// The text of a mounting ("flown", "stacked", …; "invalid" for -1, empty for unknown values).
    static QString ConvertMountingToString(Tolvane::Mounting mounting);

private:
    bool ReadDescriptorFile(const QString &filePath);

    QString m_name;
};
