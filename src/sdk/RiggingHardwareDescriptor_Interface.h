// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

/// What the host may ask of an item of rigging hardware (implemented by RiggingHardwareDescriptor).
class RiggingHardwareDescriptor_Interface
{
public:
    virtual ~RiggingHardwareDescriptor_Interface() = default;

    virtual QString GetName() = 0;
};

#define RiggingHardwareDescriptor_Interface_iid "com.norvik.Tolvane.RiggingHardwareDescriptor_Interface/1.0"
Q_DECLARE_INTERFACE(RiggingHardwareDescriptor_Interface, RiggingHardwareDescriptor_Interface_iid)
