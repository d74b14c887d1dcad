// SPDX-License-Identifier: MIT
#pragma once

#include "IBalloon.h"

namespace nvScientificComputing {

/// A balloon over a table it does not own (see IBalloon). Immutable; safe to share between threads.
class NVCOMPUTING_EXPORT Balloon final : public IBalloon
{
public:
    Balloon(int thetaStepWidth, int phiStepWidth, int symmetry, int nh, int nv,
            double firstFrequency, double lastFrequency, const std::complex<float> *data,
            double flushMountAngleOffset, double flushMountAperture);
    ~Balloon() override;

    int getThetaStepWidth() const override;
    int getPhiStepWidth() const override;
    int getSymmetry() const override;
    int getNH() const override;
    int getNV() const override;
    double getFirstFrequency() const override;
    double getLastFrequency() const override;
    const std::complex<float> *getData() const override;
    double getFlushMountAngleOffset() const override;
    double getFlushMountAperture() const override;

private:
    int m_thetaStepWidth;
    int m_phiStepWidth;
    int m_symmetry;
    int m_nh;
    int m_nv;
    double m_firstFrequency;
    double m_lastFrequency;
    const std::complex<float> *m_data;
    double m_flushMountAngleOffset;
    double m_flushMountAperture;
};

} // namespace nvScientificComputing
