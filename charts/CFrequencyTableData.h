// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeasureBlock.h"
#include "FieldSeries.h"

#include <QAbstractTableModel>
#include <QSharedPointer>

#include <array>
#include <vector>

class CMeasurementParameters;
class COperationMeasure;
class CUserNotifier;

/// The rows of the band table: a figure of merit of one block for each series in each band of the exposure
/// limits, or in one band up to half the acquisition rate without limits. The columns of the view pick a role
/// each; the column index has no meaning. An update also compares the bands with their limits, if the alarm
/// asks for it.
class CFrequencyTableData : public QAbstractTableModel
{
    Q_OBJECT
    Q_PROPERTY(
        bool FlagNotification READ FlagNotification WRITE SetFlagNotification NOTIFY FlagNotificationChanged)

public:
    enum Role {
        FrequencyBandRole = Qt::UserRole + 1, ///< its two ends in Hz, as a text
        BRole,
        BBprimeRole,
        BxRole,
        ByRole,
        BzRole,
        ExposureLimitRole ///< of the band; the text "0" without limits
    };
    Q_ENUM(Role)

    /// Operation and notifier must outlive the model.
    CFrequencyTableData(COperationMeasure* operation, CUserNotifier* notifier, QObject* parent = nullptr);

    bool FlagNotification() const { return m_flagNotification; } ///< a band is over its limit
    void SetFlagNotification(bool value);

    QHash<int, QByteArray> roleNames() const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    /// Whether an update now would not throw.
    bool CanUpdate() const;
    /// Computes the rows anew: 0 for the RMS, 1 for the peak-to-peak value, 2 for the standard deviation; any
    /// other index counts as 0. The rates are those of the dataset, so that a loaded record keeps its own.
    /// Throws ComputeError for a block of less than 2 results and for bands that do not ascend, with no
    /// rows left.
    void UpdateTable(int figureOfMeritIndex);
    /// Removes all rows.
    void Clear();

signals:
    void FlagNotificationChanged(bool value);

private:
    /// The series of the table, in the order of the roles.
    static constexpr std::size_t kSeriesCount = FieldSeries::Bz + 1;

    const CMeasurementParameters& Parameters() const;
    QSharedPointer<CMeasureBlock> BlockToShow() const;
    std::vector<float> UpperFrequencies() const;
    void ComputeFigures(const CMeasureBlock& block, int figureOfMeritIndex);
    void CheckLimits();
    void Report(double lowerLimit, double value, double limit) const;
    QString BandText(int row) const;
    QVariant ExposureLimitOf(int row) const;

    COperationMeasure* const m_operation;
    CUserNotifier* const m_notifier;
    bool m_flagNotification = false;
    int m_rowCount = 0;
    std::array<std::vector<float>, kSeriesCount> m_figures;
};
