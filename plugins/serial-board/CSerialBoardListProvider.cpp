// SPDX-License-Identifier: MIT
#include "CSerialBoardListProvider.h"

#include "CIniReader.h"
#include "SerialBoardSettings.h"

#include <QSettings>
#include <QSignalBlocker>

namespace {

constexpr int kUsualSpeed = 115200;
constexpr int kLookMs = 500;

QString memoryPath()
{
    return CIniReader::PathOf(QStringLiteral("KestrixSerialBoardPort.ini"));
}

} // namespace

CSerialBoardListProvider::CSerialBoardListProvider(QObject* parent) : CInstrumentListProvider(parent)
{
    m_lookTimer.setInterval(kLookMs);
    connect(&m_lookTimer, &QTimer::timeout, this, &CSerialBoardListProvider::look);
}

void CSerialBoardListProvider::Start()
{
    if (m_lookTimer.isActive())
        return;
    load();
    look();
    m_lookTimer.start();
    QMetaObject::invokeMethod(this, &CInstrumentListProvider::InstrumentListUpdated, Qt::QueuedConnection);
}

void CSerialBoardListProvider::Stop()
{
    m_lookTimer.stop();
    if (m_instrument)
        m_instrument->StopMeasurement();
}

QList<QSharedPointer<CInstrument>> CSerialBoardListProvider::GetInstrumentList()
{
    if (!m_instrument)
        return {};
    return {m_instrument};
}

void CSerialBoardListProvider::SetSerialPortSettings(QString port, int baudRate)
{
    const SerialBoardSettings settings = SerialBoardSettings::Load();
    const QString wantedPort = settings.port.isEmpty() ? port : settings.port;
    const int speed = settings.speed > 0 ? settings.speed : baudRate > 0 ? baudRate : kUsualSpeed;
    // The same port once more is meant for the board that is listed, wherever it is plugged in by now, or
    // else for whatever is there.
    if (wantedPort != m_wanted.port || !m_instrument)
        m_wanted = {wantedPort, {}};
    m_speed = speed;
    if (m_instrument)
        m_instrument->SetSpeed(speed);
    keep();

    const QSharedPointer<CSerialBoardInstrument> before = m_instrument;
    {
        const QSignalBlocker blocker(this);
        look();
    }
    // Told later. Who saves the port saves a choice of the default instrument next, and news of the list in
    // between would put that choice back to the stored one.
    if (m_instrument != before)
        QMetaObject::invokeMethod(this, &CInstrumentListProvider::InstrumentListUpdated,
                                  Qt::QueuedConnection);
}

void CSerialBoardListProvider::load()
{
    const QSettings memory(memoryPath(), QSettings::IniFormat);
    const SerialBoardSettings settings = SerialBoardSettings::Load();
    const QString kept = memory.value(QStringLiteral("Port/Name")).toString();
    m_wanted.port = settings.port.isEmpty() ? kept : settings.port;
    if (m_wanted.port == kept)
        m_wanted.identity = memory.value(QStringLiteral("Port/Identity")).toString();
    m_speed =
        settings.speed > 0 ? settings.speed : memory.value(QStringLiteral("Port/Speed"), kUsualSpeed).toInt();
}

void CSerialBoardListProvider::keep() const
{
    QSettings memory(memoryPath(), QSettings::IniFormat);
    memory.setValue(QStringLiteral("Port/Name"), m_wanted.port);
    memory.setValue(QStringLiteral("Port/Speed"), m_speed);
    memory.setValue(QStringLiteral("Port/Identity"), m_wanted.identity);
}

void CSerialBoardListProvider::look()
{
    const std::optional<BoardPort> board =
        m_wanted.port.isEmpty() ? std::nullopt : findBoard(m_wanted, availableBoardPorts());
    if (m_instrument && (!board || !isListed(*board))) {
        const QSharedPointer<CSerialBoardInstrument> gone = m_instrument;
        m_instrument.clear();
        gone->disconnect(this);
        if (gone->IsConnected())
            gone->Lose();
        emit InstrumentListUpdated();
    }
    if (board && !m_instrument) {
        list(*board);
        emit InstrumentListUpdated();
    }
}

bool CSerialBoardListProvider::isListed(const BoardPort& board) const
{
    return m_instrument->Location() == board.location &&
           m_instrument->SerialNumber() == identityOf(board, m_wanted.port);
}

void CSerialBoardListProvider::list(const BoardPort& board)
{
    const QString identity = identityOf(board, m_wanted.port);
    if (identity != m_wanted.identity) {
        m_wanted.identity = identity;
        keep();
    }
    m_instrument = QSharedPointer<CSerialBoardInstrument>::create(board, identity, m_speed);
    // Queued, since the list may hold the last reference to the sender. The board may be back already.
    connect(
        m_instrument.data(), &CSerialBoardInstrument::Vanished, this,
        [this, gone = m_instrument.data()] {
            if (m_instrument.data() != gone)
                return;
            m_instrument.clear();
            emit InstrumentListUpdated();
        },
        Qt::QueuedConnection);
}
