// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2D.h"
#include "CMeasureBlock.h"

#include <QSharedPointer>
#include <QVariant>
#include <QVector>

#include <vector>

class CMeasurementParameters;
class COperationMeasure;

/// The plot of the spectrum of one block and one field series. It keeps the whole spectrum and publishes a
/// table of at most `NbPointsAxeX` + 1 rows for the visible window: column 0 is the frequency in Hz, column 1
/// the amplitude. A bucket of bins gives the bin furthest from the row before, so that lines stay in sight.
///
/// `rowCount` is the length of the whole spectrum; only the first `DownsampledSignalLength` rows have values.
/// Rates and limits of the frequency are those of the dataset, so that a loaded record keeps its own.
/// Every write of a property emits its signal, as in the base.
class CChart2DSpectrumData : public CChart2D
{
    Q_OBJECT
    Q_PROPERTY(double MaxSpectrum READ MaxSpectrum WRITE SetMaxSpectrum NOTIFY MaxSpectrumChanged)
    Q_PROPERTY(double MinSpectrum READ MinSpectrum WRITE SetMinSpectrum NOTIFY MinSpectrumChanged)
    Q_PROPERTY(double MaxFrequency READ MaxFrequency WRITE SetMaxFrequency NOTIFY MaxFrequencyChanged)
    Q_PROPERTY(double MinFrequency READ MinFrequency WRITE SetMinFrequency NOTIFY MinFrequencyChanged)
    Q_PROPERTY(int NbPointsAxeX READ NbPointsAxeX WRITE SetNbPointsAxeX NOTIFY NbPointsAxeXChanged)
    Q_PROPERTY(int DownsampledSignalLength READ DownsampledSignalLength WRITE SetDownsampledSignalLength
                   NOTIFY DownsampledSignalLengthChanged)

public:
    /// The operation must outlive the chart.
    explicit CChart2DSpectrumData(COperationMeasure* operation, QObject* parent = nullptr);

    /// Largest and smallest bin of the last drawing. A drawing changes them without their signals.
    double MaxSpectrum() const { return m_maxSpectrum; }
    double MinSpectrum() const { return m_minSpectrum; }
    double MaxFrequency() const { return m_maxFrequency; } ///< upper limit of the X window, Hz
    double MinFrequency() const { return m_minFrequency; } ///< lower limit of the X window, Hz
    int NbPointsAxeX() const { return m_nbPointsAxeX; }    ///< span of bins from which on they share rows
    /// Rows now published; 0 or less when the window is empty or inverted.
    int DownsampledSignalLength() const { return m_downsampledSignalLength; }

    void SetMaxSpectrum(double value);
    void SetMinSpectrum(double value);
    void SetMaxFrequency(double value);
    void SetMinFrequency(double value);
    void SetNbPointsAxeX(int value);
    void SetDownsampledSignalLength(int value);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    /// Computes and shows the spectrum of a series of the block: 0 B, 1 B.B', 2 Bx, 3 By, 4 Bz. Puts the
    /// window back to the limits of the frequency. Does nothing for a block without results; throws what
    /// ComputeSpectrum throws for one result, or for an index outside of the series.
    void UpdateSpectrum(const QSharedPointer<CMeasureBlock>& block, int fieldIndex);
    /// The whole spectrum, as ComputeSpectrum made it.
    std::vector<float> GetSpectrum() const { return m_spectrum; }
    void Clear();
    /// Puts the window and the Y axis back. The table stays as it is.
    void ResetAxisX();

    /// Sets the window to these ends, in Hz, as far as the limits of the frequency allow.
    Q_INVOKABLE void refreshAxisX(int axeXMin, int axeXMax);

signals:
    void MaxSpectrumChanged(double value);
    void MinSpectrumChanged(double value);
    void MaxFrequencyChanged(double value);
    void MinFrequencyChanged(double value);
    void NbPointsAxeXChanged(int value);
    void DownsampledSignalLengthChanged(int value);

private:
    struct Fold;

    const CMeasurementParameters& Parameters() const;
    void Redraw();
    bool UpdateDownsampling();
    void PublishRows(int first, int span, double resolution);
    float VisitBins(float drawn, int begin, int end, Fold& fold);
    void UpdateYRange();

    COperationMeasure* m_operation;
    double m_maxSpectrum = 1.0;
    double m_minSpectrum = 1.0;
    double m_maxFrequency = 10.0;
    double m_minFrequency = 0.0;
    int m_nbPointsAxeX = 401;
    int m_downsampledSignalLength = 0;

    std::vector<float> m_spectrum;
    QVector<QVariant> m_xValues;
    QVector<float> m_published;
};
