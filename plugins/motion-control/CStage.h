// SPDX-License-Identifier: MIT
#pragma once

#include "COrientation.h"
#include "CPosition.h"
#include "CStageDriver.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <optional>

class CStageDialog;

/// What the mappers of one kind of machine have in common: the settings file, which is read at every start,
/// the dialog that asks for it where there is none, and the machine. Nothing is opened or asked before the
/// first start. Used by the main thread.
class CStage : public QObject
{
    Q_OBJECT

public:
    enum class Way { StopAndGo, Scan };

    CStage(QString name, QString settingsFile, Way way, CStageDriver::MakeController makeController,
           CStageDriver::Callbacks callbacks, QObject* parent);
    ~CStage() override;

    void Start();
    void Stop();
    /// Frees the port.
    Q_INVOKABLE void Release();
    void MoveTo(const CPosition& position, const COrientation& orientation);
    CPosition Position() const { return PositionOf(m_driver.Place()); }
    COrientation Orientation() const;

    static CPosition PositionOf(const StagePlace& place);

private:
    void begin();
    void ask();
    void onAnswered(bool isAccepted);
    /// Another mapper of this program may hold the port since its last session.
    void releaseOthers();

    QString m_name;
    QString m_settingsFile;
    Way m_way;
    CStageDriver m_driver;
    StageSettings m_settings;
    QPointer<CStageDialog> m_dialog;
    std::optional<StagePlace> m_waitingPlace; ///< until the dialog is answered
    bool m_isTurnTold = false;
};
