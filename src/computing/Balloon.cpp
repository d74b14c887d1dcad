// SPDX-License-Identifier: MIT
#include "Balloon.h"

namespace nvScientificComputing {

Balloon::Balloon(int thetaStepWidth, int phiStepWidth, int symmetry, int nh, int nv,
                 double firstFrequency, double lastFrequency, const std::complex<float> *data,
                 double flushMountAngleOffset, double flushMountAperture)
    : m_thetaStepWidth(thetaStepWidth)
    , m_phiStepWidth(phiStepWidth)
    , m_symmetry(symmetry)
    , m_nh(nh)
    , m_nv(nv)
    , m_firstFrequency(firstFrequency)
    , m_lastFrequency(lastFrequency)
    , m_data(data)
    , m_flushMountAngleOffset(flushMountAngleOffset)
    , m_flushMountAperture(flushMountAperture)
{
}

Balloon::~Balloon() = default;

int Balloon::getThetaStepWidth() const { return m_thetaStepWidth; }
int Balloon::getPhiStepWidth() const { return m_phiStepWidth; }
int Balloon::getSymmetry() const { return m_symmetry; }
int Balloon::getNH() const { return m_nh; }
int Balloon::getNV() const { return m_nv; }
double Balloon::getFirstFrequency() const { return m_firstFrequency; }
double Balloon::getLastFrequency() const { return m_lastFrequency; }
const std::complex<float> *Balloon::getData() const { return m_data; }
double Balloon::getFlushMountAngleOffset() const { return m_flushMountAngleOffset; }
double Balloon::getFlushMountAperture() const { return m_flushMountAperture; }

} // namespace nvScientificComputing
