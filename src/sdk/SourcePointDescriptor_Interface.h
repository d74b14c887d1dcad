// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

/// What the host may ask of an acoustic source point (implemented by SourcePointDescriptor).
class SourcePointDescriptor_Interface
{
public:
    /// When balloon data files are read.
    enum ReadBalloonDataMode : int {
        Asynchronous = 0, ///< on a worker of the global thread pool
        Synchronous = 1,  ///< before ReadBalloonData() returns
    };

    virtual ~SourcePointDescriptor_Interface() = default;
};

#define SourcePointDescriptor_Interface_iid "com.norvik.Tolvane.SourcePointDescriptor_Interface/1.0"
Q_DECLARE_INTERFACE(SourcePointDescriptor_Interface, SourcePointDescriptor_Interface_iid)
