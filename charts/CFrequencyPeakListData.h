// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>

#include <vector>

class COperationMeasure;

/// The rows of the peaks table: the peaks of one spectrum, in ascending order of their frequency, each beside
/// the exposure limit of its band. The columns of the view pick a role each; the column index has no meaning.
class CFrequencyPeakListData : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Role {
        PeakRole = Qt::UserRole + 1, ///< number, from 1
        AmplitudeRole,               ///< of the sine, in the unit of the samples
        FrequencyRole,               ///< Hz
        ExposureLimitRole            ///< of the first band that ends above the peak; 0 without one
    };
    Q_ENUM(Role)

    /// The operation has the limits and the blocks, and must outlive the model. Without a block there is no
    /// answer for any row.
    explicit CFrequencyPeakListData(COperationMeasure* operation, QObject* parent = nullptr);

    QHash<int, QByteArray> roleNames() const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    /// Finds the peaks of a spectrum with bins `frequencyResolution` Hz apart that are `thresholdDb` above
    /// its median, and drops those below `minimumFrequency` Hz. Throws ComputeError for less than 2 bins,
    /// with no rows left.
    void UpdatePeaks(const std::vector<float>& spectrum, double frequencyResolution, double thresholdDb,
                     double minimumFrequency);
    /// Lets the rows show the limits of now, which do not come from the spectrum.
    void ReloadLimits();
    /// Removes all rows.
    void Clear();

private:
    double ExposureLimitAt(float frequency) const;

    COperationMeasure* m_operation;
    std::vector<float> m_frequencies;
    std::vector<float> m_amplitudes;
};
