// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeasurementParameters.h"
#include "CUnits.h"

#include <QObject>
#include <QString>

#include <memory>

class CSettings;

/// The in-memory record of one operation: its blocks, the texts that describe them and the parameters under
/// which they were taken. It is emptied and refilled, never replaced. Main thread only.
class CDataset : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Comment READ Comment WRITE SetComment NOTIFY CommentChanged)
    Q_PROPERTY(quint64 ResultsCount READ ResultsCount WRITE SetResultsCount NOTIFY ResultsCountChanged)
    Q_PROPERTY(bool Cleared READ Cleared WRITE SetCleared NOTIFY ClearedChanged)
    Q_PROPERTY(CMeasurementParameters* MeasurementParameters READ MeasurementParameters WRITE
                   SetMeasurementParameters NOTIFY MeasurementParametersChanged)
    Q_PROPERTY(
        QString InstrumentName READ InstrumentName WRITE SetInstrumentName NOTIFY InstrumentNameChanged)
    Q_PROPERTY(QString Date READ Date WRITE SetDate NOTIFY DateChanged)
    Q_PROPERTY(QString FilePath READ FilePath WRITE SetFilePath NOTIFY FilePathChanged)

public:
    /// `settings` bound the number of blocks kept and must outlive the dataset.
    explicit CDataset(const CSettings& settings, QObject* parent = nullptr);
    ~CDataset() override;

    QString Comment() const { return m_comment; } ///< overall comment of the record
    quint64 ResultsCount() const
    {
        return m_resultsCount;
    } ///< samples of a measurement dataset, blocks of a mapping dataset
    bool Cleared() const { return m_cleared; } ///< true after the first Clear; the notification is the event
    CMeasurementParameters* MeasurementParameters() const
    {
        return m_measurementParameters;
    } ///< parameters that go with the blocks; null until set
    QString InstrumentName() const { return m_instrumentName; }
    QString Date() const { return m_date; } ///< time of the record, for display only
    QString FilePath() const
    {
        return m_filePath;
    } ///< name, without folder, of the file last saved or loaded

    // Cleared and MeasurementParameters emit at every assignment, the others on a change.
    void SetComment(const QString& comment);
    void SetResultsCount(quint64 count);
    void SetCleared(bool cleared);
    /// The caller keeps the ownership.
    void SetMeasurementParameters(CMeasurementParameters* parameters);
    void SetInstrumentName(const QString& name);
    void SetDate(const QString& date);
    void SetFilePath(const QString& fileName);

    // As the setters, but emit in every case.
    void AssignInstrumentName(const QString& name);
    void AssignDate(const QString& date);
    void AssignFilePath(const QString& fileName);

    enum class Replaced { Retire, Delete };
    /// Makes the parameters of a loaded record those of the dataset, which owns them. The loaded ones that
    /// they replace are deleted once all have been told: retired ones, which a view up the call stack may
    /// still hold, when the event loop runs; others at once.
    void AdoptMeasurementParameters(std::unique_ptr<CMeasurementParameters> parameters,
                                    Replaced replaced = Replaced::Retire);

    /// Drops all blocks and texts; leaves the parameters.
    virtual void Clear() = 0;

    const CSettings& SettingsRef;

public slots:
    void OnMeasurementParametersUpdated();

signals:
    void CommentChanged(const QString& comment);
    void ResultsCountChanged(quint64 count);
    void ClearedChanged(bool cleared);
    void MeasurementParametersChanged(CMeasurementParameters* parameters);
    void InstrumentNameChanged(const QString& name);
    void DateChanged(const QString& date);
    void FilePathChanged(const QString& fileName);
    void MeasurementParametersUpdated(CUnits::UnitType units);

protected:
    /// As the setter, but emits in every case.
    void assignResultsCount(quint64 count);

private:
    QString m_comment;
    quint64 m_resultsCount = 0;
    bool m_cleared = false;
    CMeasurementParameters* m_measurementParameters = nullptr;
    std::unique_ptr<CMeasurementParameters> m_loadedParameters;
    QString m_instrumentName;
    QString m_date;
    QString m_filePath;
};
