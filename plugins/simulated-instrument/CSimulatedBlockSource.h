// SPDX-License-Identifier: MIT
#pragma once

#include "CBlockSource.h"
#include "CFieldModel.h"
#include "CMagnet.h"
#include "CSampleStamper.h"
#include "SimulationSettings.h"

#include <QList>

#include <mutex>
#include <random>

/// Makes blocks as the simulated sensor would measure them: field of the place, or of the magnet while a
/// simulated mapper carries the probe, offset of the sensor less the correction
/// of the zero-offset calibration, noise, saturation at the range, conversion to the unit asked for.
class CSimulatedBlockSource : public CBlockSource
{
public:
    /// `epochNs`: time at which the model's time is 0, nanoseconds since 1970-01-01 UTC. `ranges` in tesla,
    /// ascending, not empty.
    CSimulatedBlockSource(const SimulationSettings& settings, const QList<tFlux>& ranges, qint64 epochNs);

    QSharedPointer<CMeasureBlock> NextBlock(const AcquisitionParameters& parameters,
                                            const BlockTimes& times) override;

    /// Begins to count the blocks for those that are to be empty or not-a-number.
    void BeginRun();

    /// What the sensor shows on average over many readings in the zero-field chamber, tesla, without any
    /// correction. May be called while another thread makes blocks, whose noise it leaves as it is.
    FieldVector MeasureZeroField();

    /// Tesla, subtracted from every reading from the next block on. Thread-safe.
    void SetZeroCorrection(const FieldVector& correction);

private:
    QVector<FieldVector> fieldsAt(const BlockTimes& times, int count) const;
    double chooseRange(const AcquisitionParameters& parameters, const QVector<FieldVector>& fields) const;
    void fillSample(CFieldIntensityResult& result, const FieldVector& reading, const FieldVector& direction,
                    double range, CUnits::UnitType units) const;

    SimulationSettings m_settings;
    CFieldModel m_model;
    CMagnet m_magnet;
    QList<tFlux> m_ranges;
    qint64 m_epochNs;
    CSampleStamper m_stamper;
    std::mt19937_64 m_random;
    std::normal_distribution<double> m_normal;
    // The zero field is measured on another thread than the blocks are made on.
    std::mt19937_64 m_zeroFieldRandom;
    std::normal_distribution<double> m_zeroFieldNormal;
    int m_blocksOfRun = 0;

    std::mutex m_correctionMutex;
    FieldVector m_correction;
};
