// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIODevice>

#include <memory>

class QTextDecoder;

/// Passes an XML file on as UTF-8, whatever its encoding is, so that what stands behind it may look at bytes.
/// The encoding is known by a byte order mark, by the zero bytes around the first "<", or by the XML
/// declaration, which loses its encoding when the text is converted. A file whose declaration is too long or
/// names no known encoding is empty.
class Utf8XmlDevice : public QIODevice
{
    Q_OBJECT

public:
    /// `source` is open and must outlive the device, which is open for reading at once.
    explicit Utf8XmlDevice(QIODevice* source, QObject* parent = nullptr);
    ~Utf8XmlDevice() override;

    bool isSequential() const override { return true; }
    bool atEnd() const override;

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    /// Reads the front of the file, which tells the encoding, and converts it.
    void readHead();
    /// Converts the front and takes the encoding out of its declaration.
    void convertHead(const QByteArray& head);
    void refuse();

    QIODevice* m_source;
    std::unique_ptr<QTextDecoder> m_decoder; ///< null for a file that is passed on as it is
    QByteArray m_pending;                    ///< text that has not been read yet
    bool m_isHeadRead = false;
    bool m_isRefused = false;
};
