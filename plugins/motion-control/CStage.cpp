// SPDX-License-Identifier: MIT
#include "CStage.h"

#include "CSerialLink.h"
#include "CStageDialog.h"

#include <QApplication>
#include <QLoggingCategory>

#include <utility>

namespace {

/// The stages of all plug-ins of this process, which know nothing else of each other.
constexpr const char* kStagesProperty = "kestrixStages";
constexpr const char* kStagePortProperty = "kestrixStagePort";

QObjectList stagesOfProcess()
{
    return QCoreApplication::instance()->property(kStagesProperty).value<QObjectList>();
}

} // namespace

CStage::CStage(QString name, QString settingsFile, Way way, CStageDriver::MakeController makeController,
               CStageDriver::Callbacks callbacks, QObject* parent)
    : QObject(parent), m_name(std::move(name)), m_settingsFile(std::move(settingsFile)), m_way(way),
      m_driver([] { return std::make_unique<CSerialLink>(); }, std::move(makeController),
               std::move(callbacks))
{
}

CStage::~CStage()
{
    delete m_dialog;
    if (QCoreApplication* const application = QCoreApplication::instance()) {
        QObjectList stages = stagesOfProcess();
        if (stages.removeAll(this) > 0)
            application->setProperty(kStagesProperty, QVariant::fromValue(stages));
    }
}

void CStage::Start()
{
    Stop();
    m_isTurnTold = false;
    m_settings = StageSettings::Load(m_settingsFile);
    if (m_settings.HasPort())
        begin();
    else
        ask();
}

void CStage::Stop()
{
    m_waitingPlace.reset();
    delete m_dialog;
    m_driver.Stop();
}

void CStage::Release()
{
    Stop();
    m_driver.Close();
}

void CStage::MoveTo(const CPosition& position, const COrientation& orientation)
{
    const StagePlace turn{orientation.Roll(), orientation.Pitch(), orientation.Yaw()};
    if (turn != m_settings.angles && !m_isTurnTold) {
        qInfo("%s: it cannot turn the probe; the map holds the angles of the settings", qPrintable(m_name));
        m_isTurnTold = true;
    }
    const StagePlace place{position.X(), position.Y(), position.Z()};
    if (m_dialog)
        m_waitingPlace = place;
    else if (m_settings.HasPort())
        m_driver.GoTo(place);
}

COrientation CStage::Orientation() const
{
    COrientation orientation;
    orientation.SetRoll(m_settings.angles[0]);
    orientation.SetPitch(m_settings.angles[1]);
    orientation.SetYaw(m_settings.angles[2]);
    return orientation;
}

CPosition CStage::PositionOf(const StagePlace& place)
{
    CPosition position;
    position.SetX(place[0]);
    position.SetY(place[1]);
    position.SetZ(place[2]);
    return position;
}

void CStage::begin()
{
    releaseOthers();
    m_driver.Start(m_settings);
    if (m_way == Way::Scan)
        m_driver.Scan();
    else if (m_waitingPlace)
        m_driver.GoTo(*m_waitingPlace);
    m_waitingPlace.reset();
}

void CStage::ask()
{
    qWarning("%s: no port is set in %s", qPrintable(m_name),
             qPrintable(StageSettings::PathOf(m_settingsFile)));
    // Programs without windows, such as the check of plug-ins, have nobody to ask.
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr)
        return;
    m_dialog = new CStageDialog(m_name, m_settings, m_way == Way::Scan);
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_dialog, &QDialog::finished, this,
            [this](int result) { onAnswered(result == QDialog::Accepted); });
    // Not exec(): the session goes on behind it.
    m_dialog->show();
}

void CStage::onAnswered(bool isAccepted)
{
    if (!m_dialog)
        return;
    const StageSettings settings = m_dialog->Settings();
    m_dialog = nullptr;
    if (!isAccepted) {
        qWarning("%s: no machine was chosen: nothing will move", qPrintable(m_name));
        return;
    }
    m_settings = settings;
    if (!m_settings.Save(m_settingsFile))
        qWarning("%s: %s cannot be written", qPrintable(m_name),
                 qPrintable(StageSettings::PathOf(m_settingsFile)));
    begin();
}

void CStage::releaseOthers()
{
    QObjectList stages = stagesOfProcess();
    for (QObject* const other : std::as_const(stages)) {
        if (other != this && other->property(kStagePortProperty) == m_settings.port)
            QMetaObject::invokeMethod(other, "Release");
    }
    setProperty(kStagePortProperty, m_settings.port);
    if (!stages.contains(this)) {
        stages.append(this);
        QCoreApplication::instance()->setProperty(kStagesProperty, QVariant::fromValue(stages));
    }
}
