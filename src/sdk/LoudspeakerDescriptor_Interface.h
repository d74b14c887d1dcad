// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

class LoudspeakerSeries_Interface;

/// What the host may ask of a loudspeaker model (implemented by LoudspeakerDescriptor).
class LoudspeakerDescriptor_Interface
{
public:
    virtual ~LoudspeakerDescriptor_Interface() = default;

    virtual QString GetName() = 0;
    /// The series (plugin root object) that owns this loudspeaker, or null.
    virtual LoudspeakerSeries_Interface *GetLoudspeakerSeries() const = 0;
};

#define LoudspeakerDescriptor_Interface_iid "com.norvik.Tolvane.LoudspeakerDescriptor_Interface/1.2"
Q_DECLARE_INTERFACE(LoudspeakerDescriptor_Interface, LoudspeakerDescriptor_Interface_iid)
