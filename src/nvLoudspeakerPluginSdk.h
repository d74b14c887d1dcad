// SPDX-License-Identifier: MIT
// Umbrella header: every public class of the SDK, its value types and the computing interfaces.
#pragma once

#include "nvloudspeakerpluginsdk_export.h"
#include "nvloudspeakerpluginsdk_version.h"

// Value types
#include "Complex.h"
#include "Point.h"
#include "Size.h"

// Computing interfaces and records
#include "Balloon.h"
#include "Biquad.h"
#include "IBalloon.h"
#include "IControllerJson.h"
#include "PeakLimiter.h"
#include "Switch1.h"
#include "Switch2.h"
#include "Switch3.h"
#include "SystemEq.h"
#include "ThermoLimiter.h"

// SDK core
#include "DescriptorRegistry.h"
#include "FileKey.h"
#include "FileKeyTable.h"
#include "JsonFileLoader.h"
#include "LibVersion.h"
#include "LoudspeakerDescriptorProvider.h"
#include "LoudspeakerDescriptor_Interface.h"
#include "LoudspeakerSeries_Interface.h"
#include "PluginLoadResult.h"
#include "PluginProvider.h"
#include "Plugin_Interface.h"
#include "RiggingHardwareDescriptorProvider.h"
#include "RiggingHardwareDescriptor_Interface.h"
#include "SourcePointDescriptor_Interface.h"
#include "Tolvane.h"

// Directivity
#include "BalloonCell.h"
#include "BalloonCsvPacker.h"
#include "BalloonFile.h"
#include "BalloonFileWriter.h"
#include "BalloonProblem.h"
#include "BalloonReadResult.h"
#include "BalloonTable.h"

// Loudspeakers
#include "LoudspeakerDescriptor.h"
#include "LoudspeakerDescriptorFileKeys.h"
#include "SourcePointDescriptor.h"

// Controller setups and filters
#include "BiquadData.h"
#include "CouplingFilterProvider.h"
#include "DspChannelDescriptor.h"
#include "DspChannelDescriptor_Interface.h"
#include "FilterResponse.h"
#include "LoudspeakerSetup.h"
#include "LoudspeakerSetupFileKeys.h"

// Cabinet shapes
#include "CabinetShapeCreator.h"
#include "CabinetShapeFileKeys.h"

// Rigging hardware
#include "RiggingHardwareDescriptor.h"
#include "RiggingHardwareDescriptorFileKeys.h"
#include "RiggingObject_Abstract.h"
