// SPDX-License-Identifier: MIT
#pragma once

#include "BoardPort.h"
#include "CInstrumentListProvider.h"
#include "CSerialBoardInstrument.h"

#include <QSharedPointer>
#include <QTimer>

/// Lists the board at the chosen port while it is there. The port is that of the settings file, or else the
/// one chosen in the application, which is kept for the next start. A board with a USB serial number is found
/// again at another port; another board at its port is not listed until the port is chosen anew.
class CSerialBoardListProvider : public CInstrumentListProvider
{
    Q_OBJECT

public:
    explicit CSerialBoardListProvider(QObject* parent = nullptr);

    /// Looks for the board, and reports when the event loop runs.
    void Start();
    /// Ends the measurement that is still running and looks no more.
    void Stop();

public slots:
    QList<QSharedPointer<CInstrument>> GetInstrumentList() override;
    /// `port` is a name or a path; empty is none. A `baudRate` of 0 is the usual one.
    void SetSerialPortSettings(QString port, int baudRate) override;

private:
    void load();
    void keep() const;
    void look();
    bool isListed(const BoardPort& board) const;
    void list(const BoardPort& board);

    WantedBoard m_wanted;
    int m_speed = 0;
    QSharedPointer<CSerialBoardInstrument> m_instrument; ///< null while the board is away
    QTimer m_lookTimer{this};
};
